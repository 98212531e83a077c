#include "workbench/coding/codingline.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "shell/textcodec.h"

namespace {

struct Wide {
    std::string_view Text;
    char Ascii;
};

// What input methods give for keys of the line, beside the block of full-width forms.
constexpr Wide OtherForms[] = {{"\u3000", ' '}, {"\u3002", '.'}, {"\uFF61", '.'}, {"\u301C", '~'},
                               {"\u2014", '~'}, {"\u3010", '['}, {"\u3011", ']'}, {"\u3001", '/'},
                               {"\u00B7", '.'}, {"\u300C", '['}, {"\u300D", ']'}};

char AsciiOf(std::string_view character) {
    for (const Wide& wide : OtherForms) {
        if (character == wide.Text) {
            return wide.Ascii;
        }
    }
    // U+FF01 to U+FF5E stand for "!" to "~".
    if (character.size() != 3 || static_cast<unsigned char>(character[0]) != 0xEF) {
        return '\0';
    }
    const unsigned code = (static_cast<unsigned char>(character[1]) & 0x3FU) << 6U |
                          (static_cast<unsigned char>(character[2]) & 0x3FU) | 0xF000U;
    return code >= 0xFF01 && code <= 0xFF5E ? static_cast<char>(code - 0xFF01 + '!') : '\0';
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

bool AllDigits(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return upper;
}

struct Word {
    std::string Text;       // in ASCII where that is possible
    std::size_t Place = 0;  // in the line as it was typed
};

std::vector<Word> SplitWords(std::string_view line) {
    std::vector<Word> words;
    bool begun = false;
    for (std::size_t at = 0; at < line.size();) {
        const std::size_t length = std::max<std::size_t>(Utf8CharLength(line.substr(at)), 1);
        const std::string_view character = line.substr(at, length);
        const std::string half = HalfWidth(character);
        if (half == " " || half == "\t") {
            begun = false;
        } else {
            if (!begun) {
                words.push_back({{}, at});
                begun = true;
            }
            words.back().Text += half;
        }
        at += length;
    }
    return words;
}

struct Number {
    std::string Digits;
    bool Sure = false;  // it has a point or a unit
};

// "12", "12.", "12.4", ".5", each with or without "m".
std::optional<Number> ReadMetres(std::string_view text) {
    Number number;
    if (!text.empty() && (text.back() == 'm' || text.back() == 'M')) {
        number.Sure = true;
        text.remove_suffix(1);
    }
    const auto points = std::count(text.begin(), text.end(), '.');
    const auto digits = std::count_if(text.begin(), text.end(), IsDigit);
    if (digits == 0 || points > 1 || static_cast<std::size_t>(digits + points) != text.size()) {
        return std::nullopt;
    }
    number.Sure = number.Sure || points == 1;
    number.Digits = text;
    return number;
}

// Whether the word is one that the rest of the line could still need, whatever it says.
bool LooksLikeNumber(std::string_view word) {
    return std::any_of(word.begin(), word.end(), IsDigit) &&
           std::all_of(word.begin(), word.end(), [](char c) {
               return IsDigit(c) || c == '.' || c == '~' || c == 'm' || c == 'M' || c == '-' || c == ',' ||
                      c == ':';
           });
}

class CReader {
public:
    CReader(std::string_view line, CodingLine& result) : m_line(line), m_result(result) {}

    void Read() {
        const std::vector<Word> words = WithoutMark(SplitWords(m_line));
        for (std::size_t i = 0; i < words.size(); ++i) {
            const std::string& word = words[i].Text;
            if (TakeCode(word) || TakeNumber(word)) {
                continue;
            }
            if (IsUnclear(word)) {
                m_result.Unclear = word;
                return;
            }
            m_result.Comment = TrimBlanks(m_line.substr(words[i].Place));
            return;
        }
    }

private:
    // "[" and "]" stand by themselves or at the first word.
    std::vector<Word> WithoutMark(std::vector<Word> words) {
        if (words.empty() || (words[0].Text[0] != '[' && words[0].Text[0] != ']')) {
            return words;
        }
        m_result.Mark = words[0].Text[0] == '[' ? CodingLine::Run::Begins : CodingLine::Run::Ends;
        words[0].Text.erase(0, 1);
        if (words[0].Text.empty()) {
            words.erase(words.begin());
        }
        return words;
    }

    bool TakeCode(const std::string& word) {
        const bool first = m_first;
        m_first = false;
        const bool ends = m_result.Mark == CodingLine::Run::Ends;
        if (first && IsLetter(word[0])) {
            m_result.Code = UpperCase(word);
            m_mayGrade = !ends && !IsDigit(word.back());
            return true;
        }
        if (first && ends && word.size() == 1 && IsDigit(word[0])) {
            m_result.Choice = word[0] - '0';
            return true;
        }
        const bool grade = m_mayGrade && word.size() == 1 && IsDigit(word[0]);
        m_mayGrade = false;
        if (grade) {
            m_result.Grade = word;
        }
        return grade;
    }

    bool TakeNumber(const std::string& word) {
        if (m_result.Start.empty() && TakeDistance(word)) {
            return true;
        }
        if (m_result.Clock.empty() && m_result.Mark != CodingLine::Run::Ends && word.size() == 4 &&
            AllDigits(word)) {
            m_result.Clock = word;
            return true;
        }
        return false;
    }

    bool TakeDistance(const std::string& word) {
        const std::size_t tilde = word.find('~');
        const auto start = ReadMetres(std::string_view(word).substr(0, tilde));
        if (!start) {
            return false;
        }
        if (tilde == std::string::npos) {
            if (start->Sure) {
                m_result.Start = start->Digits;
            }
            return start->Sure;
        }
        const auto end = ReadMetres(std::string_view(word).substr(tilde + 1));
        if (!end || m_result.Mark != CodingLine::Run::None) {
            return false;
        }
        m_result.Start = start->Digits;
        m_result.End = end->Digits;
        return true;
    }

    // A number where one is still missing isn't taken for words.
    bool IsUnclear(const std::string& word) const {
        const bool complete =
            !m_result.Start.empty() && (!m_result.Clock.empty() || m_result.Mark == CodingLine::Run::Ends);
        return !complete && LooksLikeNumber(word);
    }

    std::string_view m_line;
    CodingLine& m_result;
    bool m_first = true;
    bool m_mayGrade = false;
};

}  // namespace

std::string HalfWidth(std::string_view text) {
    std::string half;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = std::max<std::size_t>(Utf8CharLength(text.substr(at)), 1);
        const std::string_view character = text.substr(at, length);
        if (const char ascii = AsciiOf(character); ascii != '\0') {
            half += ascii;
        } else {
            half += character;
        }
        at += length;
    }
    return half;
}

CodingLine ReadCodingLine(std::string_view line, std::string_view comment) {
    CodingLine result;
    CReader(line, result).Read();
    if (const std::string_view own = TrimBlanks(comment); !own.empty()) {
        result.Comment += (result.Comment.empty() ? "" : " ") + std::string(own);
    }
    return result;
}
