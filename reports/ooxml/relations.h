// How the parts of an office document name each other.
#pragma once

#include <string>

// The part that holds the relationships of a part; those of the package itself if `part` is empty.
std::string RelationsName(const std::string& part);
// Targets are relative to the folder of the part, or begin with "/".
std::string ResolveTarget(const std::string& from, const std::string& target);
