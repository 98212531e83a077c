#include "fieldimport/xlsxtext.h"

#include <charconv>

#include "fieldimport/CSheetError.h"

namespace {

constexpr std::size_t LongestText = 1U << 20U;
constexpr std::size_t MostSharedBytes = std::size_t{128} << 20;

// Of one character of the basic plane, which is all that the form can say.
void AppendCharacter(std::string& text, unsigned int code) {
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xC0 | (code >> 6));
        text += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0xD800 || code > 0xDFFF) {
        text += static_cast<char>(0xE0 | (code >> 12));
        text += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (code & 0x3F));
    }
}

}  // namespace

void AppendText(std::string& text, std::string_view more) {
    if (text.size() + more.size() > LongestText) {
        throw CSheetError(SheetFault::TooLarge);
    }
    text += more;
}

std::string PlainText(std::string_view text) {
    constexpr std::size_t Length = 7;  // "_x000D_"
    std::string plain;
    for (std::size_t at = 0; at < text.size();) {
        unsigned int code = 0;
        if (text[at] == '_' && text.size() - at >= Length && text[at + 1] == 'x' && text[at + 6] == '_') {
            const char* end = text.data() + at + 6;
            if (std::from_chars(text.data() + at + 2, end, code, 16).ptr == end) {
                AppendCharacter(plain, code);
                at += Length;
                continue;
            }
        }
        plain += text[at++];
    }
    return plain;
}

void CTextGatherer::Begin(std::string_view name) {
    if (name == "rPh") {
        ++m_sound;
    } else if (name == "t") {
        m_inText = m_sound == 0;
    }
}

void CTextGatherer::End(std::string_view name) {
    if (name == "rPh") {
        --m_sound;
    } else if (name == "t") {
        m_inText = false;
    }
}

void CTextGatherer::Add(std::string_view text) {
    if (m_inText) {
        AppendText(m_text, text);
    }
}

void CSharedTexts::Begin(std::string_view name, const char**) {
    if (name == "si") {
        m_text.Clear();
    } else {
        m_text.Begin(name);
    }
}

void CSharedTexts::End(std::string_view name) {
    if (name != "si") {
        m_text.End(name);
        return;
    }
    m_all += PlainText(m_text.Get());
    if (m_all.size() + m_ends.size() * sizeof(m_ends[0]) > MostSharedBytes) {
        throw CSheetError(SheetFault::TooLarge);
    }
    m_ends.push_back(static_cast<std::uint32_t>(m_all.size()));
}

void CSharedTexts::Text(std::string_view text) {
    m_text.Add(text);
}

std::string CSharedTexts::At(std::int64_t index) const {
    if (index < 0 || index >= static_cast<std::int64_t>(m_ends.size())) {
        throw CSheetError(SheetFault::Damaged);
    }
    const auto at = static_cast<std::size_t>(index);
    const std::size_t begin = at == 0 ? 0 : m_ends[at - 1];
    return m_all.substr(begin, m_ends[at] - begin);
}
