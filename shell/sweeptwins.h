// Files that the program makes beside others while it writes them bear names of its own, ".drovane-" and a
// few characters. A process that is killed leaves them; a lock tells whether it still lives.
#pragma once

#include <string>

// Removes those of the folder (a host path) that no process holds and that are older than a minute.
void SweepTwins(const std::string& folder);
