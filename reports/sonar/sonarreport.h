// From a project's sonar data to the finished document.
#pragma once

#include <string>

#include "reports/sonar/CExportSonar.h"
#include "reports/word/wordreport.h"

// Among the documents of the operator, under the project's name.
WordReport WriteSonarReport(const SonarData& data, const std::string& projectName,
                            const SonarChartDrawer& draw);
// To a path, whatever is there.
WordReport WriteSonarReportTo(const std::string& path, const SonarData& data, const SonarChartDrawer& draw);
