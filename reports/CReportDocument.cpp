#include "reports/CReportDocument.h"

#include <tinyxml.h>

#include "shell/textcodec.h"

CReportDocument::CReportDocument()
    : m_document(std::make_unique<TiXmlDocument>()),
      m_apart(std::make_unique<TiXmlElement>("ProjectInfo")),
      m_projectInfo(m_apart.get()) {
    m_document->LinkEndChild(new TiXmlDeclaration("1.0", "", ""));  // the document owns it
}

CReportDocument::~CReportDocument() = default;

void CReportDocument::Join() {
    if (m_apart) {
        m_document->LinkEndChild(m_apart.release());
    }
}

std::string CReportDocument::Bytes() const {
    TiXmlPrinter printer;
    m_document->Accept(&printer);
    // No character that means something in XML is part of another one in the code page, so that texts may
    // be escaped before they are converted.
    return GbkFromUtf8(printer.Str());
}
