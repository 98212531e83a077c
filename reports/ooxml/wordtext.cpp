#include "reports/ooxml/wordtext.h"

#include <cstring>
#include <vector>

#include "reports/ooxml/CBookmarks.h"
#include "reports/ooxml/xmltext.h"

namespace {

XmlElement* New(XmlNode* near, const char* name) {
    return near->GetDocument()->NewElement(name);
}

XmlElement* EmptyLike(XmlElement* paragraph) {
    XmlElement* added = New(paragraph, "w:p");
    if (XmlElement* settings = Child(paragraph, "w:pPr")) {
        XmlNode* copy = added->InsertEndChild(settings->DeepClone(added->GetDocument()));
        // A section ends where it ended before, not at each copy.
        if (XmlElement* section = Child(copy, "w:sectPr")) {
            Remove(section);
        }
    }
    return added;
}

// Where content of a paragraph begins: behind its settings and the markers that follow them.
XmlNode* ContentStart(XmlElement* paragraph) {
    XmlNode* last = Child(paragraph, "w:pPr");
    for (XmlNode* next = last == nullptr ? paragraph->FirstChild() : last->NextSibling();
         next != nullptr && Is(next, "w:bookmarkStart"); next = next->NextSibling()) {
        last = next;
    }
    return last;
}

void InsertPiece(XmlElement* run, std::string_view piece) {
    if (piece.empty()) {
        return;
    }
    XmlElement* text = run->InsertNewChildElement("w:t");
    const auto blank = [](char c) { return c == ' '; };
    if (blank(piece.front()) || blank(piece.back()) || piece.find("  ") != piece.npos) {
        text->SetAttribute("xml:space", "preserve");
    }
    text->SetText(std::string(piece).c_str());
}

std::vector<std::string> Paragraphs(std::string_view text) {
    std::vector<std::string> lines(1);
    const std::string clean = CleanText(text);
    for (std::size_t i = 0; i < clean.size(); ++i) {
        if (clean[i] == '\r') {
            lines.emplace_back();
            i += clean.compare(i + 1, 1, "\n") == 0 ? 1U : 0U;
        } else {
            lines.back() += clean[i];
        }
    }
    return lines;
}

// The cell's first paragraph of its own; made if it has none.
XmlElement* FirstParagraph(XmlElement* cell) {
    if (XmlElement* first = Child(cell, "w:p")) {
        return first;
    }
    return InsertBehind(cell, Child(cell, "w:tcPr"), New(cell, "w:p"))->ToElement();
}

void ClearCell(XmlElement* cell, XmlElement* kept) {
    for (XmlNode* node = cell->FirstChild(); node != nullptr;) {
        XmlNode* next = node->NextSibling();
        if (node != kept && !Is(node, "w:tcPr") && !IsBookmarkMark(node)) {
            EachMark(node, [&](XmlElement* mark) { kept->InsertEndChild(mark); });
            Remove(node);
        }
        node = next;
    }
    ClearParagraph(kept);
}

}  // namespace

XmlNode* InsertText(XmlElement* paragraph, XmlNode* before, std::string_view line, const XmlElement* look) {
    if (line.empty()) {
        return before;
    }
    XmlElement* run = New(paragraph, "w:r");
    if (look != nullptr) {
        run->InsertEndChild(look->DeepClone(run->GetDocument()));
    }
    std::size_t from = 0;
    for (std::size_t i = 0; i <= line.size(); ++i) {
        if (i < line.size() && line[i] != '\n' && line[i] != '\t') {
            continue;
        }
        InsertPiece(run, line.substr(from, i - from));
        if (i < line.size()) {
            run->InsertNewChildElement(line[i] == '\n' ? "w:br" : "w:tab");
        }
        from = i + 1;
    }
    return InsertBehind(paragraph, before, run);
}

const XmlElement* TextLook(XmlElement* paragraph) {
    for (XmlNode* node = paragraph; node != nullptr; node = NextNode(node, paragraph)) {
        if (Is(node, "w:r")) {
            return Child(node, "w:rPr");
        }
    }
    return Child(Child(paragraph, "w:pPr"), "w:rPr");
}

void ClearParagraph(XmlElement* paragraph) {
    for (XmlNode* node = paragraph->FirstChild(); node != nullptr;) {
        XmlNode* next = node->NextSibling();
        if (!Is(node, "w:pPr") && !IsBookmarkMark(node)) {
            RemoveButMarks(node);
        }
        node = next;
    }
}

void SetCellText(XmlElement* cell, std::string_view text) {
    XmlElement* paragraph = FirstParagraph(cell);
    // A copy, since the look lies in what is about to go.
    const XmlElement* former = TextLook(paragraph);
    XmlNode* copy = former == nullptr ? nullptr : former->DeepClone(cell->GetDocument());
    const XmlElement* look = copy == nullptr ? nullptr : copy->ToElement();
    ClearCell(cell, paragraph);
    const std::vector<std::string> lines = Paragraphs(text);
    InsertText(paragraph, ContentStart(paragraph), lines.front(), look);
    XmlElement* last = paragraph;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        XmlElement* added = EmptyLike(paragraph);
        InsertText(added, added->LastChild(), lines[i], look);
        last = InsertBehind(cell, last, added)->ToElement();
    }
    if (copy != nullptr) {
        Remove(copy);
    }
}

std::string TextOf(XmlNode* element) {
    std::string text;
    bool first = true;
    EachElement(element, [&](XmlElement* inner) {
        if (Is(inner, "w:p")) {
            text += first ? "" : "\n";
            first = false;
        } else if (Is(inner, "w:t") && inner->GetText() != nullptr) {
            text += inner->GetText();
        } else if (Is(inner, "w:br")) {
            text += "\n";
        } else if (Is(inner, "w:tab") && Is(inner->Parent(), "w:r")) {
            text += "\t";
        }
    });
    return text;
}

void InsertPictureOnTop(XmlElement* cell, const std::string& run) {
    XmlElement* first = FirstParagraph(cell);
    // Marks may stand behind its text.
    const auto holdsNothing = [](const XmlElement* paragraph) {
        const XmlNode* child = paragraph->FirstChild();
        while (Is(child, "w:pPr") || IsBookmarkMark(child)) {
            child = child->NextSibling();
        }
        return child == nullptr;
    };
    if (holdsNothing(first)) {
        first->InsertEndChild(NewRaw(cell->GetDocument(), run));
        return;
    }
    XmlElement* added = EmptyLike(first);
    added->InsertEndChild(NewRaw(cell->GetDocument(), run));
    InsertBehind(cell, first->PreviousSibling(), added);
}

void RemoveUniqueMarks(XmlElement* element) {
    for (XmlNode* node = element; node != nullptr;) {
        XmlNode* next = NextNode(node, element);
        if (IsBookmarkMark(node)) {
            next = NextNodeBehind(node, element);
            Remove(node);
        } else if (Is(node, "w:id") && Is(node->Parent(), "w:sdtPr")) {
            next = NextNodeBehind(node, element);
            Remove(node);  // a content control without a number is given one when it is opened
        } else if (XmlElement* inner = node->ToElement()) {
            inner->DeleteAttribute("w14:paraId");
            inner->DeleteAttribute("w14:textId");
        }
        node = next;
    }
}

XmlElement* CopyOfRow(XmlElement* row, RowContent content) {
    XmlElement* copy = row->DeepClone(row->GetDocument())->ToElement();
    RemoveUniqueMarks(copy);
    if (content == RowContent::Kept) {
        return copy;
    }
    // A head repeats on each page; the rows that follow it don't.
    if (XmlElement* settings = Child(copy, "w:trPr")) {
        if (XmlElement* head = Child(settings, "w:tblHeader")) {
            Remove(head);
        }
    }
    std::vector<XmlElement*> cells;
    EachElement(copy, [&](XmlElement* inner) {
        if (Is(inner, "w:tc") && Ancestor(inner, "w:tc") == nullptr) {
            cells.push_back(inner);
        }
    });
    for (XmlElement* cell : cells) {
        XmlElement* paragraph = FirstParagraph(cell);
        const XmlElement* look = TextLook(paragraph);
        XmlNode* settings = Child(paragraph, "w:pPr");
        // The look of the row's text lives on as that of the end mark, where the next text looks for it.
        if (look != nullptr && look->Parent() != settings) {
            if (settings == nullptr) {
                settings = paragraph->InsertFirstChild(New(paragraph, "w:pPr"));
            }
            if (XmlElement* former = Child(settings, "w:rPr")) {
                Remove(former);
            }
            // Only a section and a change may follow it.
            XmlNode* before = settings->LastChild();
            while (Is(before, "w:sectPr") || Is(before, "w:pPrChange")) {
                before = before->PreviousSibling();
            }
            InsertBehind(settings, before, look->DeepClone(copy->GetDocument()));
        }
        ClearCell(cell, paragraph);
    }
    return copy;
}
