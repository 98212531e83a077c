// Where the review of a project stood last. It is a comfort and no datum of the project: it lies in the
// user's own settings, and losing it costs one click.
#pragma once

#include <cstdint>
#include <string_view>

// The ID of the section; below 0 if nothing is known.
std::int32_t LastSection(std::string_view projectPath);
void RememberSection(std::string_view projectPath, std::int32_t sectionId);
