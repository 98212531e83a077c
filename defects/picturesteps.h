// What the history of a project is told of picture files, so that undoing brings them back too. A project
// without a history is told nothing, and all of these succeed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class CDbBase;

// Before files of a stored record are deleted together with a change of its row, which comes next; by default
// their twins ("a_original.jpg") too. If one can't be kept, asks with message 3355 whether to go on without;
// false if not.
enum class KeptTwins { No, Yes };
bool KeepForUndo(CDbBase& database, const std::vector<std::string>& pictures,
                 KeptTwins twins = KeptTwins::Yes);
// The row wasn't changed after all, or is changed without them.
void DropKept(CDbBase& database);

// Before a file is replaced or deleted without any change of a row: a step of its own. `name` is one of
// StepName, section and record are IDs.
enum class PictureFate { Replaced, Deleted };
bool KeepAsStep(CDbBase& database, int name, PictureFate fate, const std::string& picture,
                std::int32_t section, std::int32_t record);

// Files, and their twins, that came into being with a row which is stored next.
void NoteMadeForUndo(CDbBase& database, const std::vector<std::string>& pictures);
