#include "store/jet/reader/CJetTable.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "store/jet/reader/CDamage.h"
#include "store/jet/reader/jetvalues.h"

namespace {

constexpr char TypeDefinition = 2;
constexpr std::size_t LastNumberAt = 20;
constexpr std::size_t SmallestUsageMap = 5;  // the library reads as much unasked
constexpr unsigned MostColumns = 255;

constexpr std::size_t MemoHeadSize = 12;
constexpr std::size_t PointerSize = 4;  // low byte the row, the rest the page
constexpr unsigned MemoInline = 0x80;
constexpr unsigned MemoOnePage = 0x40;
constexpr int MostMoves = 16;

struct TypeFacts {
    int Type;
    JetKind Kind;
    std::size_t Size;  // 0: any
};

constexpr TypeFacts Types[] = {
    {MDB_BOOL, JetKind::Integer, 0},    {MDB_BYTE, JetKind::Integer, 1},     {MDB_INT, JetKind::Integer, 2},
    {MDB_LONGINT, JetKind::Integer, 4}, {MDB_MONEY, JetKind::Decimal, 8},    {MDB_FLOAT, JetKind::Single, 4},
    {MDB_DOUBLE, JetKind::Double, 8},   {MDB_DATETIME, JetKind::Date, 8},    {MDB_BINARY, JetKind::Bytes, 0},
    {MDB_TEXT, JetKind::Text, 0},       {MDB_OLE, JetKind::Bytes, 0},        {MDB_MEMO, JetKind::Text, 0},
    {MDB_REPID, JetKind::Text, 16},     {MDB_NUMERIC, JetKind::Decimal, 17},
};

const TypeFacts& FactsOf(int type) {
    const auto* facts =
        std::find_if(std::begin(Types), std::end(Types), [&](const TypeFacts& t) { return t.Type == type; });
    Require(facts != std::end(Types), "a column of an unknown type");
    return *facts;
}

std::uint32_t PageOf(std::uint32_t place) {
    return place >> 8;
}

std::size_t RowOf(std::uint32_t place) {
    return place & 0xFF;
}

}  // namespace

// A row is: 2 bytes number of columns, the fixed values, the others, then from the end backwards the mask of
// what isn't NULL, 2 bytes number of the others, and 2 bytes each for where they begin, with one more for
// where the last one ends.
CJetRow::CJetRow(std::string_view bytes, bool hasPlaces) : m_bytes(bytes) {
    Require(bytes.size() > 2, "a row without content");
    m_columns = Stored<std::uint16_t>(bytes);
    const std::size_t maskSize = (m_columns + 7) / 8;
    Require(maskSize + 2 <= bytes.size(), "a row shorter than its columns");
    m_mask = bytes.size() - maskSize;
    m_dataEnd = m_mask;
    if (hasPlaces) {
        Require(m_mask >= 4, "a row shorter than its columns");
        m_places = Stored<std::uint16_t>(bytes, m_mask - 2);
        const std::size_t tableSize = 2 + (m_places + 1) * 2;
        Require(tableSize + 2 <= m_mask, "a row shorter than its values");
        m_dataEnd = m_mask - tableSize;
    }
}

CJetRow::Field CJetRow::Get(const JetColumnDefinition& column) const {
    // A column that was added later isn't in older rows.
    const bool there =
        column.Number < m_columns && (m_bytes[m_mask + column.Number / 8] >> (column.Number % 8) & 1) != 0;
    if (!there || column.Type == MDB_BOOL) {
        return {!there, {}};
    }
    std::size_t start = 2 + column.Offset;
    std::size_t end = start + column.Size;
    if (!column.Fixed) {
        Require(column.Place < m_places, "a value without a place");
        start = Stored<std::uint16_t>(m_bytes, m_mask - 4 - column.Place * 2);
        end = Stored<std::uint16_t>(m_bytes, m_mask - 6 - column.Place * 2);
    }
    Require(start >= 2 && start <= end && end <= m_dataEnd, "a value out of its row");
    return {false, m_bytes.substr(start, end - start)};
}

CJetTable::CJetTable(CJetPages& pages, std::uint32_t page, std::string name)
    : m_pages(pages), m_name(std::move(name)), m_page(page) {
    MdbHandle* handle = pages.Handle();
    Require(pages.Has(page) && mdb_read_pg(handle, page) == static_cast<ssize_t>(JetPageSize) &&
                handle->pg_buf[0] == TypeDefinition,
            "no definition of a table");
    std::int32_t lastNumber = 0;
    std::memcpy(&lastNumber, handle->pg_buf + LastNumberAt, sizeof lastNumber);
    m_lastNumber = lastNumber;
    m_entry.mdb = handle;
    m_entry.object_type = MDB_TABLE;
    m_entry.table_pg = page;
    m_table = mdb_read_table(&m_entry);
    Require(m_table != nullptr, "no definition of a table");
    try {
        Require(m_table->usage_map != nullptr && m_table->map_sz >= SmallestUsageMap, "no map of pages");
        ReadColumns();
    } catch (const CDamage&) {
        mdb_free_tabledef(m_table);
        throw;
    }
}

CJetTable::~CJetTable() {
    mdb_free_tabledef(m_table);
}

void CJetTable::ReadColumns() {
    Require(m_table->num_cols > 0 && m_table->num_cols <= MostColumns, "impossible number of columns");
    const GPtrArray* columns = mdb_read_columns(m_table);
    Require(columns != nullptr && columns->len == m_table->num_cols, "missing columns");
    for (guint i = 0; i < columns->len; ++i) {
        const auto* column = static_cast<const MdbColumn*>(g_ptr_array_index(columns, i));
        const TypeFacts& facts = FactsOf(column->col_type);
        JetColumnDefinition definition{
            column->name,
            facts.Kind,
            column->is_long_auto != 0 && column->col_type == MDB_LONGINT,
            column->col_type,
            column->col_prec,  // the library has the two the other way round
            column->is_fixed != 0,
            facts.Size != 0 ? facts.Size : static_cast<std::size_t>(column->col_size),
            static_cast<std::size_t>(column->fixed_offset),
            static_cast<std::size_t>(column->col_num),
            column->var_col_num};
        Require(!definition.Name.empty() && column->col_size >= 0 && column->fixed_offset >= 0 &&
                    column->col_num >= 0,
                "a column that can't be");
        m_columns.push_back(std::move(definition));
    }
}

std::int64_t CJetTable::RowCount() const {
    return m_table->num_rows;
}

void CJetTable::ForEachRow(const std::function<void(const CJetRow&)>& take) {
    MdbHandle* handle = m_pages.Handle();
    const bool hasPlaces = m_table->num_var_cols > 0;
    std::int64_t count = 0;
    CJetPage otherPage;
    mdb_rewind_table(m_table);
    while (mdb_read_next_dpg(m_table) != 0) {
        const CJetPage page(handle->pg_buf);
        Require(m_pages.Has(handle->cur_pg) && page.IsRowsOf(m_page), "a page that isn't the table's");
        const std::size_t slots = page.RowCount();
        for (std::size_t i = 0; i < slots; ++i) {
            const CJetPage::Slot slot = page.Row(i);
            if (slot.Deleted || slot.IsMoved) {
                continue;
            }
            const std::string_view bytes = slot.IsPointer ? Follow(slot.Bytes, otherPage) : slot.Bytes;
            m_pages.Spend(bytes.size());
            take(CJetRow(bytes, hasPlaces));
            ++count;
        }
    }
    // A page that can't be read ends the table without a word.
    Require(count == RowCount(), "another number of rows than the table tells");
}

std::string_view CJetTable::Follow(std::string_view pointer, CJetPage& page) {
    for (int moves = 0; moves < MostMoves; ++moves) {
        Require(pointer.size() >= PointerSize, "a moved row without a place");
        const auto place = Stored<std::uint32_t>(pointer);
        page = m_pages.Read(PageOf(place));
        Require(page.IsRowsOf(m_page), "a moved row on a page that isn't the table's");
        const CJetPage::Slot slot = page.Row(RowOf(place));
        if (slot.IsMoved) {
            return slot.Bytes;
        }
        Require(slot.IsPointer, "a moved row that isn't there");
        pointer = slot.Bytes;
    }
    throw CDamage("a row that moves in a circle");
}

std::string CJetTable::MemoChain(std::uint32_t place, std::size_t size) {
    std::string bytes;
    while (place != 0) {
        const CJetPage page = m_pages.Read(PageOf(place));
        Require(page.IsMemos(), "a memo on a page that isn't for memos");
        const CJetPage::Slot slot = page.Row(RowOf(place));
        Require(!slot.Deleted && !slot.IsPointer && slot.Bytes.size() > PointerSize, "a memo with a hole");
        m_pages.Spend(slot.Bytes.size());
        bytes.append(slot.Bytes.substr(PointerSize));
        Require(bytes.size() <= size, "a memo longer than it tells");
        place = Stored<std::uint32_t>(slot.Bytes);
    }
    Require(bytes.size() == size, "a memo shorter than it tells");
    return bytes;
}

std::string CJetTable::Memo(std::string_view field) {
    if (field.empty()) {
        return {};
    }
    Require(field.size() >= MemoHeadSize, "a memo without a head");
    const auto head = Stored<std::uint32_t>(field);
    const auto place = Stored<std::uint32_t>(field, 4);
    const std::size_t size = head & 0xFFFFFF;
    const unsigned flags = head >> 24;
    if ((flags & MemoInline) != 0) {
        Require(size <= field.size() - MemoHeadSize, "a memo longer than its row");
        return std::string(field.substr(MemoHeadSize, size));
    }
    if ((flags & MemoOnePage) != 0) {
        const CJetPage page = m_pages.Read(PageOf(place));
        Require(page.IsMemos(), "a memo on a page that isn't for memos");
        const CJetPage::Slot slot = page.Row(RowOf(place));
        Require(!slot.Deleted && !slot.IsPointer && size <= slot.Bytes.size(), "a memo longer than its row");
        m_pages.Spend(size);
        return std::string(slot.Bytes.substr(0, size));
    }
    return MemoChain(place, size);
}

void CJetTable::Send(const CJetRow& row, const JetColumnDefinition& column, CStreamWriter& out) {
    const auto [null, bytes] = row.Get(column);
    if (column.Type == MDB_BOOL) {
        out.Integer(null ? 0 : 1);
        return;
    }
    const std::size_t size = FactsOf(column.Type).Size;
    if (null || (size != 0 && bytes.empty())) {
        out.Null();
        return;
    }
    Require(size == 0 || bytes.size() == size, "a value of the wrong size");
    switch (column.Type) {
        case MDB_BYTE:
            return out.Integer(Stored<std::uint8_t>(bytes));
        case MDB_INT:
            return out.Integer(Stored<std::int16_t>(bytes));
        case MDB_LONGINT:
            return out.Integer(Stored<std::int32_t>(bytes));
        case MDB_FLOAT:
            return out.Real(static_cast<double>(Stored<float>(bytes)));
        case MDB_DOUBLE:
            return out.Real(Stored<double>(bytes));
        case MDB_DATETIME: {
            const auto days = Stored<double>(bytes);
            std::string text;
            return DateFromDays(days, text) ? out.Text(text) : out.Real(days);
        }
        case MDB_MONEY:
            return out.Text(TextFromCurrency(Stored<std::int64_t>(bytes)));
        case MDB_NUMERIC:
            return out.Text(TextFromDecimal(bytes, column.Scale));
        case MDB_REPID:
            return out.Text(TextFromGuid(bytes));
        case MDB_TEXT:
            return out.Text(TextFromStored(bytes));
        case MDB_MEMO:
            return out.Text(TextFromStored(Memo(bytes)));
        case MDB_OLE:
            return out.Bytes(Memo(bytes));
        default:
            return out.Bytes(bytes);
    }
}
