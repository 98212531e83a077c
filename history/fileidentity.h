// Which file a journal belongs to.
#pragma once

#include <string>

// Stays while the file is changed or renamed, and differs for each copy of it: its number and the time of its
// birth. Where the file system tells no birth, a stamp that is put on the file, which copies don't take
// along; where it takes none either, the number alone. Empty if the file isn't there. `hostPath` is a path of
// this machine.
std::string FileIdentity(const std::string& hostPath);

// 16 hexadecimal digits, new with each call.
std::string RandomName();
