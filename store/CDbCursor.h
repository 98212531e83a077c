// The rows of one executed statement, read forward. Values are converted to what the field needs, never
// checked against the schema; what can't be converted, a NULL among it, throws CDbError.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "store/CStatementCache.h"

class CDbCursor {
public:
    // Runs the statement to its first row.
    explicit CDbCursor(CStatementCache::Statement statement);

    bool IsEof() const { return m_eof; }
    void MoveNext();

    // By column name, without regard to case. Names must be literals or outlive the cursor.
    std::int32_t GetLong(std::string_view column);
    float GetFloat(std::string_view column);
    double GetDouble(std::string_view column);
    std::string GetText(std::string_view column);
    // "YYYY-MM-DD HH:MM:SS". Never throws for a value: NULL and nonsense give the zero date.
    std::string GetDate(std::string_view column);

private:
    struct Column {
        std::string_view Name;
        int Index;
    };

    int FindColumn(std::string_view column);
    void Step();
    double NumberFromText(int index) const;

    CStatementCache::Statement m_statement;
    bool m_eof = false;
    // Rows are read column by column in one order, so the next name asked for is nearly always known.
    std::vector<Column> m_sequence;
    std::size_t m_position = 0;
};
