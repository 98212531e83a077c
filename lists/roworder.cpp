#include "lists/roworder.h"

#include <optional>
#include <utility>

#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

std::optional<std::pair<int, int>> TwoNumbers(std::string_view text) {
    int found[2] = {0, 0};
    int count = 0;
    for (std::size_t at = 0; at < text.size();) {
        if (!IsDigit(text[at])) {
            ++at;
            continue;
        }
        std::size_t end = at;
        while (end < text.size() && IsDigit(text[end])) {
            ++end;
        }
        if (count == 2) {
            return std::nullopt;
        }
        found[count++] = ParseInt(text.substr(at, end - at));
        at = end;
    }
    return count == 2 ? std::optional(std::pair(found[0], found[1])) : std::nullopt;
}

}  // namespace

int CompareByWells(std::string_view a, std::string_view b) {
    const auto numbersA = TwoNumbers(a);
    const auto numbersB = TwoNumbers(b);
    if (!numbersA || !numbersB) {
        return CompareGbk(a, b);
    }
    // None is negative, so that differences fit.
    const int first = numbersA->first - numbersB->first;
    return first != 0 ? first : numbersA->second - numbersB->second;
}

// Merging by hand: the library's sort may do anything when comparisons contradict each other.
std::vector<int> SortedRows(int count, const std::function<int(int, int)>& compare) {
    const auto size = static_cast<std::size_t>(count);
    std::vector<int> rows(size);
    for (std::size_t i = 0; i < size; ++i) {
        rows[i] = static_cast<int>(i);
    }
    std::vector<int> merged(size);
    for (std::size_t width = 1; width < size; width *= 2) {
        for (std::size_t begin = 0; begin < size; begin += 2 * width) {
            const std::size_t middle = std::min(begin + width, size);
            const std::size_t end = std::min(begin + 2 * width, size);
            std::size_t left = begin;
            std::size_t right = middle;
            for (std::size_t to = begin; to < end; ++to) {
                const bool takeRight =
                    left == middle || (right < end && compare(rows[left], rows[right]) > 0);
                merged[to] = takeRight ? rows[right++] : rows[left++];
            }
        }
        rows.swap(merged);
    }
    return rows;
}
