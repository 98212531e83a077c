// The defects of sections of a project into a shapefile.
#pragma once

#include <string_view>

#include "store/records/records.h"

class CDbRec;

// In the order of `sections`; one whose records can't be read is passed over with the message of ReadRecords
// (2017). True if all were read and the shapefile is written.
bool ExportShapes(CDbRec& database, const CArrID& sections, std::string_view path);
