#include "lists/listtexts.h"

#include "shell/numbers.h"

namespace {

constexpr ListColumn TestingColumns[] = {{2600, 80},
                                         {2601, 80, false, false, true},
                                         {2602, 80},
                                         {2603, 80},
                                         {2604, 80},
                                         {2605, 80},
                                         {2606, 80},
                                         {2607, 80},
                                         {2608, 80},
                                         {2609, 80},
                                         {2610, 220, false, true}};
constexpr ListColumn FullColumns[] = {{2030, 75},  {2031, 75}, {2032, 75}, {2033, 100},
                                      {2034, 100}, {2035, 75}, {2036, 75}, {2037, 100}};
constexpr ListColumn ShortColumns[] = {
    {2038, 80}, {2039, 35}, {2040, 30, true}, {2041, 50, true}, {2042, 50, true}};

std::string DistanceText(float metres) {
    return FormatNumber(static_cast<double>(metres), 2);
}

}  // namespace

std::span<const ListColumn> SectionColumns() {
    return TestingColumns;
}

std::span<const ListColumn> DefectColumns(bool fullForm) {
    return fullForm ? std::span<const ListColumn>(FullColumns) : std::span<const ListColumn>(ShortColumns);
}

std::string SectionText(const _TESTING_DATA& section, std::int32_t recordCount, int column) {
    switch (column) {
        case 0:
            return section.TestingName;
        case WellsColumn:
            return section.Label();
        case 2:
            return FormatInt(recordCount);
        case 3:
            return section.TaskIndex;
        case 4:
            return section.TaskName;
        case 5:
            return section.TestingDirection;
        case 6:
            return section.PipeLength;
        case 7:
            return section.PipeDiameter;
        case 8:
            return section.PipeMaterial;
        case 9:
            return section.PipeType;
        case 10:
            return section.FirstVideo();
        default:
            return {};
    }
}

std::string DefectText(const _REC_DATA& record, std::string_view name, bool fullForm, int column) {
    switch (column) {
        case 0:
            return std::string(name);
        case 1:
            return record.DefectCode;
        case 2:
            return FormatInt(record.DefectLevel);
        case 3:
            return DistanceText(record.DistanceStart);
        case 4:
            return DistanceText(record.DistanceEnd);
        default:
            break;
    }
    if (!fullForm) {
        return {};
    }
    switch (column) {
        case 5:
            return FormatInt(record.Pictures.GetSize());
        case 6:
            return PictureTimeText(record.GetPicTime1());
        case 7:
            return record.Comment;
        default:
            return {};
    }
}
