// The bookmarks of a document: ranges between two marks that may lie anywhere in the text. Nothing that holds
// a mark is taken out of the document but by way of here, or a range would lead nowhere.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "reports/ooxml/xmltree.h"

struct BookmarkRange {
    XmlElement* Start = nullptr;
    XmlElement* End = nullptr;
};

// Names are compared without regard to case, as word processors do; the first of a name counts.
class CBookmarks {
public:
    // The document outlives this.
    explicit CBookmarks(tinyxml2::XMLDocument& document) : m_xml(document) {}
    CBookmarks(const CBookmarks&) = delete;
    CBookmarks& operator=(const CBookmarks&) = delete;

    // Once the document has been read.
    void Collect();
    bool Has(std::string_view name) const;
    std::vector<std::string> Names() const;  // as written
    // Throws COoxmlError. A bookmark without an end ends where it begins.
    BookmarkRange Find(std::string_view name);

    // Takes what stands in the range out; both ends are in one paragraph then, and nothing between them but
    // marks of others. Throws COoxmlError where the ends lie in different cells or the like.
    BookmarkRange Clear(std::string_view name);
    // A range that begins between paragraphs, rows or cells begins in the first paragraph that follows.
    void MoveIntoParagraph(XmlElement* mark, bool start, const XmlElement* startMark = nullptr);
    // Forgets the bookmarks that have an end in the element, with both ends.
    void Forget(const XmlElement* element);

private:
    tinyxml2::XMLDocument& m_xml;
    std::map<std::string, BookmarkRange, std::less<>> m_ranges;  // by name in small letters
};

bool IsBookmarkMark(const XmlNode* node);
// The visit may move them.
void EachMark(XmlNode* node, const std::function<void(XmlElement*)>& visit);
// Marks in the node stay, in its place.
void RemoveButMarks(XmlNode* node);
