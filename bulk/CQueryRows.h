// The rows of a project, made ready for queries at each key press.
#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "bulk/query.h"
#include "store/records/records.h"

class CDbRec;

// The value of a column as a query reads it; empty if there is no such column.
std::string FieldText(const _TESTING_DATA& section, const std::string& column);

class CQueryRows {
public:
    // Reads all rows. False, with no rows, if they can't be read; the message has been shown.
    bool Read(CDbRec& database);
    const std::vector<_TESTING_DATA>& Sections() const { return m_sections; }

    // IDs of where the check found errors or warnings; of a record its section belongs to it too. Nobody
    // asks before a query has a term of that kind.
    struct Findings {
        std::set<std::int32_t> Sections;
        std::set<std::int32_t> Records;
    };
    std::function<Findings()> AskFindings;

    // IDs in the project's order.
    struct Hits {
        std::vector<std::int32_t> Sections;  // with a record that is hit, or hit themselves
        std::vector<std::int32_t> Records;   // in the order of their sections
    };
    Hits Find(const Query& query);
    // All records of sections, in the order of their sections. Valid until the next Read.
    struct Pair {
        const _TESTING_DATA* Section;
        const _REC_DATA* Record;
    };
    std::vector<Pair> All() const;
    // Null if there is none.
    const _TESTING_DATA* FindSection(std::int32_t id) const;
    const _REC_DATA* FindRecord(std::int32_t id) const;

private:
    struct SectionRow {
        std::string Text;     // all columns, in lower case
        int VideoThere = -1;  // not looked for yet
        std::vector<std::size_t> Records;
    };

    void Prepare(const Query& query);
    bool Holds(const QueryTerm& term, std::size_t section, const std::size_t* record) const;
    bool HoldsAll(const Query& query, std::size_t section, const std::size_t* record) const;
    bool IsExcluded(const Query& query, std::size_t section) const;

    std::vector<_TESTING_DATA> m_sections;
    std::vector<SectionRow> m_sectionRows;
    std::vector<_REC_DATA> m_records;  // by ID
    std::vector<std::string> m_recordTexts;
    Findings m_findings;
    bool m_knowsFindings = false;
};
