#include "workbench/coding/favourites.h"

#include <algorithm>
#include <vector>

#include "shell/numbers.h"

namespace {

// How many times as often something must be used to take over the place of another.
constexpr int TakesOver = 2;
// Of all counts, halved beyond it: what was needed years ago gives way.
constexpr int MostUses = 1000;

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        parts.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

}  // namespace

// "PL3=12,CJ2=4!...;PL3 CJ2 - ...": counts, and the places with "!" behind those that were fixed.
CFavourites::CFavourites(std::string_view text) {
    const auto halves = Split(text, ';');
    if (halves.size() != 2) {
        return;
    }
    for (const std::string_view pair : Split(halves[0], ',')) {
        if (const std::size_t equals = pair.find('='); equals != std::string_view::npos && equals > 0) {
            m_counts[std::string(pair.substr(0, equals))] = std::max(ParseInt(pair.substr(equals + 1)), 0);
        }
    }
    const auto places = Split(halves[1], ' ');
    for (std::size_t i = 0; i < std::min<std::size_t>(places.size(), Places); ++i) {
        std::string_view label = places[i];
        m_places[i].Fixed = label.ends_with('!');
        label.remove_suffix(m_places[i].Fixed ? 1 : 0);
        m_places[i].Label = label == "-" ? std::string_view() : label;
    }
}

std::string CFavourites::Text() const {
    std::string text;
    for (const auto& [label, count] : m_counts) {
        text += (text.empty() ? "" : ",") + label + "=" + FormatInt(count);
    }
    text += ";";
    for (const Place& place : m_places) {
        text += (place.Label.empty() ? "-" : place.Label) + (place.Fixed ? "! " : " ");
    }
    return text;
}

const std::string& CFavourites::At(int place) const {
    return m_places.at(static_cast<std::size_t>(place)).Label;
}

bool CFavourites::IsFixed(int place) const {
    return m_places.at(static_cast<std::size_t>(place)).Fixed;
}

int CFavourites::CountOf(const std::string& label) const {
    const auto found = m_counts.find(label);
    return found == m_counts.end() ? 0 : found->second;
}

void CFavourites::Learn(const std::string& codeAndGrade) {
    if (++m_counts[codeAndGrade] > MostUses) {
        for (auto& [label, count] : m_counts) {
            count /= 2;
        }
    }
    const auto has = [&](const Place& place) { return place.Label == codeAndGrade; };
    if (std::any_of(m_places.begin(), m_places.end(), has)) {
        return;
    }
    Place* least = nullptr;
    for (Place& place : m_places) {
        if (!place.Fixed &&
            (least == nullptr || (!least->Label.empty() &&
                                  (place.Label.empty() || CountOf(place.Label) < CountOf(least->Label))))) {
            least = &place;
        }
    }
    if (least != nullptr &&
        (least->Label.empty() || CountOf(codeAndGrade) > TakesOver * CountOf(least->Label))) {
        least->Label = codeAndGrade;
    }
}

void CFavourites::Fix(int place, const std::string& codeAndGrade) {
    for (Place& other : m_places) {
        if (other.Label == codeAndGrade) {
            other = {};
        }
    }
    m_places.at(static_cast<std::size_t>(place)) = {codeAndGrade, !codeAndGrade.empty()};
}
