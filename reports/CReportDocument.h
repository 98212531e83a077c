// The data file of a report, "config.xml", while it is being made. Texts in it are UTF-8; the bytes of the
// file are in the code page, without saying so.
#pragma once

#include <memory>
#include <string>

class TiXmlDocument;
class TiXmlElement;

class CReportDocument {
public:
    // With its declaration and the element ProjectInfo, which stands apart at first.
    CReportDocument();
    ~CReportDocument();
    CReportDocument(const CReportDocument&) = delete;
    CReportDocument& operator=(const CReportDocument&) = delete;

    TiXmlElement& ProjectInfo() { return *m_projectInfo; }
    // Makes ProjectInfo the root, once. So what was given up half way never has a root.
    void Join();
    // The file, in the code page.
    std::string Bytes() const;

private:
    std::unique_ptr<TiXmlDocument> m_document;
    std::unique_ptr<TiXmlElement> m_apart;  // ProjectInfo until it is joined
    TiXmlElement* m_projectInfo;            // the document's afterwards
};
