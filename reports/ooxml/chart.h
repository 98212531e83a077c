// Charts as a word processor keeps them: drawn from numbers that lie in the chart itself, and editable
// through a workbook inside the document.
#pragma once

#include <string>
#include <vector>

enum class ChartKind {
    Columns,  // in space, with values; neither legend nor title
    Pie       // in space, seen steeply from above, with names and shares; legend below
};

struct ChartSpec {
    ChartKind Kind = ChartKind::Columns;
    // Where the names lie in the workbook; the values are in the next row.
    int FirstRow = 1;
    std::vector<std::string> Names;
    std::vector<long long> Values;
    // Points.
    double Width = 400;
    double Height = 250;
};

// All throw COoxmlError without values, and with more than the columns A to Z hold.
void CheckChart(const ChartSpec& spec);
std::string ChartXml(const ChartSpec& spec, const std::string& workbookRelation);
std::string ChartWorkbook(const ChartSpec& spec);
