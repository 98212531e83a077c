// Takes the tables of a file of the older engine into an empty database.
//
// Tables and columns keep their names. Columns that the program knows get its types, with the values brought
// to them; all others the types that fit theirs. Columns of numbers with a point are declared without a type:
// the engine would make zero of minus zero in a column that it knows to be of numbers.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "store/CTableWriter.h"
#include "store/jet/readjet.h"

struct JetTableCount {
    std::string Table;
    std::int64_t Rows = 0;
};

class CJetTransfer : public CJetReceiver {
public:
    enum class Content {
        All,
        Listing  // what a listing shows: attributes, names of defects, and how many records there are
    };
    struct Hooks {
        // Once it is clear that the file is a project, before anything is written.
        std::function<void()> Begin = [] {};
        // Several times a second; may throw to end it all.
        std::function<void(std::int64_t done, std::int64_t total)> Pulse = [](std::int64_t, std::int64_t) {};
    };

    CJetTransfer(CDbBase& database, Content content, Hooks hooks);

    // Throws CForeign if the tables are nobody's project.
    void TakeTables(const std::vector<JetTable>& tables) override;
    void TakeRow(std::size_t table, const std::vector<JetValue>& values) override;
    void Pulse() override;
    // Behind the last row: automatic numbers, indexes.
    void Complete();

    const std::vector<JetTableCount>& Counts() const { return m_counts; }

    // Without the tables `Attrib` and `DefectName`.
    class CForeign {};

private:
    enum class Form { Same, Real, Text, Key };
    struct Column {
        int Place;  // among those written; below 0: not written
        Form As;
        bool Single;
    };
    struct Table {
        std::unique_ptr<CTableWriter> Writer;  // none if its content isn't wanted
        std::vector<Column> Columns;
        bool Numbered = false;
        std::int64_t LastNumber = 0;
    };

    Table MakeTable(const JetTable& source);
    void Set(CTableWriter& writer, const Column& column, const JetValue& value);

    CDbBase& m_database;
    Content m_content;
    Hooks m_hooks;
    std::vector<Table> m_tables;
    std::vector<JetTableCount> m_counts;
    std::vector<std::string> m_texts;  // made from numbers, for the row in hand
    std::int64_t m_done = 0;
    std::int64_t m_total = 0;
    bool m_indexRecords = false;
};
