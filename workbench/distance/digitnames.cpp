#include "workbench/distance/digitnames.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "workbench/distance/digitforms.h"
#include "workbench/distance/valuepath.h"

namespace {

constexpr std::size_t LeastFrames = 30;
constexpr double LeastShare = 0.3;       // of the frames show a number
constexpr std::size_t MostFrames = 600;  // to learn from
constexpr int Rounds = 4;
constexpr int LeastSeen = 3;                // times, for a digit's own shape to count
constexpr float LeastLikely = 0.45F;        // of digits as they usually look, on the first course
constexpr double LeastSmooth = 0.97;        // of the steps
constexpr double LeastRange = 1.0;          // of all values, in the unit of the picture
constexpr std::size_t LeastDifferent = 11;  // values
constexpr float LeastLooks = 0.55F;         // of the learned digits, to be digits at all
constexpr float LeastMargin = 0.08F;        // between this naming and the next
constexpr float LeastReadable = 0.7F;       // of a shape, to be a digit
constexpr float ClearLikeness = 0.86F;
constexpr float ClearMargin = 0.035F;
constexpr float StaticLikeness = 0.9F;
constexpr float LetterLikeness = 0.72F;
constexpr double SameFrame = 0.15;  // seconds between a known value and a frame that shows it

using Forms = std::array<std::optional<Shape>, 10>;
// How the number is usually shown.
struct Layout {
    int Decimals = 0;
    bool IsPointUnseen = false;
};

Layout UsualLayout(const std::vector<SeenNumber>& seen, const std::vector<KnownValue>& known) {
    std::map<int, std::size_t> counts;
    for (const SeenNumber& frame : seen) {
        if (frame.Number) {
            ++counts[frame.Number->Decimals];
        }
    }
    if (!known.empty()) {
        return {known[0].Decimals, counts[known[0].Decimals] < counts[0]};
    }
    counts.erase(0);
    const auto most = std::max_element(counts.begin(), counts.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    return {most == counts.end() ? 0 : most->first, false};
}

bool Fits(const NumberGlyphs& number, const Layout& layout) {
    return number.Decimals == (layout.IsPointUnseen ? 0 : layout.Decimals) &&
           static_cast<int>(number.Digits.size()) > layout.Decimals;
}

// How many places from the right are digits: letters that stand close before them never change, and look like
// none.
std::size_t PlacesOfDigits(const std::vector<SeenNumber>& seen, const Layout& layout) {
    for (auto place = static_cast<std::size_t>(layout.Decimals) + 1;; ++place) {
        Shape mean{};
        std::vector<const Shape*> forms;
        for (const SeenNumber& frame : seen) {
            if (frame.Number && Fits(*frame.Number, layout) && frame.Number->Digits.size() > place) {
                forms.push_back(&(frame.Number->Digits.end() - 1 - static_cast<std::ptrdiff_t>(place))->Form);
                for (std::size_t i = 0; i < mean.size(); ++i) {
                    mean[i] += (*forms.back())[i];
                }
            }
        }
        if (forms.size() < LeastFrames) {
            return forms.empty() ? place : place + 1;
        }
        Normalise(mean);
        const auto same =
            static_cast<std::size_t>(std::count_if(forms.begin(), forms.end(), [&](const Shape* form) {
                return Likeness(*form, mean) >= StaticLikeness;
            }));
        float digit = -1.0F;
        for (int i = 0; i < 10; ++i) {
            digit = std::max(digit, UsualLikeness(mean, i));
        }
        if (20 * same >= 19 * forms.size() && digit < LetterLikeness) {
            return place;
        }
    }
}

NumberGlyphs Trimmed(NumberGlyphs number, std::size_t places) {
    if (number.Digits.size() > places) {
        number.Digits.erase(number.Digits.begin(), number.Digits.end() - static_cast<std::ptrdiff_t>(places));
    }
    return number;
}

struct Sample {
    double Time;
    NumberGlyphs Number;
    std::optional<int> Known;
};

std::vector<Sample> ChooseSamples(const std::vector<SeenNumber>& seen, const std::vector<KnownValue>& known,
                                  const Layout& layout, std::size_t places) {
    std::vector<Sample> samples;
    for (const SeenNumber& frame : seen) {
        if (!frame.Number || !Fits(*frame.Number, layout)) {
            continue;
        }
        Sample sample{frame.Time, Trimmed(*frame.Number, places), {}};
        for (const KnownValue& value : known) {
            if (std::fabs(value.Time - frame.Time) <= SameFrame) {
                sample.Known =
                    static_cast<int>(std::lround(value.Distance * std::pow(10.0, layout.Decimals)));
            }
        }
        samples.push_back(std::move(sample));
    }
    const std::size_t stride = (samples.size() + MostFrames - 1) / MostFrames;
    std::vector<Sample> chosen;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (stride <= 1 || i % stride == 0 || samples[i].Known) {
            chosen.push_back(std::move(samples[i]));
        }
    }
    return chosen;
}

std::vector<int> Course(const std::vector<Sample>& samples, const Forms* forms, int decimals) {
    std::vector<DigitsSeen> frames;
    for (const Sample& sample : samples) {
        DigitsSeen frame{sample.Time, {}, sample.Known};
        for (const Glyph& glyph : sample.Number.Digits) {
            std::array<float, 10> likeness{};
            for (int digit = 0; digit < 10; ++digit) {
                const auto at = static_cast<std::size_t>(digit);
                likeness[at] = forms != nullptr && (*forms)[at] ? Likeness(glyph.Form, *(*forms)[at])
                               : forms != nullptr               ? UsualLikeness(glyph.Form, digit) * 0.9F
                                                                : UsualLikeness(glyph.Form, digit);
            }
            frame.Likeness.push_back(likeness);
        }
        frames.push_back(std::move(frame));
    }
    return MostLikelyPath(frames, decimals);
}

// The digit that a place has in a value.
int DigitAt(int value, std::size_t places, std::size_t place) {
    for (std::size_t i = place + 1; i < places; ++i) {
        value /= 10;
    }
    return value % 10;
}

struct Learned {
    Forms Shapes;
    std::array<int, 10> Counts{};
};

Learned LearnFrom(const std::vector<Sample>& samples, const std::vector<int>& values) {
    Learned learned;
    std::array<Shape, 10> sums{};
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const std::vector<Glyph>& digits = samples[i].Number.Digits;
        for (std::size_t place = 0; place < digits.size(); ++place) {
            const auto digit = static_cast<std::size_t>(DigitAt(values[i], digits.size(), place));
            ++learned.Counts[digit];
            for (std::size_t k = 0; k < sums[digit].size(); ++k) {
                sums[digit][k] += digits[place].Form[k];
            }
        }
    }
    for (std::size_t digit = 0; digit < 10; ++digit) {
        if (learned.Counts[digit] >= LeastSeen) {
            Normalise(sums[digit]);
            learned.Shapes[digit] = sums[digit];
        }
    }
    return learned;
}

double Range(const std::vector<int>& values, int decimals) {
    const auto [least, most] = std::minmax_element(values.begin(), values.end());
    return (*most - *least) * std::pow(10.0, -decimals);
}

// A clock that is read as a number now and then has a wide range too, but few values.
bool Travels(const std::vector<int>& values, int decimals) {
    const std::set<int> different(values.begin(), values.end());
    return Range(values, decimals) >= LeastRange && different.size() >= LeastDifferent;
}

// Reads by the shapes alone. The share of steps that a camera could make; 0 if too little can be read.
double Smoothness(const std::vector<Sample>& samples, const DigitNames& names) {
    const double step = std::pow(10.0, -names.Decimals);
    double last = 0.0;
    double lastTime = 0.0;
    std::size_t read = 0;
    std::size_t smooth = 0;
    for (const Sample& sample : samples) {
        const auto value = ReadNumber(sample.Number, names);
        if (!value) {
            continue;
        }
        if (read > 0 &&
            std::fabs(value->Value - last) <= MostCameraSpeed * (sample.Time - lastTime) + 1.5 * step) {
            ++smooth;
        }
        ++read;
        last = value->Value;
        lastTime = sample.Time;
    }
    return read >= LeastFrames && 2 * read >= samples.size()
               ? static_cast<double>(smooth) / static_cast<double>(read - 1)
               : 0.0;
}

// How much the learned shapes look like the digits that they would be.
float Looks(const Forms& forms, int first, int direction) {
    float sum = 0.0F;
    int count = 0;
    for (int digit = 0; digit < 10; ++digit) {
        if (const auto& form = forms[static_cast<std::size_t>(digit)]) {
            sum += UsualLikeness(*form, ((first + direction * digit) % 10 + 10) % 10);
            ++count;
        }
    }
    return count == 0 ? 0.0F : sum / static_cast<float>(count);
}

bool LookLikeDigits(const Forms& forms) {
    const float own = Looks(forms, 0, 1);
    float next = -1.0F;
    for (int first = 0; first < 10; ++first) {
        for (const int direction : {1, -1}) {
            if (first != 0 || direction != 1) {
                next = std::max(next, Looks(forms, first, direction));
            }
        }
    }
    return own >= LeastLooks && own - next >= LeastMargin;
}

// All known values must be what is read there.
bool Agree(const std::vector<Sample>& samples, const DigitNames& names,
           const std::vector<KnownValue>& known) {
    const double step = std::pow(10.0, -names.Decimals);
    return std::all_of(known.begin(), known.end(), [&](const KnownValue& value) {
        return std::any_of(samples.begin(), samples.end(), [&](const Sample& sample) {
            const auto read = std::fabs(sample.Time - value.Time) <= SameFrame
                                  ? ReadNumber(sample.Number, names)
                                  : std::nullopt;
            return read && std::fabs(read->Value - value.Distance) < MostCameraSpeed * SameFrame + 1.5 * step;
        });
    });
}

}  // namespace

std::optional<DigitNames> LearnDigits(const std::vector<SeenNumber>& seen,
                                      const std::vector<KnownValue>& known) {
    const Layout layout = UsualLayout(seen, known);
    const int decimals = layout.Decimals;
    if (decimals == 0) {
        return std::nullopt;
    }
    const std::size_t places = PlacesOfDigits(seen, layout);
    const std::vector<Sample> samples = ChooseSamples(seen, known, layout, places);
    if (samples.size() < LeastFrames ||
        static_cast<double>(samples.size()) <
            LeastShare * static_cast<double>(std::min(seen.size(), MostFrames))) {
        return std::nullopt;
    }
    std::vector<int> values = Course(samples, nullptr, decimals);
    Learned learned;
    for (int round = 0; round < Rounds; ++round) {
        if (known.empty() && !Travels(values, decimals)) {
            return std::nullopt;
        }
        learned = LearnFrom(samples, values);
        if (known.empty() && Looks(learned.Shapes, 0, 1) < LeastLikely) {
            return std::nullopt;
        }
        std::vector<int> next = Course(samples, &learned.Shapes, decimals);
        if (next == values) {
            break;
        }
        values = std::move(next);
    }
    DigitNames names{LearnFrom(samples, values).Shapes, decimals, places, layout.IsPointUnseen};
    if (Smoothness(samples, names) < LeastSmooth) {
        return std::nullopt;
    }
    const bool settled = known.size() >= 2 ? Agree(samples, names, known)
                                           : Travels(values, decimals) && LookLikeDigits(names.Forms) &&
                                                 Agree(samples, names, known);
    return settled ? std::optional(names) : std::nullopt;
}

std::optional<ReadValue> ReadNumber(const NumberGlyphs& number, const DigitNames& names) {
    if (!Fits(number, {names.Decimals, names.IsPointUnseen})) {
        return std::nullopt;
    }
    ReadValue read;
    read.Clear = true;
    for (const Glyph& glyph : Trimmed(number, names.Places).Digits) {
        float best = -1.0F;
        float second = -1.0F;
        int digit = -1;
        for (int other = 0; other < 10; ++other) {
            const auto& form = names.Forms[static_cast<std::size_t>(other)];
            const float likeness = form ? Likeness(*form, glyph.Form) : -1.0F;
            if (likeness > best) {
                second = best;
                best = likeness;
                digit = other;
            } else {
                second = std::max(second, likeness);
            }
        }
        if (best < LeastReadable) {
            return std::nullopt;
        }
        read.Clear = read.Clear && best >= ClearLikeness && best - second >= ClearMargin;
        read.Value = read.Value * 10.0 + digit;
    }
    read.Value *= std::pow(10.0, -names.Decimals);
    return read;
}
