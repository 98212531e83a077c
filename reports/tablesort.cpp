#include "reports/tablesort.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <numeric>

#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

constexpr std::size_t NumberWidth = 15;

std::string NumberKey(const std::string& text) {
    const double value = ParseDouble(text);
    std::string key = FormatFixed(value, 5);
    if (key.size() < NumberWidth) {
        const std::size_t sign = key.starts_with('-') ? 1 : 0;
        const bool finite = std::isfinite(value);
        key.insert(finite ? sign : 0, NumberWidth - key.size(), finite ? '0' : ' ');
    }
    return key;
}

std::string TextKey(const std::string& text) {
    std::string folded = text;
    for (char& c : folded) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return GbkFromUtf8(folded);
}

}  // namespace

void TableSort(std::vector<std::string>& list, int rowWidth, int key1, int key2, int key3, bool numeric1,
               bool numeric2, bool numeric3) {
    if (rowWidth <= 0) {
        return;
    }
    struct Key {
        int Column;
        bool Numeric;
    };
    const std::array<Key, 3> keys = {{{key1, numeric1}, {key2, numeric2}, {key3, numeric3}}};
    const auto width = static_cast<std::size_t>(rowWidth);
    const std::size_t rows = list.size() / width;

    std::vector<std::array<std::string, 3>> rowKeys(rows);
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t k = 0; k < keys.size(); ++k) {
            if (keys[k].Column >= 0 && keys[k].Column < rowWidth) {
                const std::string& text = list[row * width + static_cast<std::size_t>(keys[k].Column)];
                rowKeys[row][k] = keys[k].Numeric ? NumberKey(text) : TextKey(text);
            }
        }
    }
    std::vector<std::size_t> order(rows);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return rowKeys[a] < rowKeys[b]; });

    std::vector<std::string> sorted;
    sorted.reserve(list.size());
    const auto at = [&](std::size_t index) {
        return std::make_move_iterator(list.begin() + static_cast<std::ptrdiff_t>(index));
    };
    for (const std::size_t row : order) {
        sorted.insert(sorted.end(), at(row * width), at(row * width + width));
    }
    sorted.insert(sorted.end(), at(rows * width), std::make_move_iterator(list.end()));
    list = std::move(sorted);
}
