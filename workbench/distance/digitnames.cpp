#include "workbench/distance/digitnames.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace {

constexpr float Alike = 0.88F;  // to be the same shape
// For two groups to be one. Noise splits a digit into several, haste makes one of two: the strictest that
// gives a naming counts.
constexpr std::array<float, 3> TheSame{0.955F, 0.93F, 0.90F};
constexpr float Variant = 0.80F;  // for a group that follows nobody to be a worse picture of one that does
constexpr std::size_t LeastSeen = 4;  // of a shape
constexpr int LeastFrames = 30;
constexpr double LeastShare = 0.5;     // of the frames show a number
constexpr double MostSpeed = 0.6;      // metres a second
constexpr double LeastSmooth = 0.97;   // of the steps
constexpr double LeastRange = 1.0;     // of all values
constexpr int LeastRingMargin = 2;     // matching rings more than the next naming
constexpr std::size_t LeastChain = 8;  // different tenths that follow each other
constexpr double LongestGap = 0.5;     // seconds between frames that count as neighbours
constexpr float ClearLikeness = 0.86F;
constexpr float ClearMargin = 0.035F;

struct Group {
    Shape Form{};
    std::size_t Count = 0;
    std::map<int, int> Holes;

    void Add(const Glyph& glyph) {
        ++Count;
        ++Holes[glyph.Holes];
        const float share = 1.0F / static_cast<float>(std::min<std::size_t>(Count, 60));
        for (std::size_t i = 0; i < Form.size(); ++i) {
            Form[i] += (glyph.Form[i] - Form[i]) * share;
        }
        Normalise();
    }
    void Normalise() {
        float length = 0.0F;
        for (const float value : Form) {
            length += value * value;
        }
        length = std::sqrt(std::max(length, 1e-9F));
        for (float& value : Form) {
            value /= length;
        }
    }
    int UsualHoles() const {
        return std::max_element(Holes.begin(), Holes.end(),
                                [](const auto& a, const auto& b) { return a.second < b.second; })
            ->first;
    }
};

int NearestGroup(const std::vector<Group>& groups, const Shape& form, float least) {
    int nearest = -1;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (const float likeness = Likeness(groups[i].Form, form); likeness >= least) {
            least = likeness;
            nearest = static_cast<int>(i);
        }
    }
    return nearest;
}

std::vector<Group> MakeGroups(const std::vector<SeenNumber>& seen, int decimals, float same) {
    std::vector<Group> groups;
    const auto each = [&](const auto& take) {
        for (const SeenNumber& frame : seen) {
            if (frame.Number && frame.Number->Decimals == decimals) {
                for (const Glyph& glyph : frame.Number->Digits) {
                    take(glyph);
                }
            }
        }
    };
    each([&](const Glyph& glyph) {
        int group = NearestGroup(groups, glyph.Form, Alike);
        if (group < 0 && groups.size() < 60) {
            group = static_cast<int>(groups.size());
            groups.emplace_back();
        }
        if (group >= 0) {
            groups[static_cast<std::size_t>(group)].Add(glyph);
        }
    });
    for (std::size_t i = 0; i < groups.size(); ++i) {
        for (std::size_t j = groups.size(); j-- > i + 1;) {
            if (Likeness(groups[i].Form, groups[j].Form) >= same) {
                for (std::size_t k = 0; k < groups[i].Form.size(); ++k) {
                    groups[i].Form[k] = groups[i].Form[k] * static_cast<float>(groups[i].Count) +
                                        groups[j].Form[k] * static_cast<float>(groups[j].Count);
                }
                groups[i].Count += groups[j].Count;
                for (const auto& [holes, count] : groups[j].Holes) {
                    groups[i].Holes[holes] += count;
                }
                groups[i].Normalise();
                groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(j));
            }
        }
    }
    // What is left over counts for the nearest of those that are seen often.
    std::erase_if(groups, [](const Group& group) { return group.Count < LeastSeen; });
    return groups;
}

int UsualDecimals(const std::vector<SeenNumber>& seen) {
    std::map<int, int> counts;
    for (const SeenNumber& frame : seen) {
        if (frame.Number) {
            ++counts[frame.Number->Decimals];
        }
    }
    const auto most = std::max_element(counts.begin(), counts.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    const bool enough = most != counts.end() && most->second >= LeastFrames &&
                        most->second >= LeastShare * static_cast<double>(seen.size());
    return enough ? most->first : 0;
}

struct Row {
    double Time;
    std::vector<int> Groups;
};

std::vector<Row> GroupRows(const std::vector<SeenNumber>& seen, const std::vector<Group>& groups,
                           int decimals) {
    std::vector<Row> rows;
    for (const SeenNumber& frame : seen) {
        if (!frame.Number || frame.Number->Decimals != decimals) {
            continue;
        }
        Row row{frame.Time, {}};
        for (const Glyph& glyph : frame.Number->Digits) {
            row.Groups.push_back(NearestGroup(groups, glyph.Form, 0.75F));
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

// The shapes of the tenths in the order in which they follow each other; closed if the last leads to the
// first.
std::vector<int> FollowTenths(const std::vector<Row>& rows, std::size_t groups, int decimals) {
    std::vector<std::vector<int>> after(groups, std::vector<int>(groups, 0));
    std::vector<int> seen(groups, 0);
    const auto tenth = [&](const Row& row) {
        return row.Groups[row.Groups.size() - static_cast<std::size_t>(decimals)];
    };
    for (std::size_t i = 1; i < rows.size(); ++i) {
        const int a = tenth(rows[i - 1]);
        const int b = tenth(rows[i]);
        if (a >= 0 && b >= 0) {
            ++seen[static_cast<std::size_t>(b)];
            if (a != b && rows[i].Time - rows[i - 1].Time <= LongestGap) {
                ++after[static_cast<std::size_t>(a)][static_cast<std::size_t>(b)];
            }
        }
    }
    const auto next = [&](int group, bool forward) {
        int best = -1;
        int most = 0;
        for (std::size_t other = 0; other < groups; ++other) {
            const int there = after[static_cast<std::size_t>(group)][other];
            const int back = after[other][static_cast<std::size_t>(group)];
            if (const int count = forward ? there - back / 2 : back - there / 2; count > most) {
                most = count;
                best = static_cast<int>(other);
            }
        }
        return best;
    };
    std::vector<int> chain{static_cast<int>(std::max_element(seen.begin(), seen.end()) - seen.begin())};
    for (int group = next(chain[0], true);
         group >= 0 && std::find(chain.begin(), chain.end(), group) == chain.end();
         group = next(group, true)) {
        chain.push_back(group);
    }
    for (int group = next(chain[0], false);
         group >= 0 && std::find(chain.begin(), chain.end(), group) == chain.end();
         group = next(group, false)) {
        chain.insert(chain.begin(), group);
    }
    return chain;
}

bool RingsFit(int digit, int holes) {
    switch (digit) {
        case 0:
            return holes == 1 || holes == 2;  // some are crossed
        case 4:
            return holes <= 1;
        case 6:
        case 9:
            return holes == 1;
        case 8:
            return holes == 2;
        default:
            return holes == 0;
    }
}

struct Naming {
    std::vector<int> DigitOf;  // by group; -1 for none
    double Smooth = 0.0;
    double Range = 0.0;
    int Rings = 0;
};

void Measure(Naming& naming, const std::vector<Row>& rows, int decimals) {
    const double step = std::pow(10.0, -decimals);
    double last = 0.0;
    double lastTime = 0.0;
    double least = 1e300;
    double most = -1e300;
    int read = 0;
    int steps = 0;
    int smooth = 0;
    for (const Row& row : rows) {
        double value = 0.0;
        bool whole = true;
        for (const int group : row.Groups) {
            const int digit = group < 0 ? -1 : naming.DigitOf[static_cast<std::size_t>(group)];
            whole = whole && digit >= 0;
            value = value * 10.0 + std::max(digit, 0);
        }
        if (!whole) {
            continue;
        }
        value *= step;
        if (read++ > 0) {
            ++steps;
            smooth += std::fabs(value - last) <= MostSpeed * (row.Time - lastTime) + 1.5 * step ? 1 : 0;
        }
        last = value;
        lastTime = row.Time;
        least = std::min(least, value);
        most = std::max(most, value);
    }
    const bool enough = read >= LeastFrames && read >= LeastShare * static_cast<double>(rows.size());
    naming.Smooth = enough && steps > 0 ? static_cast<double>(smooth) / steps : 0.0;
    naming.Range = enough ? most - least : 0.0;
}

// Groups that aren't in the chain are worse pictures of those that are, or no digits at all.
void NameVariants(Naming& naming, const std::vector<Group>& groups, const std::vector<int>& chain) {
    for (std::size_t i = 0; i < groups.size(); ++i) {
        float most = Variant;
        for (const int other : chain) {
            const auto group = static_cast<std::size_t>(other);
            if (const float likeness = Likeness(groups[i].Form, groups[group].Form);
                group != i && likeness > most &&
                std::find(chain.begin(), chain.end(), static_cast<int>(i)) == chain.end()) {
                most = likeness;
                naming.DigitOf[i] = naming.DigitOf[group];
            }
        }
    }
}

std::optional<DigitNames> NameGroups(const std::vector<SeenNumber>& seen, int decimals, float same) {
    const std::vector<Group> groups = MakeGroups(seen, decimals, same);
    if (groups.size() < LeastChain) {
        return std::nullopt;
    }
    const std::vector<Row> rows = GroupRows(seen, groups, decimals);
    const std::vector<int> chain = FollowTenths(rows, groups.size(), decimals);
    if (chain.size() < LeastChain || chain.size() > 10) {
        return std::nullopt;
    }
    std::vector<Naming> namings;
    for (int first = 0; first < 10; ++first) {
        for (const int direction : {1, -1}) {
            Naming naming;
            naming.DigitOf.assign(groups.size(), -1);
            for (std::size_t i = 0; i < chain.size(); ++i) {
                const int digit = ((first + direction * static_cast<int>(i)) % 10 + 10) % 10;
                const auto group = static_cast<std::size_t>(chain[i]);
                naming.DigitOf[group] = digit;
                naming.Rings += RingsFit(digit, groups[group].UsualHoles()) ? 1 : 0;
            }
            NameVariants(naming, groups, chain);
            Measure(naming, rows, decimals);
            if (naming.Smooth >= LeastSmooth && naming.Range >= LeastRange) {
                namings.push_back(std::move(naming));
            }
        }
    }
    std::sort(namings.begin(), namings.end(),
              [](const Naming& a, const Naming& b) { return a.Rings > b.Rings; });
    if (namings.empty() || namings[0].Rings + 2 < static_cast<int>(chain.size()) ||
        (namings.size() > 1 && namings[0].Rings - namings[1].Rings < LeastRingMargin)) {
        return std::nullopt;
    }
    DigitNames names;
    names.Decimals = decimals;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (namings[0].DigitOf[i] >= 0) {
            names.Shapes.push_back({groups[i].Form, namings[0].DigitOf[i]});
        }
    }
    return names;
}

}  // namespace

std::optional<DigitNames> NameDigits(const std::vector<SeenNumber>& seen) {
    const int decimals = UsualDecimals(seen);
    for (const float same : TheSame) {
        if (auto names = decimals == 0 ? std::nullopt : NameGroups(seen, decimals, same)) {
            return names;
        }
    }
    return std::nullopt;
}

std::optional<ReadValue> ReadNumber(const NumberGlyphs& number, const DigitNames& names) {
    if (number.Decimals != names.Decimals) {
        return std::nullopt;
    }
    ReadValue read;
    read.Clear = true;
    for (const Glyph& glyph : number.Digits) {
        float best = -1.0F;
        float second = -1.0F;
        int digit = -1;
        for (const NamedShape& shape : names.Shapes) {
            const float likeness = Likeness(shape.Form, glyph.Form);
            if (likeness > best) {
                second = shape.Digit == digit ? second : best;
                best = likeness;
                digit = shape.Digit;
            } else if (shape.Digit != digit) {
                second = std::max(second, likeness);
            }
        }
        if (best < 0.7F) {
            return std::nullopt;
        }
        read.Clear = read.Clear && best >= ClearLikeness && best - second >= ClearMargin;
        read.Value = read.Value * 10.0 + digit;
    }
    read.Value *= std::pow(10.0, -names.Decimals);
    return read;
}
