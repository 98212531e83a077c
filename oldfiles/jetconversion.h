// Files of the older engine become databases of this one. Nothing is lost on the way: a file is taken over as
// a whole or not at all, and what it was stays beside it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "oldfiles/CJetTransfer.h"

// Whether a file is of the older engine. A database that this process has open isn't looked at: no.
bool IsOldDatabase(std::string_view path);

struct JetConversion {
    std::vector<JetTableCount> Tables;
    std::string OldPath;  // where the old file is now, as a path text
};

// The old file stays beside the new one under its name and ".jet", with a number if there is one; the new one
// takes the name when it is complete and on the disk. Until then all is as it was, whatever happens; and it
// stays so if somebody else converts the file or writes it meanwhile.
// Failure shows 2000 with the path, or 2002 for files that are no project, which are never changed; nothing
// if the operator stopped it. Reports to Progress() from half a second on.
bool ConvertInPlace(std::string_view path, std::string_view password, JetConversion* conversion = nullptr);
// The original isn't touched; a file of the name of `target` is kept and fails it. 2000 and 2002 with the
// original's path, 2203 with the target's if that can't be written.
bool ConvertTo(std::string_view path, std::string_view target, std::string_view password,
               JetConversion* conversion = nullptr);

// Before a database is opened to work on: if it is of the older engine, asks (3200) and converts it in place.
// False if it isn't to be opened then.
bool PrepareOldToOpen(std::string_view path, std::string_view password);
