// Keeps what a sonar device left of a section.
#pragma once

#include <cstdint>
#include <string_view>

// Puts a copy of the description and the section's number into the project's sonar folder, in place of what
// the project had. Silent: what can't be copied or written leaves the folder as it is, and a description that
// is still there is never overwritten. Path texts.
void StoreSonarFiles(std::string_view projectPath, std::string_view sonarPath, std::int32_t sectionId);
// Whether the project's folder holds that description, for that section.
bool HoldsSonarFiles(std::string_view projectPath, std::string_view sonarPath, std::int32_t sectionId);
