#include "store/jet/reader/CJetFile.h"

#include <string>

#include "store/jet/reader/CDamage.h"
#include "store/jet/reader/jetvalues.h"

namespace {

constexpr std::uint32_t CataloguePage = 2;
constexpr std::uint32_t TypeMask = 0x7F;
constexpr std::uint32_t TypeTable = 1;
constexpr std::uint32_t SystemFlags = 0x80000002;
constexpr std::uint32_t PageMask = 0xFFFFFF;

const JetColumnDefinition& FindColumn(const CJetTable& table, std::string_view name, int type) {
    for (const JetColumnDefinition& column : table.Columns()) {
        if (column.Name == name && column.Type == type) {
            return column;
        }
    }
    throw CDamage("no catalogue of tables");
}

std::uint32_t Number(const CJetRow& row, const JetColumnDefinition& column, std::size_t size) {
    const auto [null, bytes] = row.Get(column);
    Require(!null && bytes.size() == size, "no catalogue of tables");
    return size == 2 ? Stored<std::uint16_t>(bytes) : Stored<std::uint32_t>(bytes);
}

}  // namespace

CJetFile::CJetFile(int descriptor, const char* hostPath)
    : m_header(ReadJetHeader(descriptor)), m_pages(hostPath, m_header) {
    ReadCatalogue();
}

void CJetFile::ReadCatalogue() {
    struct Entry {
        std::string Name;
        std::uint32_t Page;
    };
    std::vector<Entry> entries;
    CJetTable catalogue(m_pages, CataloguePage, "MSysObjects");
    const JetColumnDefinition& id = FindColumn(catalogue, "Id", MDB_LONGINT);
    const JetColumnDefinition& name = FindColumn(catalogue, "Name", MDB_TEXT);
    const JetColumnDefinition& type = FindColumn(catalogue, "Type", MDB_INT);
    const JetColumnDefinition& flags = FindColumn(catalogue, "Flags", MDB_LONGINT);
    catalogue.ForEachRow([&](const CJetRow& row) {
        if ((Number(row, type, 2) & TypeMask) == TypeTable && (Number(row, flags, 4) & SystemFlags) == 0) {
            entries.push_back({TextFromStored(row.Get(name).Bytes), Number(row, id, 4) & PageMask});
            Require(!entries.back().Name.empty(), "a table without a name");
        }
    });
    for (Entry& entry : entries) {
        m_tables.push_back(std::make_unique<CJetTable>(m_pages, entry.Page, std::move(entry.Name)));
    }
}

void CJetFile::SendDefinition(const CJetTable& table, CStreamWriter& out) const {
    out.Begin(JetTag::Table);
    out.PutText(table.Name());
    out.Put(table.RowCount());
    out.Put(table.LastNumber());
    out.Put(static_cast<std::uint16_t>(table.Columns().size()));
    for (const JetColumnDefinition& column : table.Columns()) {
        out.PutText(column.Name);
        out.Put(column.Kind);
        out.Put(column.Automatic);
    }
    out.End();
}

void CJetFile::Send(CStreamWriter& out) {
    out.Begin(JetTag::Password);
    out.PutText(m_header.Password);
    out.End();
    for (const auto& table : m_tables) {
        SendDefinition(*table, out);
    }
    for (std::size_t i = 0; i < m_tables.size(); ++i) {
        CJetTable& table = *m_tables[i];
        table.ForEachRow([&](const CJetRow& row) {
            out.Begin(JetTag::Row);
            out.Put(static_cast<std::uint16_t>(i));
            for (const JetColumnDefinition& column : table.Columns()) {
                table.Send(row, column, out);
            }
            out.End();
        });
    }
    out.Begin(JetTag::End);
    out.End();
}
