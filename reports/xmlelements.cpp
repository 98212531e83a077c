#include "reports/xmlelements.h"

#include <tinyxml.h>

#include "shell/numbers.h"

TiXmlElement& AddElement(TiXmlElement& parent, const std::string& name) {
    auto* element = new TiXmlElement(name);  // owned by the parent, with the line below
    parent.LinkEndChild(element);
    return *element;
}

std::string NumberedName(std::string_view name, std::int64_t number) {
    return std::string(name) + FormatInt(number);
}

void SetText(TiXmlElement& element, const std::string& name, const std::string& value) {
    element.SetAttribute(name, value);
}

void SetInt(TiXmlElement& element, const std::string& name, std::int64_t value) {
    element.SetAttribute(name, FormatInt(value));
}

void SetTexts(TiXmlElement& element, std::initializer_list<XmlText> texts) {
    for (const XmlText& text : texts) {
        SetText(element, text.Name, text.Value);
    }
}
