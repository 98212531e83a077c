// A table of a template that stands for many: taken out once, pasted filled for each section or defect.
// Everything goes in at one and the same place, so what was pasted last stands first in the document.
//
//   CDocxForm form = document.TakeForm("detail");
//   form.InsertPageBreak();               // in front of the table that comes next
//   CDocxTable table = form.Paste();
#pragma once

#include <tinyxml2.h>

#include <memory>
#include <string>

#include "reports/ooxml/CDocxTable.h"

class CDocxForm {
public:
    // For CDocx. Takes the table out of its document.
    CDocxForm(CDocx& document, XmlElement* table, std::string name);

    // The table that was pasted before is finished with this: its object is no longer valid.
    CDocxTable Paste();
    // The next table begins a page.
    void InsertPageBreak();
    // Empty ones in front of the next table, in the form of the paragraph that follows the forms.
    void InsertParagraphs(int count);

private:
    XmlElement* Insert(XmlNode* added);

    CDocx& m_document;
    std::string m_name;
    std::unique_ptr<tinyxml2::XMLDocument> m_model;  // the table, and the settings of the paragraph behind it
    XmlNode* m_parent = nullptr;
    XmlNode* m_before = nullptr;  // what stands before all that is pasted; null at the beginning
    XmlNode* m_at = nullptr;      // what the next goes behind
    XmlElement* m_last = nullptr;
};
