// Rules on what texts and figures look like in a report.
#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <span>
#include <variant>

#include "check/checktasks.h"
#include "check/rules.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/textcodec.h"
#include "store/records/fields.h"

namespace {

constexpr std::size_t LongestCell = 32767;  // bytes of the code page at most; no cell of a table takes more
constexpr double Hundredth = 0.05;          // of a centimetre: what 32-bit floats are off by

std::string CodeOf(std::string_view character) {
    char32_t point = static_cast<unsigned char>(character[0]);
    if (character.size() > 1) {
        point &= 0x7FU >> character.size();
        for (const char c : character.substr(1)) {
            point = (point << 6U) | (static_cast<unsigned char>(c) & 0x3FU);
        }
    }
    std::array<char, 16> text{};
    (void)std::snprintf(text.data(), text.size(), "U+%04X", static_cast<unsigned>(point));
    return text.data();
}

// Knows which characters are in the code page, since asking for each of a million would take long.
class CCharacters {
public:
    // The first character that is a control character, or isn't in the code page; empty if all are fine.
    std::string_view FirstControl(std::string_view text, bool severalLines) const {
        for (std::size_t i = 0; i < text.size(); ++i) {
            const auto c = static_cast<unsigned char>(text[i]);
            const bool lineEnd = c == '\r' || c == '\n' || c == '\t';
            if (c == 0x7F || (c < 0x20 && !(lineEnd && severalLines))) {
                return text.substr(i, 1);
            }
        }
        return {};
    }
    std::string_view FirstForeign(std::string_view text) {
        for (std::size_t i = 0; i < text.size();) {
            if (static_cast<unsigned char>(text[i]) < 0x80) {
                ++i;
                continue;
            }
            const std::size_t length = Utf8CharLength(text.substr(i));
            if (length == 0 || !IsInCodePage(text.substr(i, length))) {
                return text.substr(i, std::max<std::size_t>(length, 1));
            }
            i += length;
        }
        return {};
    }

private:
    bool IsInCodePage(std::string_view character) {
        if (character.size() > 3) {
            return false;  // it has two bytes a character
        }
        std::size_t point = 0;
        for (const char c : character) {
            point = (point << 6U) | (static_cast<unsigned char>(c) & 0x3FU);
        }
        char& known = m_known[point & 0xFFFFU];
        if (known == 0) {
            known = ThroughGbk(character) == character ? 1 : 2;
        }
        return known == 1;
    }

    std::vector<char> m_known = std::vector<char>(1U << 16U);
};

using Characters = std::shared_ptr<CCharacters>;

template <class Add>
void CheckText(CCharacters& characters, const std::string& text, bool severalLines, Add add) {
    if (const std::string_view control = characters.FirstControl(text, severalLines); !control.empty()) {
        add(RuleControlCharacters, CodeOf(control));
    }
    if (const std::string_view foreign = characters.FirstForeign(text); !foreign.empty()) {
        add(RuleCodePage,
            Utf8CharLength(foreign) == 0 ? std::string("?") : std::string(foreign) + " " + CodeOf(foreign));
    }
    if (text.size() > LongestCell && GbkLength(text) > LongestCell) {
        add(RuleLongText,
            FormatInt(static_cast<std::int64_t>(GbkLength(text))) + " > " + FormatInt(LongestCell));
    }
}

void CheckSectionTexts(const SectionRecords& entry, const Characters& characters, CFindings& findings) {
    for (const FieldOf<_TESTING_DATA>& field : TestingFields()) {
        if (const auto* member = std::get_if<std::string _TESTING_DATA::*>(&field.Member)) {
            const std::string name = field.Name;
            CheckText(*characters, entry.Section.*(*member), name == "Comment",
                      [&](int rule, std::string value) {
                          findings.Add(rule, entry.Section, std::move(value), name);
                      });
        }
    }
}

void CheckDecimals(const _REC_DATA& record, CFindings& findings) {
    for (const auto& [column, metres] :
         {std::pair("DistanceStart", record.DistanceStart), {"DistanceEnd", record.DistanceEnd}}) {
        const double centimetres = static_cast<double>(metres) * 100.0;
        if (std::isfinite(centimetres) && std::abs(centimetres - std::round(centimetres)) > Hundredth) {
            findings.Add(RuleDecimals, record, FormatNumber(static_cast<double>(metres), 4), column);
            return;
        }
    }
}

// The folders of its video and pictures are told with the section.
void CheckRecordTexts(const _REC_DATA& record, const Characters& characters, CFindings& findings) {
    for (const auto& [column, text] : {std::pair("Comment", record.Comment),
                                       {"JcjNo", record.JcjNo},
                                       {"Picture1", GetFileName(record.GetPicture1())},
                                       {"Picture2", GetFileName(record.GetPicture2())}}) {
        CheckText(*characters, text, std::string_view(column) == "Comment",
                  [&](int rule, std::string value) { findings.Add(rule, record, std::move(value), column); });
    }
    CheckDecimals(record, findings);
}

}  // namespace

void AddTextTasks(const CCheckSnapshot& snapshot, CheckTasks& tasks) {
    const auto characters = std::make_shared<CCharacters>();
    tasks.push_back([&snapshot, characters](CFindings& findings) {
        for (const FieldOf<_PRO_DATA>& field : ProjectFields()) {
            if (const auto* member = std::get_if<std::string _PRO_DATA::*>(&field.Member)) {
                const std::string name = field.Name;
                CheckText(*characters, snapshot.Project.*(*member), name == "Comment",
                          [&](int rule, std::string value) { findings.Add(rule, std::move(value), name); });
            }
        }
    });
    AddForEachSection(snapshot, tasks, [characters](const SectionRecords& entry, CFindings& findings) {
        CheckSectionTexts(entry, characters, findings);
        for (const _REC_DATA& record : entry.Records) {
            CheckRecordTexts(record, characters, findings);
        }
    });
}
