// The data file of a report, "config.xml", while it is being made. Texts in it are UTF-8; the bytes of the
// file are in the code page, without saying so.
#pragma once

#include <string>

#include "reports/CReportElement.h"

class CReportDocument {
public:
    CReportElement& ProjectInfo() { return m_projectInfo; }
    // Makes ProjectInfo the root, once. So what was given up half way never has a root.
    void Join() { m_joined = true; }
    // The file, in the code page, piece by piece. False as soon as the sink is.
    bool Write(const CReportElement::Sink& sink) const;
    std::string Bytes() const;

private:
    CReportElement m_projectInfo{"ProjectInfo"};
    bool m_joined = false;
};
