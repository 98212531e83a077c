// Text and pictures in paragraphs, cells and copies of rows. Whatever is replaced keeps its look: the new
// text takes the paragraph's settings and those of its first run.
#pragma once

#include <string>
#include <string_view>

#include "reports/ooxml/xmltree.h"

// Markers of bookmarks stay in their place when content goes.

// A run for each line at that place of a paragraph, behind `before`. "\n" is a line break, "\t" a tab.
// Returns the last node added, or `before`. `look` is a w:rPr to be copied, or null.
XmlNode* InsertText(XmlElement* paragraph, XmlNode* before, std::string_view line, const XmlElement* look);
// What a new text in this paragraph should look like: w:rPr of its first run, else of its end mark; null if
// none.
const XmlElement* TextLook(XmlElement* paragraph);
// Removes all but the paragraph's settings and the markers of bookmarks.
void ClearParagraph(XmlElement* paragraph);

// The cell's content becomes this text; "\r\n" and "\r" begin a paragraph.
void SetCellText(XmlElement* cell, std::string_view text);
// Paragraphs joined by "\n".
std::string TextOf(XmlNode* element);
// In a paragraph of its own on top of the cell, in the form of the first one. `run` is XML of a run.
void InsertPictureOnTop(XmlElement* cell, const std::string& run);

// Copies a row in front of which nothing but its form counts: no text, no picture.
enum class RowContent { Empty, Kept };
XmlElement* CopyOfRow(XmlElement* row, RowContent content);
// Removes what may stand in a document only once: markers of bookmarks, identifiers of paragraphs.
void RemoveUniqueMarks(XmlElement* element);
