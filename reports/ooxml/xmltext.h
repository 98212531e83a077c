// Texts from outside as the text of XML.
#pragma once

#include <string>
#include <string_view>

// UTF-8 without U+FFFE and U+FFFF, which are characters of no XML document. Control characters may be in it.
bool IsXmlText(std::string_view text);
// With U+FFFD for each byte and character that isn't one.
std::string MendXmlText(std::string_view text);
// The same without control characters, but for tab, line feed and carriage return.
std::string CleanText(std::string_view text);

// With "&", "<" and ">" in their other form.
void AppendXml(std::string& xml, std::string_view text);
// A text from outside, cleaned, with quotes in their other form as well.
std::string Escape(std::string_view text);
