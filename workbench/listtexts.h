// What the section list and the defect list show: their columns, the text of each cell, and the colour of
// a row. Headings are language messages; widths are pixels.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "store/records/records.h"

class CDbRec;

struct ListColumn {
    int Heading;  // number of the language message
    int Width;
    bool RightAligned = false;
};

std::span<const ListColumn> SectionColumns();
// The full form stands in the review window and the short one where there is little room.
std::span<const ListColumn> DefectColumns(bool fullForm);

// The column that SortByWells compares.
inline constexpr int WellsColumn = 1;

std::string SectionText(const _TESTING_DATA& section, std::int32_t recordCount, int column);
// `name` as DefectName gives it.
std::string DefectText(const _REC_DATA& record, std::string_view name, bool fullForm, int column);
// Of a code in the criterion; the code itself if it has no name.
std::string DefectName(const CDbRec& database, std::string_view code);

// As minutes and seconds. A negative time counts as the unsigned number that its bits make, so that a
// record without a picture shows 71582788:15: operators know such rows by it.
std::string PictureTimeText(double seconds);

// 0x00BBGGRR. Sections with findings stand out in green.
constexpr std::uint32_t SectionColour(bool hasDefects) {
    return hasDefects ? 0x00AE2CU : 0U;
}
