// What the section list and the defect list show: their columns, the text of each cell, and the colour of
// a row. Headings are language messages; widths are pixels.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "store/records/records.h"
#include "store/recordtexts.h"

struct ListColumn {
    int Heading;  // number of the language message
    int Width;
    bool RightAligned = false;
    bool ShowsEnd = false;  // of a text that is too long: the end of a path tells more
    bool NeverCut = false;
};

std::span<const ListColumn> SectionColumns();
// The full form stands in the review window and the short one where there is little room.
std::span<const ListColumn> DefectColumns(bool fullForm);

// The column that SortByWells compares.
inline constexpr int WellsColumn = 1;

std::string SectionText(const _TESTING_DATA& section, std::int32_t recordCount, int column);
// `name` as DefectName gives it.
std::string DefectText(const _REC_DATA& record, std::string_view name, bool fullForm, int column);
// 0x00BBGGRR. Sections with findings stand out in green.
constexpr std::uint32_t SectionColour(bool hasDefects) {
    return hasDefects ? 0x00AE2CU : 0U;
}
