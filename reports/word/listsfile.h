// The lists of a report as a file (JSON, UTF-8), for the program that makes the documents of some standards.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "reports/reportlists.h"

std::string ListsToJson(const ReportLists& lists);
// Nothing for anything else than what ListsToJson made.
std::optional<ReportLists> ListsFromJson(std::string_view json);
