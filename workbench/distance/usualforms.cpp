#include <algorithm>
#include <vector>

#include "workbench/distance/digitforms.h"

namespace {

using Kinds = std::vector<Shape>;

template <std::size_t Count, std::size_t KindCount>
std::array<Kinds, Count> Read(const std::array<std::array<std::string_view, KindCount>, Count>& texts) {
    std::array<Kinds, Count> read;
    for (std::size_t letter = 0; letter < Count; ++letter) {
        for (const std::string_view text : texts[letter]) {
            Shape shape{};
            for (std::size_t i = 0; i < text.size(); ++i) {
                const char c = text[i];
                shape[i] = static_cast<float>(c <= '9' ? c - '0' : c - 'a' + 10);
            }
            Normalise(shape);
            read[letter].push_back(shape);
        }
    }
    return read;
}

float MostAlike(const Kinds& kinds, const Shape& form) {
    float most = -1.0F;
    for (const Shape& kind : kinds) {
        most = std::max(most, Likeness(form, kind));
    }
    return most;
}

}  // namespace

float UsualLikeness(const Shape& form, int digit) {
    static const std::array<Kinds, 10> kinds = Read(DigitForms);
    return MostAlike(kinds[static_cast<std::size_t>(digit)], form);
}

float FeetLikeness(const Shape& first, const Shape& second) {
    static const std::array<Kinds, 4> kinds = Read(FeetForms);
    return std::min(std::max(MostAlike(kinds[0], first), MostAlike(kinds[2], first)),
                    std::max(MostAlike(kinds[1], second), MostAlike(kinds[3], second)));
}
