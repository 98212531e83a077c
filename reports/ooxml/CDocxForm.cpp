#include "reports/ooxml/CDocxForm.h"

#include <utility>

#include "reports/ooxml/CBookmarks.h"
#include "reports/ooxml/CDocx.h"

namespace {

// A paragraph as low as can be: what it holds should take no room, and a form that fills its page must not
// push an empty line to the next.
XmlElement* LowParagraph(tinyxml2::XMLDocument* document, bool breaksPage) {
    XmlElement* paragraph = document->NewElement("w:p");
    XmlElement* settings = paragraph->InsertNewChildElement("w:pPr");
    XmlElement* spacing = settings->InsertNewChildElement("w:spacing");
    spacing->SetAttribute("w:before", "0");
    spacing->SetAttribute("w:after", "0");
    spacing->SetAttribute("w:line", "20");
    spacing->SetAttribute("w:lineRule", "exact");
    XmlElement* look = settings->InsertNewChildElement("w:rPr");
    look->InsertNewChildElement("w:sz")->SetAttribute("w:val", "2");
    if (breaksPage) {
        XmlElement* run = paragraph->InsertNewChildElement("w:r");
        run->InsertEndChild(look->DeepClone(document));
        run->InsertNewChildElement("w:br")->SetAttribute("w:type", "page");
    }
    return paragraph;
}

XmlNode* BehindMarks(XmlNode* node) {
    while (node != nullptr && (IsBookmarkMark(node) || Is(node, "w:proofErr"))) {
        node = node->NextSibling();
    }
    return node;
}

}  // namespace

CDocxForm::CDocxForm(CDocx& document, XmlElement* table, std::string name)
    : m_document(document),
      m_name(std::move(name)),
      m_model(std::make_unique<tinyxml2::XMLDocument>()),
      m_parent(table->Parent()),
      m_before(table->PreviousSibling()),
      m_at(m_before) {
    RemoveUniqueMarks(table);
    m_model->InsertEndChild(table->DeepClone(m_model.get()));
    XmlNode* next = BehindMarks(table->NextSibling());
    if (XmlElement* settings = Child(Is(next, "w:p") ? next : nullptr, "w:pPr")) {
        XmlNode* copy = m_model->InsertEndChild(settings->DeepClone(m_model.get()));
        if (XmlElement* section = Child(copy, "w:sectPr")) {
            Remove(section);
        }
    }
    Remove(table);
}

XmlElement* CDocxForm::Insert(XmlNode* added) {
    m_at = InsertBehind(m_parent, m_at, added);
    return m_at->ToElement();
}

CDocxTable CDocxForm::Paste() {
    if (m_last != nullptr) {
        MakeRaw(m_last);
    }
    tinyxml2::XMLDocument* document = m_parent->GetDocument();
    m_last = Insert(m_model->RootElement()->DeepClone(document));
    m_document.NumberDrawings(m_last);
    m_at = m_before;
    // Two tables without a paragraph between them would become one, and a cell or body must end in a
    // paragraph.
    const XmlNode* next = BehindMarks(m_last->NextSibling());
    if (!Is(next, "w:p")) {
        InsertBehind(m_parent, m_last, LowParagraph(document, false));
    }
    return {m_document, m_last, m_name};
}

void CDocxForm::InsertPageBreak() {
    Insert(LowParagraph(m_parent->GetDocument(), true));
}

void CDocxForm::InsertParagraphs(int count) {
    tinyxml2::XMLDocument* document = m_parent->GetDocument();
    for (int i = 0; i < count; ++i) {
        XmlElement* added = document->NewElement("w:p");
        if (const XmlNode* settings = m_model->RootElement()->NextSibling()) {
            added->InsertEndChild(settings->DeepClone(document));
        }
        Insert(added);
    }
}
