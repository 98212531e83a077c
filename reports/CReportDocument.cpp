#include "reports/CReportDocument.h"

#include "shell/textcodec.h"

bool CReportDocument::Write(const CReportElement::Sink& sink) const {
    // No character that means something in XML is part of another one in the code page, so that texts may
    // be escaped before they are converted.
    const auto converted = [&sink](std::string_view text) { return sink(GbkFromUtf8(text)); };
    return converted("<?xml version=\"1.0\" ?>\n") && (!m_joined || m_projectInfo.Print(converted));
}

std::string CReportDocument::Bytes() const {
    std::string bytes;
    (void)Write([&bytes](std::string_view text) {
        bytes += text;
        return true;
    });
    return bytes;
}
