// The data file of a report, config.xml, read back. The file tells of one thing in several places; here each
// section stands with its evaluation, its data and its records, and each record with its lines in the lists
// of defects.
#pragma once

#include <tinyxml2.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "shell/language.h"

using ConfigElement = tinyxml2::XMLElement;

// What is wrong with the file, as the number of its text.
enum class ConfigFault {
    NoElement = 3218,  // what it should be in, and its name
    Count = 3219,      // what is counted, how many there are and should be
    NoNumber = 3220,   // the element, the attribute and its value
    NoXml = 3221,      // the line
    NoDefect = 3222,   // the unknown name
};

// Its text names the place of the fault, in the operator's language.
class CConfigError : public std::runtime_error {
public:
    CConfigError(ConfigFault fault, const std::vector<std::string>& values)
        : std::runtime_error(FillText(LoadMessage(static_cast<int>(fault)), values)) {}
};

// Empty if the element hasn't it: what doesn't apply, such as an index without defects, is left out.
std::string ValueOf(const ConfigElement& element, const char* name);
// A count, a grade, an ID.
std::int64_t NumberOf(const ConfigElement& element, const char* name);

struct ConfigRecord {
    const ConfigElement* Row = nullptr;       // of the section's table
    const ConfigElement* Short = nullptr;     // of the table of evaluated defects
    const ConfigElement* Defect = nullptr;    // none for a record that says that nothing is wrong
    const ConfigElement* Sentence = nullptr;  // only for defects of the pipe

    bool IsNormal() const;
    bool IsManhole() const;
    bool IsStructural() const;
    bool IsFunctional() const;
    // Where along the pipe. Exact for defects; of others the file tells whole metres.
    std::string Position() const;
};

struct ConfigSection {
    const ConfigElement* Evaluation = nullptr;
    const ConfigElement* Data = nullptr;
    std::vector<ConfigRecord> Records;

    std::string Label() const;  // both manholes
};

class CConfigFile {
public:
    // `bytes` are in the code page. Throws CConfigError.
    explicit CConfigFile(std::string_view bytes);
    CConfigFile(const CConfigFile&) = delete;
    CConfigFile& operator=(const CConfigFile&) = delete;

    const ConfigElement& Project() const { return *m_xml.RootElement(); }
    // An element of the project and, in it, the one that is asked for. Throws CConfigError.
    const ConfigElement& Part(const char* outer, const char* inner) const;
    // All that is in an element of the project.
    std::vector<const ConfigElement*> Rows(const char* outer) const;

    // In the project's order.
    const std::vector<ConfigSection>& Sections() const { return m_sections; }
    // The number in Sections of each sentence of a defect, in the order of the sentences. -1 if nothing
    // tells.
    const std::vector<int>& SentenceSections() const { return m_sentenceSections; }
    // The record of each sentence, or null.
    const std::vector<const ConfigRecord*>& SentenceRecords() const { return m_sentenceRecords; }

private:
    void ReadSections();
    void JoinRecords();

    tinyxml2::XMLDocument m_xml;
    std::vector<ConfigSection> m_sections;
    std::vector<int> m_sentenceSections;
    std::vector<const ConfigRecord*> m_sentenceRecords;
};
