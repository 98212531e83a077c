// Which files belong to the older engine.
#pragma once

#include <string>
#include <string_view>

// Whether these first bytes of a file say so, in whatever version of the format.
bool BeginsAsJet(std::string_view bytes);
// False too if it can't be read. Closing a file takes the locks away that this process has on it: not for a
// database that is open.
bool IsJetFile(const std::string& hostPath);
