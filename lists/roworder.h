// The order of rows in the lists.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <vector>

// By the numbers in two texts such as "Y2 - Y10", whatever stands around them: below, equal or above 0. A
// text in which other than two numbers are found has no place among these; then the texts decide.
int CompareByWells(std::string_view a, std::string_view b);

// The rows 0 to `count` - 1 in their new order; equal ones keep theirs. Comparisons that contradict each
// other, as those of numbers with texts can, still give each row exactly once.
std::vector<int> SortedRows(int count, const std::function<int(int, int)>& compare);

// Where each of some sections or records stands in their array, by ID.
template <class Array>
std::unordered_map<std::int32_t, int> PlacesById(const Array& rows) {
    std::unordered_map<std::int32_t, int> places;
    int place = 0;
    for (const auto& row : rows) {
        places.emplace(row.ID, place++);
    }
    return places;
}
