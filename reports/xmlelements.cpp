#include "reports/xmlelements.h"

#include "reports/CReportElement.h"
#include "shell/numbers.h"

CReportElement& AddElement(CReportElement& parent, const std::string& name) {
    return parent.Add(name);
}

std::string NumberedName(std::string_view name, std::int64_t number) {
    return std::string(name) + FormatInt(number);
}

void SetText(CReportElement& element, const std::string& name, const std::string& value) {
    element.Set(name, value);
}

void SetInt(CReportElement& element, const std::string& name, std::int64_t value) {
    element.Set(name, FormatInt(value));
}

void SetTexts(CReportElement& element, std::initializer_list<XmlText> texts) {
    std::size_t bytes = 0;
    for (const XmlText& text : texts) {
        bytes += text.Value.size();
    }
    element.Reserve(texts.size(), bytes);
    for (const XmlText& text : texts) {
        SetText(element, text.Name, text.Value);
    }
}
