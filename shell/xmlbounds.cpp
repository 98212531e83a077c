#include "shell/xmlbounds.h"

#include <cstddef>

namespace {

constexpr int MostAttributes = 2000;

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
