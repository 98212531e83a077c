#include "reports/ooxml/xmltree.h"

#include <cstring>
#include <vector>

#include "reports/ooxml/COoxmlError.h"
#include "reports/ooxml/xmltext.h"
#include "shell/numbers.h"

namespace {

constexpr std::size_t LongestXml = 32U << 20U;

// Its address marks raw nodes.
char rawMark;

class CRawPrinter : public tinyxml2::XMLPrinter {
public:
    CRawPrinter() : XMLPrinter(nullptr, true) {}
    bool Visit(const tinyxml2::XMLComment& comment) override {
        if (!IsRaw(&comment)) {
            return XMLPrinter::Visit(comment);
        }
        SealElementIfJustOpened();
        Write(comment.Value(), std::strlen(comment.Value()));
        return true;
    }
    using XMLPrinter::Visit;

    // Line feeds and tabs of attributes go as references: as they are, readers take them for blanks.
    bool VisitEnter(const XmlElement& element, const tinyxml2::XMLAttribute* attribute) override {
        OpenElement(element.Name(), true);
        for (; attribute != nullptr; attribute = attribute->Next()) {
            const std::string_view value = attribute->Value();
            if (value.find_first_of("\t\n\r") == value.npos) {
                PushAttribute(attribute->Name(), attribute->Value());
            } else {
                const std::string escaped =
                    " " + std::string(attribute->Name()) + "=\"" + WithBreaks(Escape(value)) + "\"";
                Write(escaped.data(), escaped.size());
            }
        }
        return true;
    }
    using XMLPrinter::VisitEnter;

private:
    static std::string WithBreaks(const std::string& text) {
        std::string changed;
        for (const char c : text) {
            if (c == '\t' || c == '\n' || c == '\r') {
                changed += "&#" + FormatInt(c) + ";";
            } else {
                changed += c;
            }
        }
        return changed;
    }
};

// What the parser would change:
//
// - It drops a text that is nothing but blanks, and with it the blank between two words of a template that
//   stand in runs of their own. As a character reference it stays.
// - It keeps a line break in an attribute, which stands for a blank.
std::string PrepareForParser(std::string_view xml) {
    std::string kept;
    kept.reserve(xml.size() + 64);
    std::vector<std::size_t> breaks;  // in the attributes of a tag
    std::size_t at = 0;
    while (at < xml.size()) {
        const std::size_t tag = xml.find('<', at);
        if (tag == xml.npos) {
            break;
        }
        breaks.clear();
        std::string_view end = ">";
        if (xml.substr(tag).starts_with("<!--")) {
            end = "-->";
        } else if (xml.substr(tag).starts_with("<![CDATA[")) {
            end = "]]>";
        } else if (xml.substr(tag).starts_with("<?")) {
            end = "?>";
        }
        std::size_t close = tag + 1;
        if (end == ">") {
            char quote = 0;
            for (; close < xml.size() && (quote != 0 || xml[close] != '>'); ++close) {
                if (quote != 0) {
                    quote = xml[close] == quote ? '\0' : quote;
                    if (xml[close] == '\t' || xml[close] == '\n' || xml[close] == '\r') {
                        breaks.push_back(close - at);
                    }
                } else if (xml[close] == '"' || xml[close] == '\'') {
                    quote = xml[close];
                }
            }
        } else {
            close = xml.find(end, tag);
            close = close == xml.npos ? xml.size() : close + end.size() - 1;
        }
        const std::size_t behind = std::min(close + 1, xml.size());
        const std::size_t begin = kept.size();
        kept += xml.substr(at, behind - at);
        for (auto place = breaks.rbegin(); place != breaks.rend(); ++place) {
            const bool pair = xml.substr(at + *place, 2) == "\r\n";
            kept.replace(begin + *place, 1, pair ? "" : " ");
        }
        at = behind;
        const char first = tag + 1 < xml.size() ? xml[tag + 1] : '\0';
        if (end != ">" || first == '/' || first == '!' || xml[behind - 2] == '/') {
            continue;
        }
        const std::size_t text = xml.find_first_not_of(" \t\r\n", at);
        if (text != xml.npos && text > at && xml.substr(text).starts_with("</")) {
            const char blank = xml[at];
            kept += blank == ' ' ? "&#32;" : blank == '\t' ? "&#9;" : "&#10;";
            ++at;
        }
    }
    return kept.append(xml.substr(std::min(at, xml.size())));
}

}  // namespace

void ParseXml(tinyxml2::XMLDocument& document, std::string_view bytes, const std::string& partName) {
    if (bytes.size() > LongestXml) {
        throw COoxmlError(OoxmlFault::TooLarge);
    }
    if (bytes.find("<!DOCTYPE") != bytes.npos) {
        throw COoxmlError(OoxmlFault::DamagedPart, {partName});
    }
    const std::string kept = PrepareForParser(bytes);
    if (document.Parse(kept.data(), kept.size()) != tinyxml2::XML_SUCCESS ||
        document.RootElement() == nullptr) {
        throw COoxmlError(OoxmlFault::DamagedPart, {partName});
    }
}

std::string PrintXml(const XmlNode& node) {
    CRawPrinter printer;
    node.Accept(&printer);
    return {printer.CStr(), static_cast<std::size_t>(printer.CStrSize()) - 1};
}

bool Is(const XmlNode* node, const char* name) {
    return node != nullptr && node->ToElement() != nullptr && std::strcmp(node->Value(), name) == 0;
}

std::string Attribute(const XmlElement* element, const char* name) {
    const char* value = element == nullptr ? nullptr : element->Attribute(name);
    return value == nullptr ? std::string() : value;
}

XmlElement* Child(XmlNode* element, const char* name) {
    return element == nullptr ? nullptr : element->FirstChildElement(name);
}

XmlElement* Ancestor(XmlNode* node, const char* name) {
    for (XmlNode* at = node->Parent(); at != nullptr; at = at->Parent()) {
        if (Is(at, name)) {
            return at->ToElement();
        }
    }
    return nullptr;
}

XmlNode* NextNodeBehind(XmlNode* node, const XmlNode* root) {
    while (node != nullptr && node != root) {
        if (node->NextSibling() != nullptr) {
            return node->NextSibling();
        }
        node = node->Parent();
    }
    return nullptr;
}

XmlNode* NextNode(XmlNode* node, const XmlNode* root) {
    return node->FirstChild() != nullptr ? node->FirstChild() : NextNodeBehind(node, root);
}

void EachElement(XmlNode* root, const std::function<void(XmlElement*)>& visit) {
    for (XmlNode* node = root; node != nullptr; node = NextNode(node, root)) {
        if (node->ToElement() != nullptr) {
            visit(node->ToElement());
        }
    }
}

void Remove(XmlNode* node) {
    node->GetDocument()->DeleteNode(node);
}

XmlNode* InsertBehind(XmlNode* parent, XmlNode* before, XmlNode* added) {
    return before == nullptr ? parent->InsertFirstChild(added) : parent->InsertAfterChild(before, added);
}

XmlNode* NewRaw(tinyxml2::XMLDocument* document, const std::string& xml) {
    XmlNode* node = document->NewComment(xml.c_str());
    node->SetUserData(&rawMark);
    return node;
}

bool IsRaw(const XmlNode* node) {
    return node->ToComment() != nullptr && node->GetUserData() == &rawMark;
}

void MakeRaw(XmlElement* element) {
    InsertBehind(element->Parent(), element, NewRaw(element->GetDocument(), PrintXml(*element)));
    Remove(element);
}
