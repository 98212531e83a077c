// Files on drives that aren't there can't be looked for; one finding tells the drive instead.
#pragma once

#include <string_view>

// The upper-case letter of a path's drive if nothing stands for it on this machine; else 0.
char MissingDrive(std::string_view path);
