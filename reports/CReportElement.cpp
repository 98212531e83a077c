#include "reports/CReportElement.h"

#include <tinyxml.h>

namespace {

constexpr std::size_t PieceBytes = 1U << 16U;

// Of the bytes of UTF-8.
bool MayStandInXml(unsigned char byte) {
    return byte >= 0x20 || byte == '\t' || byte == '\n' || byte == '\r';
}

void AppendEncoded(std::string_view value, std::string& out) {
    std::string clean;
    for (const char c : value) {
        if (MayStandInXml(static_cast<unsigned char>(c))) {
            clean += c;
        }
    }
    std::string encoded;
    TiXmlBase::EncodeString(clean, &encoded);
    out += encoded;
}

}  // namespace

std::size_t CReportElement::CNames::NumberOf(std::string_view name) {
    const auto known = m_numbers.find(name);
    if (known != m_numbers.end()) {
        return known->second;
    }
    m_names.emplace_back(name);
    return m_numbers.emplace(m_names.back(), m_names.size() - 1).first->second;
}

CReportElement& CReportElement::Add(std::string name) {
    return *m_children.emplace_back(new CReportElement(std::move(name), m_names));
}

void CReportElement::Set(std::string_view name, std::string_view value) {
    value = value.substr(0, value.find('\0'));
    const std::size_t number = m_names->NumberOf(name);
    const std::string key = {static_cast<char>(number & 0xFFU), static_cast<char>(number >> 8U)};
    for (std::size_t at = 0; at < m_attributes.size();) {
        const std::size_t end = m_attributes.find('\0', at + key.size());
        if (m_attributes.compare(at, key.size(), key) == 0) {
            m_attributes.replace(at + key.size(), end - at - key.size(), value);
            return;
        }
        at = end + 1;
    }
    m_attributes.append(key).append(value).append(1, '\0');
}

void CReportElement::Reserve(std::size_t attributes, std::size_t bytes) {
    constexpr std::size_t Around = 3;  // the name's number, and the end
    m_attributes.reserve(m_attributes.size() + Around * attributes + bytes);
}

bool CReportElement::Print(const Sink& sink) const {
    std::string text;
    return Print(text, 0, sink) && sink(text);
}

bool CReportElement::Print(std::string& text, int depth, const Sink& sink) const {
    const std::string indent(static_cast<std::size_t>(4 * depth), ' ');
    text.append(indent).append("<").append(m_name);
    for (std::size_t at = 0; at < m_attributes.size();) {
        const std::size_t number =
            static_cast<unsigned char>(m_attributes[at]) +
            (static_cast<std::size_t>(static_cast<unsigned char>(m_attributes[at + 1])) << 8U);
        const std::size_t end = m_attributes.find('\0', at + 2);
        const std::string_view value = std::string_view(m_attributes).substr(at + 2, end - at - 2);
        const char quote = value.find('"') == std::string_view::npos ? '"' : '\'';
        text.append(" ").append(m_names->Name(number)).append("=") += quote;
        AppendEncoded(value, text);
        text += quote;
        at = end + 1;
    }
    if (m_children.empty()) {
        text += " />\n";
    } else {
        text += ">\n";
        for (const auto& child : m_children) {
            if (!child->Print(text, depth + 1, sink)) {
                return false;
            }
        }
        text.append(indent).append("</").append(m_name).append(">\n");
    }
    if (text.size() >= PieceBytes) {
        if (!sink(text)) {
            return false;
        }
        text.clear();
    }
    return true;
}
