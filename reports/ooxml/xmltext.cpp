#include "reports/ooxml/xmltext.h"

#include <algorithm>

#include "shell/textcodec.h"

namespace {

constexpr std::string_view NoCharacters[] = {"\xEF\xBF\xBE", "\xEF\xBF\xBF"};

bool IsControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

}  // namespace

bool IsXmlText(std::string_view text) {
    return IsValidUtf8(text) && text.find(NoCharacters[0]) == text.npos &&
           text.find(NoCharacters[1]) == text.npos;
}

std::string MendXmlText(std::string_view text) {
    if (IsXmlText(text)) {
        return std::string(text);
    }
    std::string mended;
    while (!text.empty()) {
        const std::size_t length = Utf8CharLength(text);
        const std::string_view character = text.substr(0, length);
        const bool bad = length == 0 || character == NoCharacters[0] || character == NoCharacters[1];
        mended += bad ? "\xEF\xBF\xBD" : character;
        text.remove_prefix(std::max<std::size_t>(1, length));
    }
    return mended;
}

std::string CleanText(std::string_view text) {
    std::string clean = MendXmlText(text);
    std::erase_if(clean, IsControl);
    return clean;
}

void AppendXml(std::string& xml, std::string_view text) {
    std::size_t begin = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '&' || c == '<' || c == '>') {
            xml.append(text, begin, at - begin).append(c == '&' ? "&amp;" : c == '<' ? "&lt;" : "&gt;");
            begin = at + 1;
        }
    }
    xml.append(text, begin);
}

std::string Escape(std::string_view text) {
    const std::string clean = CleanText(text);
    std::string escaped;
    std::size_t begin = 0;
    for (std::size_t quote = clean.find('"'); quote != clean.npos; quote = clean.find('"', begin)) {
        AppendXml(escaped, std::string_view(clean).substr(begin, quote - begin));
        escaped += "&quot;";
        begin = quote + 1;
    }
    AppendXml(escaped, std::string_view(clean).substr(begin));
    return escaped;
}
