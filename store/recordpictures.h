// Pictures of records that are read or made.
#pragma once

#include <string_view>

#include "store/records/records.h"

// Brings a copy of the picture into the report image folder, where the report generator finds it. A copy that
// fails is silent: the report tells of missing pictures.
void CopyForReports(std::string_view picture);

// Appends the picture to the record and copies it for reports. An empty path adds nothing.
void AddPicture(_REC_DATA& record, std::string_view path, double time);
