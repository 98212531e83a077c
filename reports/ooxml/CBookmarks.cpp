#include "reports/ooxml/CBookmarks.h"

#include <vector>

#include "reports/ooxml/COoxmlError.h"

namespace {

std::string Folded(std::string_view name) {
    std::string folded(name);
    for (char& c : folded) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return folded;
}

bool IsBetweenCells(const XmlElement* mark) {
    return Is(mark->Parent(), "w:tbl") || Is(mark->Parent(), "w:tr");
}

XmlElement* FirstParagraphIn(XmlNode* root) {
    XmlElement* first = nullptr;
    EachElement(
        root, [&](XmlElement* element) { first = first == nullptr && Is(element, "w:p") ? element : first; });
    return first;
}

bool IsIn(const XmlNode* node, const XmlElement* element) {
    for (; node != nullptr; node = node->Parent()) {
        if (node == element) {
            return true;
        }
    }
    return false;
}

}  // namespace

void CBookmarks::Collect() {
    std::map<std::string, std::string> names;  // by identifier
    EachElement(m_xml.RootElement(), [&](XmlElement* element) {
        if (Is(element, "w:bookmarkStart")) {
            const std::string name = Folded(Attribute(element, "w:name"));
            if (!name.empty() && m_ranges.try_emplace(name, BookmarkRange{element, nullptr}).second) {
                names[Attribute(element, "w:id")] = name;
            }
        } else if (Is(element, "w:bookmarkEnd")) {
            const auto found = names.find(Attribute(element, "w:id"));
            if (found != names.end() && m_ranges[found->second].End == nullptr) {
                m_ranges[found->second].End = element;
            }
        }
    });
}

bool CBookmarks::Has(std::string_view name) const {
    return m_ranges.contains(Folded(name));
}

std::vector<std::string> CBookmarks::Names() const {
    std::vector<std::string> names;
    for (const auto& [folded, range] : m_ranges) {
        names.push_back(Attribute(range.Start, "w:name"));
    }
    return names;
}

BookmarkRange CBookmarks::Find(std::string_view name) {
    const auto found = m_ranges.find(Folded(name));
    if (found == m_ranges.end()) {
        throw COoxmlError(OoxmlFault::NoBookmark, {std::string(name)});
    }
    BookmarkRange& range = found->second;
    if (range.End == nullptr) {
        range.End = m_xml.NewElement("w:bookmarkEnd");
        range.End->SetAttribute("w:id", Attribute(range.Start, "w:id").c_str());
        InsertBehind(range.Start->Parent(), range.Start, range.End);
    }
    return range;
}

void CBookmarks::MoveIntoParagraph(XmlElement* mark, bool start, const XmlElement* startMark) {
    if (Ancestor(mark, "w:p") != nullptr) {
        return;
    }
    // A paragraph between rows would be no table any more: the range takes the first cell.
    if (IsBetweenCells(mark)) {
        XmlNode* cell =
            start || startMark == nullptr ? nullptr : Ancestor(const_cast<XmlElement*>(startMark), "w:tc");
        XmlNode* next = mark->NextSibling();
        while (next != nullptr && FirstParagraphIn(next) == nullptr) {
            next = next->NextSibling();
        }
        XmlElement* paragraph = cell != nullptr   ? FirstParagraphIn(cell)
                                : next != nullptr ? FirstParagraphIn(next)
                                                  : FirstParagraphIn(mark->Parent());
        if (paragraph != nullptr && start) {
            InsertBehind(paragraph, Child(paragraph, "w:pPr"), mark);
        } else if (paragraph != nullptr) {
            paragraph->InsertEndChild(mark);
        }
        return;
    }
    // Between paragraphs: the start belongs to what follows, the end to what came before.
    XmlNode* neighbour = start ? mark->NextSibling() : mark->PreviousSibling();
    while (neighbour != nullptr && IsBookmarkMark(neighbour)) {
        neighbour = start ? neighbour->NextSibling() : neighbour->PreviousSibling();
    }
    if (!Is(neighbour, "w:p")) {
        neighbour = InsertBehind(mark->Parent(), mark, m_xml.NewElement("w:p"));
    }
    if (start) {
        InsertBehind(neighbour, Child(neighbour, "w:pPr"), mark);
    } else {
        neighbour->InsertEndChild(mark);
    }
}

BookmarkRange CBookmarks::Clear(std::string_view name) {
    const BookmarkRange range = Find(name);
    MoveIntoParagraph(range.Start, true);
    MoveIntoParagraph(range.End, false, range.Start);
    XmlElement* first = Ancestor(range.Start, "w:p");
    XmlElement* last = Ancestor(range.End, "w:p");
    if (first == nullptr || last == nullptr || range.Start->Parent() != first ||
        range.End->Parent() != last || first->Parent() != last->Parent()) {
        throw COoxmlError(OoxmlFault::NoPlainText, {std::string(name)});
    }
    const auto clearFrom = [&](XmlNode* node) {
        while (node != nullptr && node != range.End) {
            XmlNode* next = node->NextSibling();
            if (!IsBookmarkMark(node) && !Is(node, "w:pPr")) {
                RemoveButMarks(node);
            }
            node = next;
        }
    };
    if (first != last) {
        const XmlNode* node = first;
        while (node != nullptr && node != last) {
            node = node->NextSibling();
        }
        if (node == nullptr) {
            throw COoxmlError(OoxmlFault::NoPlainText, {std::string(name)});
        }
    }
    clearFrom(range.Start->NextSibling());
    if (first != last) {
        for (XmlNode* node = first->NextSibling(); node != last;) {
            XmlNode* next = node->NextSibling();
            if (!IsBookmarkMark(node)) {
                RemoveButMarks(node);
            }
            node = next;
        }
        // What is left of the last paragraph, marks of others too, joins the first.
        clearFrom(last->FirstChild());
        for (XmlNode* node = last->FirstChild(); node != nullptr;) {
            XmlNode* next = node->NextSibling();
            if (!Is(node, "w:pPr")) {
                first->InsertEndChild(node);
            }
            node = next;
        }
        Remove(last);
    }
    return range;
}

void CBookmarks::Forget(const XmlElement* element) {
    for (auto at = m_ranges.begin(); at != m_ranges.end();) {
        const BookmarkRange range = at->second;
        if (!IsIn(range.Start, element) && !(range.End != nullptr && IsIn(range.End, element))) {
            ++at;
            continue;
        }
        for (XmlElement* mark : {range.Start, range.End}) {
            if (mark != nullptr) {
                Remove(mark);
            }
        }
        at = m_ranges.erase(at);
    }
}

bool IsBookmarkMark(const XmlNode* node) {
    return Is(node, "w:bookmarkStart") || Is(node, "w:bookmarkEnd");
}

void EachMark(XmlNode* node, const std::function<void(XmlElement*)>& visit) {
    std::vector<XmlElement*> marks;
    EachElement(node, [&](XmlElement* inner) {
        if (IsBookmarkMark(inner)) {
            marks.push_back(inner);
        }
    });
    for (XmlElement* mark : marks) {
        visit(mark);
    }
}

void RemoveButMarks(XmlNode* node) {
    XmlNode* last = node;
    EachMark(node, [&](XmlElement* mark) { last = InsertBehind(node->Parent(), last, mark); });
    Remove(node);
}
