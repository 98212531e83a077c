// Gathers the rows of a surveyor's sheet as a reader comes upon them.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// The columns that are read: well number, longitude, latitude.
inline constexpr int GpsColumns = 3;

struct GpsSheet {
    std::vector<std::string> Texts;  // three a row
    // Rows with something in these columns behind the first row without a well number. They count for
    // nothing.
    std::int64_t Unread = 0;
};

struct GpsCell {
    std::string Text;  // empty also for a value that is neither a number nor a text
    bool HasValue = false;
};
using GpsRow = std::array<GpsCell, GpsColumns>;

class CGpsRows {
public:
    explicit CGpsRows(GpsSheet& sheet) : m_sheet(sheet) {}
    // `number` from 1, which is the heading; rising. A number that is left out is an empty row. Throws
    // CSheetError once the texts take more than a sheet of its most rows does.
    void Add(std::int64_t number, GpsRow row);

private:
    GpsSheet& m_sheet;
    std::int64_t m_next = 2;
    std::size_t m_bytes = 0;
    bool m_ended = false;
};
