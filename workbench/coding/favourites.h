// The ten codes with grades that an operator needs most, each on a key of its own. They are learned from use,
// and a place once given stays, so that fingers can learn it: only what is used much more often takes over
// the place that is used least. What was put on a place by hand stays there.
#pragma once

#include <array>
#include <map>
#include <string>
#include <string_view>

class CFavourites {
public:
    static constexpr int Places = 10;

    // What was written by Text; what can't be read is left out.
    explicit CFavourites(std::string_view text = {});
    std::string Text() const;

    // "PL3"; empty for a place without any. `place` from 0, the key "1"; 9 is the key "0".
    const std::string& At(int place) const;
    bool IsFixed(int place) const;

    // It has been stored once more.
    void Learn(const std::string& codeAndGrade);
    // Puts it on that place by hand; where it was on another one, that is free again.
    void Fix(int place, const std::string& codeAndGrade);

private:
    struct Place {
        std::string Label;
        bool Fixed = false;
    };
    int CountOf(const std::string& label) const;

    std::array<Place, Places> m_places;
    std::map<std::string, int> m_counts;
};
