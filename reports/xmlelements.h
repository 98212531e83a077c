// Adds to a tree of XML elements. Attributes stand in the file in the order in which they are set first.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

class CReportElement;

// The parent owns it.
CReportElement& AddElement(CReportElement& parent, const std::string& name);
// "Name7".
std::string NumberedName(std::string_view name, std::int64_t number);

// A value that was set before is replaced at its place.
void SetText(CReportElement& element, const std::string& name, const std::string& value);
void SetInt(CReportElement& element, const std::string& name, std::int64_t value);

struct XmlText {
    const char* Name;
    const std::string& Value;  // lives until the end of the call
};
void SetTexts(CReportElement& element, std::initializer_list<XmlText> texts);
