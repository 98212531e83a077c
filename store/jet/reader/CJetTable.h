// One table: its definition, and a walk over its rows.
//
// The library finds the table's pages. It isn't asked for rows: its way gives moved rows in the wrong place
// and dropped copies of them too.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/jet/jetstream.h"
#include "store/jet/reader/CJetPages.h"
#include "store/jet/reader/CStreamWriter.h"

struct JetColumnDefinition {
    std::string Name;
    JetKind Kind;
    bool Automatic;
    int Type;  // the library's MDB_... number
    int Scale;
    bool Fixed;
    std::size_t Size;    // of a fixed one
    std::size_t Offset;  // of a fixed one, within the fixed part
    std::size_t Number;  // in the mask of what isn't NULL
    std::size_t Place;   // of one that isn't fixed, among its kind
};

// The bytes of one row; columns come by their index in the definition.
class CJetRow {
public:
    CJetRow(std::string_view bytes, bool hasPlaces);
    struct Field {
        bool Null;
        std::string_view Bytes;
    };
    Field Get(const JetColumnDefinition& column) const;

private:
    std::string_view m_bytes;
    std::size_t m_columns = 0;
    std::size_t m_mask = 0;    // where it begins
    std::size_t m_places = 0;  // how many there are of values that aren't fixed
    std::size_t m_dataEnd = 0;
};

class CJetTable {
public:
    // `page` holds its definition. Throws CDamage.
    CJetTable(CJetPages& pages, std::uint32_t page, std::string name);
    ~CJetTable();
    CJetTable(const CJetTable&) = delete;
    CJetTable& operator=(const CJetTable&) = delete;

    const std::string& Name() const { return m_name; }
    const std::vector<JetColumnDefinition>& Columns() const { return m_columns; }
    std::int64_t RowCount() const;  // as the definition tells
    std::int64_t LastNumber() const { return m_lastNumber; }

    // In the order of the file; moved rows in their first place. Throws CDamage, also if there are other
    // than RowCount rows.
    void ForEachRow(const std::function<void(const CJetRow&)>& take);
    // A value of a row, in the form that its kind asks for.
    void Send(const CJetRow& row, const JetColumnDefinition& column, CStreamWriter& out);

private:
    void ReadColumns();
    std::string_view Follow(std::string_view pointer, CJetPage& page);
    std::string Memo(std::string_view field);
    std::string MemoChain(std::uint32_t place, std::size_t size);

    CJetPages& m_pages;
    std::string m_name;
    std::uint32_t m_page;
    MdbCatalogEntry m_entry{};
    MdbTableDef* m_table = nullptr;
    std::vector<JetColumnDefinition> m_columns;
    std::int64_t m_lastNumber = 0;
};
