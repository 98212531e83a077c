#include "shell/xmlbounds.h"

#include <cstddef>

namespace {

constexpr int MostAttributes = 2000;
constexpr int DeepestLevel = 200;

}  // namespace

bool HasTooManyAttributes(std::string_view xml) {
    for (std::size_t at = xml.find('<'); at != std::string_view::npos; at = xml.find('<', at)) {
        if (xml.substr(at, 4) == "<!--" || xml.substr(at, 9) == "<![CDATA[") {
            at = xml.find(xml[at + 2] == '-' ? "-->" : "]]>", at + 4);
            continue;
        }
        int attributes = 0;
        char quote = 0;
        for (++at; at < xml.size() && (quote != 0 || xml[at] != '>'); ++at) {
            if (quote != 0) {
                quote = xml[at] == quote ? '\0' : quote;
            } else if (xml[at] == '"' || xml[at] == '\'') {
                quote = xml[at];
                if (++attributes > MostAttributes) {
                    return true;
                }
            }
        }
    }
    return false;
}

namespace {

// The end of what a parser takes for a start tag; quotes hide ">" in it.
std::size_t EndOfTag(std::string_view xml, std::size_t at) {
    char quote = 0;
    for (; at < xml.size() && (quote != 0 || xml[at] != '>'); ++at) {
        if (quote != 0) {
            quote = xml[at] == quote ? '\0' : quote;
        } else if (xml[at] == '"' || xml[at] == '\'') {
            quote = xml[at];
        }
    }
    return at;
}

bool BeginsName(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           static_cast<unsigned char>(c) > 126;
}

}  // namespace

bool IsNestedTooDeep(std::string_view xml) {
    int depth = 0;
    for (std::size_t at = xml.find('<'); at != std::string_view::npos; at = xml.find('<', at)) {
        const std::string_view rest = xml.substr(at, 9);
        if (rest.starts_with("<!--") || rest == "<![CDATA[") {
            at = xml.find(rest[2] == '-' ? "-->" : "]]>", at + (rest[2] == '-' ? 4 : 9));
        } else if (rest.size() > 1 && BeginsName(rest[1])) {
            at = EndOfTag(xml, at);
            const bool closed = at < xml.size() && xml[at - 1] == '/';
            if (!closed && ++depth > DeepestLevel) {
                return true;
            }
        } else {
            // Parsers differ in where an instruction ends, so what it hides can't be told.
            if (rest.starts_with("<?") && depth > 0) {
                return true;
            }
            depth -= rest.starts_with("</") && depth > 0 ? 1 : 0;
            at = xml.find('>', at);
        }
    }
    return false;
}
