#include "store/CTableWriter.h"
#include "store/engineerror.h"
#include "store/sqltext.h"

#include <sqlcipher/sqlite3.h>

#include <cmath>

#include "shell/numbers.h"

void CTableWriter::Finisher::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

CTableWriter::CTableWriter(CDbBase& database, std::string table, const std::vector<Column>& columns,
                           const std::vector<Column>& defaults)
    : m_database(database), m_table(std::move(table)) {
    std::string definitions;
    std::string places;
    std::string names;
    for (const Column& column : columns) {
        const char* separator = names.empty() ? "" : ",";
        definitions += separator + QuoteSqlName(column.Name) + ' ' + column.Declaration;
        names += separator + QuoteSqlName(column.Name);
        places += separator + std::string("?");
    }
    for (const Column& column : defaults) {
        definitions += ',' + QuoteSqlName(column.Name) + ' ' + column.Declaration;
    }
    m_database.Run("CREATE TABLE " + QuoteSqlName(m_table) + " (" + definitions + ")");
    m_insert = Prepare("INSERT INTO " + QuoteSqlName(m_table) + " (" + names + ") VALUES (" + places + ")");
}

CTableWriter::Statement CTableWriter::Prepare(const std::string& text) const {
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v2(m_database.m_connection, text.data(), static_cast<int>(text.size()),
                                          &statement, nullptr);
    Statement owned(statement);
    Check(result);
    return owned;
}

void CTableWriter::Check(int result) const {
    constexpr int kindMask = 0xFF;
    const int kind = result & kindMask;
    if (kind == SQLITE_CONSTRAINT || kind == SQLITE_MISMATCH || kind == SQLITE_TOOBIG) {
        throw CUnfittingValue(sqlite3_errmsg(m_database.m_connection));
    }
    if (kind != SQLITE_OK && kind != SQLITE_DONE) {
        throw EngineError(m_database.m_connection);
    }
}

void CTableWriter::SetInteger(int column, std::int64_t value) {
    Check(sqlite3_bind_int64(m_insert.get(), column + 1, value));
}

void CTableWriter::SetReal(int column, double value) {
    if (std::isfinite(value)) {
        Check(sqlite3_bind_double(m_insert.get(), column + 1, value));
        return;
    }
    const std::string text = FormatExact(value);
    Check(sqlite3_bind_text(m_insert.get(), column + 1, text.data(), static_cast<int>(text.size()),
                            SQLITE_TRANSIENT));
}

void CTableWriter::SetText(int column, std::string_view text) {
    const char* start = text.empty() ? "" : text.data();
    Check(sqlite3_bind_text64(m_insert.get(), column + 1, start, text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void CTableWriter::SetBytes(int column, std::string_view bytes) {
    const char* start = bytes.empty() ? "" : bytes.data();
    Check(sqlite3_bind_blob64(m_insert.get(), column + 1, start, bytes.size(), SQLITE_STATIC));
}

void CTableWriter::Write() {
    const int result = sqlite3_step(m_insert.get());
    sqlite3_reset(m_insert.get());
    sqlite3_clear_bindings(m_insert.get());
    Check(result);
}

void CTableWriter::SetLastNumber(std::int64_t number) {
    // The engine keeps the highest one of a table here once there was one.
    for (const char* text : {"UPDATE sqlite_sequence SET seq = max(seq, ?1) WHERE name = ?2",
                             "INSERT INTO sqlite_sequence (seq, name) SELECT ?1, ?2 WHERE NOT EXISTS "
                             "(SELECT 1 FROM sqlite_sequence WHERE name = ?2)"}) {
        const Statement statement = Prepare(text);
        Check(sqlite3_bind_int64(statement.get(), 1, number));
        Check(sqlite3_bind_text(statement.get(), 2, m_table.data(), static_cast<int>(m_table.size()),
                                SQLITE_TRANSIENT));
        Check(sqlite3_step(statement.get()));
    }
}
