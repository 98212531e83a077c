#include "store/CDbCursor.h"

#include <sqlcipher/sqlite3.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <optional>

#include "shell/numbers.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "store/engineerror.h"

namespace {

constexpr const char* ZeroDate = "1899-12-30 00:00:00";

std::string_view TextOf(sqlite3_stmt* statement, int index) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, index));
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement, index))};
}

[[noreturn]] void RefuseValue(std::string_view column) {
    throw CDbError("no usable value in column " + std::string(column));
}

// 32-bit integers are made by rounding half to even, as the field's older engine did.
std::optional<std::int32_t> ToLong(double value) {
    const double rounded = std::nearbyint(value);
    if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
          rounded <= std::numeric_limits<std::int32_t>::max())) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(rounded);
}

}  // namespace

CDbCursor::CDbCursor(CStatementCache::Statement statement) : m_statement(std::move(statement)) {
    Step();
}

void CDbCursor::Step() {
    const int result = sqlite3_step(m_statement.get());
    m_eof = result == SQLITE_DONE;
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        throw EngineError(sqlite3_db_handle(m_statement.get()));
    }
}

void CDbCursor::MoveNext() {
    m_position = 0;
    Step();
}

int CDbCursor::FindColumn(std::string_view column) {
    if (m_position < m_sequence.size() && m_sequence[m_position].Name.data() == column.data()) {
        return m_sequence[m_position++].Index;
    }
    const int count = sqlite3_column_count(m_statement.get());
    for (int i = 0; i < count; ++i) {
        if (EqualNoCase(sqlite3_column_name(m_statement.get(), i), column)) {
            m_sequence.resize(m_position);
            m_sequence.push_back({column, i});
            ++m_position;
            return i;
        }
    }
    throw CDbError("no column " + std::string(column));
}

double CDbCursor::NumberFromText(int index) const {
    const std::string_view text = TextOf(m_statement.get(), index);
    if (EqualNoCase(text, "NaN")) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    if (EqualNoCase(text, "Infinity") || EqualNoCase(text, "-Infinity")) {
        const double infinity = std::numeric_limits<double>::infinity();
        return text.starts_with('-') ? -infinity : infinity;
    }
    const std::optional<double> value = ParseWholeDouble(text);
    if (!value) {
        RefuseValue(sqlite3_column_name(m_statement.get(), index));
    }
    return *value;
}

std::int32_t CDbCursor::GetLong(std::string_view column) {
    const std::optional<std::int32_t> value = ToLong(GetDouble(column));
    if (!value) {
        RefuseValue(column);
    }
    return *value;
}

float CDbCursor::GetFloat(std::string_view column) {
    const double value = GetDouble(column);
    const float narrow = static_cast<float>(value);
    if (std::isinf(narrow) && !std::isinf(value)) {
        RefuseValue(column);
    }
    return narrow;
}

double CDbCursor::GetDouble(std::string_view column) {
    const int index = FindColumn(column);
    switch (sqlite3_column_type(m_statement.get(), index)) {
        case SQLITE_INTEGER:
        case SQLITE_FLOAT:
            return sqlite3_column_double(m_statement.get(), index);
        case SQLITE_TEXT:
            return NumberFromText(index);
        default:
            RefuseValue(column);
    }
}

std::string CDbCursor::GetText(std::string_view column) {
    const int index = FindColumn(column);
    const int type = sqlite3_column_type(m_statement.get(), index);
    if (type == SQLITE_NULL || type == SQLITE_BLOB) {
        RefuseValue(column);
    }
    return std::string(TextOf(m_statement.get(), index));
}

std::string CDbCursor::GetDate(std::string_view column) {
    const int index = FindColumn(column);
    if (sqlite3_column_type(m_statement.get(), index) != SQLITE_TEXT) {
        return ZeroDate;
    }
    const std::string_view text = TextOf(m_statement.get(), index);
    constexpr std::string_view pattern = "0000-00-00 00:00:00";
    bool fits = text.size() >= pattern.size();  // parts of a second may follow
    for (std::size_t i = 0; fits && i < pattern.size(); ++i) {
        fits = pattern[i] == '0' ? text[i] >= '0' && text[i] <= '9' : text[i] == pattern[i];
    }
    if (!fits) {
        return ZeroDate;
    }
    const auto part = [&](std::size_t at, std::size_t size) { return ParseInt(text.substr(at, size)); };
    const std::chrono::year_month_day day{std::chrono::year{part(0, 4)},
                                          std::chrono::month{static_cast<unsigned>(part(5, 2))},
                                          std::chrono::day{static_cast<unsigned>(part(8, 2))}};
    fits = day.ok() && part(11, 2) < 24 && part(14, 2) < 60 && part(17, 2) < 60;
    return fits ? std::string(text.substr(0, pattern.size())) : ZeroDate;
}
