// Takes new sections into the open project, each with a copy of its video in the work folder.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "store/records/records.h"

class CDbRec;
class CProgress;

// Makes the progress of one copy; it lives as long as the copy runs. It is told the file's name.
using CopyProgress = std::function<std::unique_ptr<CProgress>(const std::string& fileName)>;

// One after the other. Each video goes into a folder of its own in the work folder, named by the present time
// or the first later second whose name is free. The first failure ends it, and false comes back; sections
// added before stay. 2189 a section between these manholes exists, 2013 sections can't be read, 2202 with the
// path a folder can't be made, 2190 the video isn't there after copying, also since the operator stopped it,
// and those of AddTesting. What fails leaves neither a copy nor its folder behind.
bool AddNewSections(CDbRec& database, const std::vector<_TESTING_DATA>& sections,
                    const CopyProgress& progress);
