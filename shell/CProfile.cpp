#include "shell/CProfile.h"

#include "shell/textcodec.h"

namespace {

constexpr std::string_view LineBreak = "\r\n";

std::string_view WithoutQuotes(std::string_view value) {
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front()) {
        return value.substr(1, value.size() - 2);
    }
    return value;
}

}  // namespace

CProfile::Place CProfile::Find(std::string_view section, std::string_view key) const {
    Place place;
    place.Begin = m_content.size();
    bool inside = false;
    for (std::size_t at = 0; at < m_content.size();) {
        const std::size_t next = std::min(m_content.find('\n', at), m_content.size());
        std::size_t end = next;
        if (end > at && m_content[end - 1] == '\r') {
            --end;
        }
        const std::string_view line = TrimBlanks(std::string_view(m_content).substr(at, end - at));
        if (line.starts_with('[')) {
            if (inside) {
                break;
            }
            const std::string_view name = line.substr(1, line.find(']') - 1);
            inside = EqualNoCase(TrimBlanks(name), section);
            if (inside) {
                place.SectionFound = true;
                place.Begin = next + 1;
            }
        } else if (inside && !line.empty()) {
            const std::size_t equals = line.find('=');
            const bool comment = line.starts_with(';');
            if (!comment && equals != std::string_view::npos &&
                EqualNoCase(TrimBlanks(line.substr(0, equals)), key)) {
                place.KeyFound = true;
                place.Begin = at;
                place.End = end;
                return place;
            }
            place.Begin = next + 1;  // blank lines at the end of a section stay behind a new key
        }
        at = next + 1;
    }
    place.Begin = std::min(place.Begin, m_content.size());
    return place;
}

std::string CProfile::Get(std::string_view section, std::string_view key) const {
    const Place place = Find(section, key);
    if (!place.KeyFound) {
        return {};
    }
    const std::string_view line = std::string_view(m_content).substr(place.Begin, place.End - place.Begin);
    return std::string(WithoutQuotes(TrimBlanks(line.substr(line.find('=') + 1))));
}

void CProfile::Set(std::string_view section, std::string_view key, std::string_view value) {
    value = value.substr(0, value.find_first_of(LineBreak));
    std::string line(key);
    line.append("=").append(value);

    const Place place = Find(section, key);
    if (place.KeyFound) {
        m_content.replace(place.Begin, place.End - place.Begin, line);
        return;
    }
    line += LineBreak;
    if (!place.SectionFound) {
        line.insert(0, std::string("[").append(section).append("]").append(LineBreak));
    }
    const bool afterOpenLine = place.Begin > 0 && m_content[place.Begin - 1] != '\n';
    m_content.insert(place.Begin, afterOpenLine ? std::string(LineBreak) + line : line);
}
