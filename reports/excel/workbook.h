// Writes the inspection table as a workbook. No office program is asked.
#pragma once

#include <optional>
#include <string>
#include <vector>

// `list` as BuildInspectionTable makes it; a rest shorter than a row is dropped. The bytes of the file, or
// nothing if it can't be made: no temporary space, or more rows than a sheet has.
std::optional<std::string> MakeWorkbook(const std::vector<std::string>& list, const std::string& sheetName);
