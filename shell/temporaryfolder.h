// Where the program puts what it needs only while it makes something.
#pragma once

#include <string>

// A path text with its trailing "\": a folder of the user alone in the system's temporary folder, made if it
// isn't there. Empty if there is none that is his: everybody may write into the system's folder, and whoever
// made a folder of our name first could read and exchange what we put there.
std::string GetTemporaryFolder();
