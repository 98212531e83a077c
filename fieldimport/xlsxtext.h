// Texts of workbooks of the format .xlsx: those of the cells themselves, and those that cells share.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "reports/ooxml/xmlstream.h"

// Throws CSheetError above what a cell can hold many times over.
void AppendText(std::string& text, std::string_view more);
// Control characters stand as "_x000D_".
std::string PlainText(std::string_view text);

// The runs of a text, whole; without what tells its sound. Told of all elements between those of the text.
class CTextGatherer {
public:
    void Begin(std::string_view name);
    void End(std::string_view name);
    void Add(std::string_view text);
    void Clear() { m_text.clear(); }
    const std::string& Get() const { return m_text; }

private:
    std::string m_text;
    bool m_inText = false;
    int m_sound = 0;  // how deep in it
};

// The table of shared texts. A million of them are kept as one, since each as a text of its own would take
// three times the memory.
class CSharedTexts : public CXmlEvents {
public:
    void Begin(std::string_view name, const char** attributes) override;
    void End(std::string_view name) override;
    void Text(std::string_view text) override;

    // From 0. Throws CSheetError outside the table.
    std::string At(std::int64_t index) const;

private:
    std::string m_all;
    std::vector<std::uint32_t> m_ends;
    CTextGatherer m_text;
};
