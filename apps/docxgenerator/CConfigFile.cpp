#include "apps/docxgenerator/CConfigFile.h"

#include <algorithm>
#include <optional>

#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

// No project comes near; sums of such numbers stay numbers.
constexpr std::int64_t LargestNumber = 100'000'000;

constexpr const char* StructuralText = "结构性缺陷";
constexpr const char* FunctionalText = "功能性缺陷";
constexpr const char* ManholeText = "检查井缺陷";

const ConfigElement& Child(const ConfigElement& parent, const char* name) {
    const ConfigElement* child = parent.FirstChildElement(name);
    if (child == nullptr) {
        throw CConfigError(ConfigFault::NoElement, {parent.Name(), name});
    }
    return *child;
}

std::vector<const ConfigElement*> Children(const ConfigElement& parent) {
    std::vector<const ConfigElement*> children;
    for (const auto* child = parent.FirstChildElement(); child != nullptr;
         child = child->NextSiblingElement()) {
        children.push_back(child);
    }
    return children;
}

// Those of the project that are called `name` and a number. Sections without defects share the number of the
// next one, so that only the order tells which is whose.
std::vector<const ConfigElement*> Numbered(const ConfigElement& project, std::string_view name) {
    std::vector<const ConfigElement*> found;
    for (const ConfigElement* child : Children(project)) {
        const std::string_view full = child->Name();
        if (full.size() > name.size() && full.starts_with(name) &&
            full.find_first_not_of("0123456789", name.size()) == full.npos) {
            found.push_back(child);
        }
    }
    return found;
}

void ExpectSize(const char* name, std::size_t size, std::size_t expected) {
    if (size != expected) {
        throw CConfigError(ConfigFault::Count, {name, FormatInt(static_cast<std::int64_t>(size)),
                                                FormatInt(static_cast<std::int64_t>(expected))});
    }
}

}  // namespace

std::string ValueOf(const ConfigElement& element, const char* name) {
    const char* value = element.Attribute(name);
    return value == nullptr ? std::string() : value;
}

std::int64_t NumberOf(const ConfigElement& element, const char* name) {
    const std::string text = ValueOf(element, name);
    const std::optional<std::int64_t> number = ParseWholeInt(text);
    if (!number || *number < 0 || *number > LargestNumber) {
        throw CConfigError(ConfigFault::NoNumber, {element.Name(), name, text});
    }
    return *number;
}

bool ConfigRecord::IsNormal() const {
    return ValueOf(*Row, "strFullName") == "-";
}

bool ConfigRecord::IsManhole() const {
    return ValueOf(*Row, "defeatTYPE") == ManholeText;
}

bool ConfigRecord::IsStructural() const {
    return !IsNormal() && ValueOf(*Row, "defeatTYPE") == StructuralText;
}

bool ConfigRecord::IsFunctional() const {
    return !IsNormal() && ValueOf(*Row, "defeatTYPE") == FunctionalText;
}

std::string ConfigRecord::Position() const {
    if (Sentence != nullptr) {
        return ValueOf(*Sentence, "place");
    }
    const std::string start = ValueOf(*Row, "sd");
    const double length = ParseDouble(ValueOf(*Row, "Length"));
    return length == 0 ? start : start + " - " + FormatNumber(ParseDouble(start) + length, 2);
}

std::string ConfigSection::Label() const {
    return ValueOf(*Evaluation, "strStartWell") + " - " + ValueOf(*Evaluation, "strEndWell");
}

CConfigFile::CConfigFile(std::string_view bytes) {
    // No character that means something in XML is part of another one in the code page.
    const std::string text = Utf8FromGbk(bytes);
    if (m_xml.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS) {
        throw CConfigError(ConfigFault::NoXml, {FormatInt(m_xml.ErrorLineNum())});
    }
    if (m_xml.RootElement() == nullptr || std::string_view(m_xml.RootElement()->Name()) != "ProjectInfo") {
        throw CConfigError(ConfigFault::NoElement, {"XML", "ProjectInfo"});
    }
    ReadSections();
    JoinRecords();
}

const ConfigElement& CConfigFile::Part(const char* outer, const char* inner) const {
    return Child(Child(Project(), outer), inner);
}

std::vector<const ConfigElement*> CConfigFile::Rows(const char* outer) const {
    return Children(Child(Project(), outer));
}

void CConfigFile::ReadSections() {
    const std::vector<const ConfigElement*> evaluations = Rows("Evaluates");
    const std::vector<const ConfigElement*> shortTables = Numbered(Project(), "EvaluateDefeat");
    // These come from the last section to the first.
    const std::vector<const ConfigElement*> data = Rows("TablesBigTotals");
    const std::vector<const ConfigElement*> tables = Numbered(Project(), "TablesBig");
    const std::size_t size = evaluations.size();
    ExpectSize("EvaluateDefeat", shortTables.size(), size);
    ExpectSize("TablesBigTotals", data.size(), size);
    ExpectSize("TablesBig", tables.size(), size);
    m_sections.resize(size);
    for (std::size_t i = 0; i < size; ++i) {
        ConfigSection& section = m_sections[i];
        section.Evaluation = evaluations[i];
        section.Data = data[size - 1 - i];
        const ConfigElement& table = *tables[size - 1 - i];
        const std::vector<const ConfigElement*> shortRows = Children(*shortTables[i]);
        for (const ConfigElement* row : Children(table)) {
            section.Records.emplace_back().Row = row;
        }
        ExpectSize(table.Name(), section.Records.size(), shortRows.size());
        for (std::size_t k = 0; k < shortRows.size(); ++k) {
            section.Records[k].Short = shortRows[k];
        }
    }
}

// Both lists of defects are in the order of the records' IDs and know no sections. Records whose class and
// code contradict the criterion may be in one list only; if the numbers show it, sentences find their section
// by its manholes, and its records stay without them.
void CConfigFile::JoinRecords() {
    struct Entry {
        std::int64_t Id;
        int Section;
        ConfigRecord* Record;
    };
    std::vector<Entry> entries;
    for (std::size_t i = 0; i < m_sections.size(); ++i) {
        for (ConfigRecord& record : m_sections[i].Records) {
            const std::int64_t id = NumberOf(*record.Row, "defectId");
            if (!record.IsNormal()) {
                entries.push_back({id, static_cast<int>(i), &record});
            }
        }
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return a.Id < b.Id; });
    const std::vector<const ConfigElement*> defects = Rows("Defeats");
    for (std::size_t i = 0; i < defects.size() && defects.size() == entries.size(); ++i) {
        entries[i].Record->Defect = defects[i];
    }
    std::erase_if(entries, [](const Entry& entry) {
        return !entry.Record->IsStructural() && !entry.Record->IsFunctional();
    });
    const std::vector<const ConfigElement*> sentences = Rows("defeats123");
    const bool joined = sentences.size() == entries.size();
    for (std::size_t i = 0; i < sentences.size(); ++i) {
        int section = -1;
        if (joined) {
            section = entries[i].Section;
            entries[i].Record->Sentence = sentences[i];
        } else {
            const std::string label = ValueOf(*sentences[i], "GetSEWellName");
            const auto found =
                std::find_if(m_sections.begin(), m_sections.end(),
                             [&](const ConfigSection& known) { return known.Label() == label; });
            section = found == m_sections.end() ? -1 : static_cast<int>(found - m_sections.begin());
        }
        m_sentenceSections.push_back(section);
        m_sentenceRecords.push_back(joined ? entries[i].Record : nullptr);
    }
}
