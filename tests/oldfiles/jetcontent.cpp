#include "tests/oldfiles/jetcontent.h"

#include <gtest/gtest.h>
#include <sqlcipher/sqlite3.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>

#include "store/CDbBase.h"
#include "tests/support/CJetTest.h"

namespace fs = std::filesystem;

namespace {

struct Value {
    bool Quoted = false;
    std::string Text;
};
using Row = std::vector<Value>;

struct ExpectedTable {
    struct Column {
        std::string Name;
        std::string Type;
        bool Automatic = false;
    };
    std::vector<Column> Columns;
    std::vector<Row> Rows;
};

std::vector<Row> ParseCsv(const std::string& text) {
    std::vector<Row> rows;
    Row row;
    Value value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') {
            value.Quoted = true;
            for (++i; text[i] != '"' || text[i + 1] == '"'; ++i) {
                value.Text += text[i];
                i += text[i] == '"' ? 1U : 0U;
            }
        } else if (text[i] == ',' || text[i] == '\n') {
            row.push_back(std::exchange(value, {}));
            if (text[i] == '\n') {
                rows.push_back(std::exchange(row, {}));
            }
        } else {
            value.Text += text[i];
        }
    }
    return rows;
}

ExpectedTable ReadExpected(const fs::path& file) {
    ExpectedTable table;
    std::vector<Row> rows = ParseCsv(ReadHostFile(file));
    for (const Value& head : rows.front()) {
        const std::size_t colon = head.Text.find(':');
        const bool automatic = head.Text.ends_with('*');
        table.Columns.push_back(
            {head.Text.substr(0, colon),
             head.Text.substr(colon + 1, head.Text.size() - colon - 1 - (automatic ? 1 : 0)), automatic});
    }
    table.Rows.assign(rows.begin() + 1, rows.end());
    // The store gives rows in the order of their automatic numbers.
    for (std::size_t i = 0; i < table.Columns.size(); ++i) {
        if (table.Columns[i].Automatic) {
            std::stable_sort(table.Rows.begin(), table.Rows.end(), [&](const Row& a, const Row& b) {
                return std::stoll(a[i].Text) < std::stoll(b[i].Text);
            });
        }
    }
    return table;
}

// Opened as docs/files.md tells users to do it, with nothing of the program but the key.
class CPlainDatabase {
public:
    explicit CPlainDatabase(const fs::path& file) {
        sqlite3_open_v2(file.c_str(), &m_connection, SQLITE_OPEN_READONLY, nullptr);
        Run("PRAGMA key = \"x'" + DatabaseKey(CDbPassword) + "'\"");
        Run("PRAGMA cipher_page_size = 4096");
    }
    ~CPlainDatabase() { sqlite3_close(m_connection); }
    CPlainDatabase(const CPlainDatabase&) = delete;
    CPlainDatabase& operator=(const CPlainDatabase&) = delete;

    using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;
    Statement Prepare(const std::string& text) {
        sqlite3_stmt* statement = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(m_connection, text.c_str(), -1, &statement, nullptr), SQLITE_OK)
            << text << ": " << sqlite3_errmsg(m_connection);
        return {statement, sqlite3_finalize};
    }

private:
    void Run(const std::string& text) { sqlite3_exec(m_connection, text.c_str(), nullptr, nullptr, nullptr); }

    sqlite3* m_connection = nullptr;
};

std::string TextAt(sqlite3_stmt* row, int column) {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(row, column));
    return {bytes != nullptr ? bytes : "", static_cast<std::size_t>(sqlite3_column_bytes(row, column))};
}

double NumberOf(const std::string& text, const std::string& type) {
    if (text.ends_with("Infinity")) {
        const double infinity = std::numeric_limits<double>::infinity();
        return text.starts_with('-') ? -infinity : infinity;
    }
    return type == "FLOAT" ? static_cast<double>(std::strtof(text.c_str(), nullptr))
                           : std::strtod(text.c_str(), nullptr);
}

// Whether a value of the database is what the fixture tells.
bool IsSame(sqlite3_stmt* row, int column, const Value& expected, const std::string& type) {
    const int stored = sqlite3_column_type(row, column);
    if (!expected.Quoted && expected.Text == "\\N") {
        return stored == SQLITE_NULL;
    }
    if (type == "OLE") {
        std::string hex;
        for (const char c : TextAt(row, column)) {
            constexpr std::string_view digits = "0123456789ABCDEF";
            hex += digits[static_cast<unsigned char>(c) >> 4];
            hex += digits[static_cast<unsigned char>(c) & 15];
        }
        return stored == SQLITE_BLOB && "x'" + hex + "'" == expected.Text;
    }
    if (stored == SQLITE_FLOAT) {
        // To the bit: minus zero isn't zero.
        return std::bit_cast<std::uint64_t>(sqlite3_column_double(row, column)) ==
               std::bit_cast<std::uint64_t>(NumberOf(expected.Text, type));
    }
    if (stored == SQLITE_INTEGER) {
        return std::to_string(sqlite3_column_int64(row, column)) == expected.Text;
    }
    const std::string text = TextAt(row, column);
    const bool number = type == "FLOAT" || type == "DOUBLE";
    return stored == SQLITE_TEXT &&
           (text == expected.Text || (number && NumberOf(text, type) == NumberOf(expected.Text, type)));
}

void ExpectTable(CPlainDatabase& database, const std::string& name, const ExpectedTable& table) {
    std::string columns;
    for (const ExpectedTable::Column& column : table.Columns) {
        columns += (columns.empty() ? "\"" : ",\"") + column.Name + '"';
    }
    const auto rows = database.Prepare("SELECT " + columns + " FROM \"" + name + "\" ORDER BY rowid");
    std::size_t count = 0;
    for (; sqlite3_step(rows.get()) == SQLITE_ROW; ++count) {
        ASSERT_LT(count, table.Rows.size()) << name;
        for (std::size_t i = 0; i < table.Columns.size(); ++i) {
            const int column = static_cast<int>(i);
            EXPECT_TRUE(IsSame(rows.get(), column, table.Rows[count][i], table.Columns[i].Type))
                << name << "." << table.Columns[i].Name << ", row " << count << ": "
                << TextAt(rows.get(), column) << " instead of " << table.Rows[count][i].Text;
        }
    }
    EXPECT_EQ(count, table.Rows.size()) << name;
}

}  // namespace

void ExpectContent(const fs::path& database, const std::string& fixture) {
    CPlainDatabase plain(database);
    std::size_t tables = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(JetFixtures() / "expect")) {
        const std::string name = entry.path().stem().string();  // FIXTURE.TABLE
        if (name.starts_with(fixture + ".")) {
            ExpectTable(plain, name.substr(fixture.size() + 1), ReadExpected(entry.path()));
            ++tables;
        }
    }
    EXPECT_GT(tables, 0U) << fixture;
    const auto count = plain.Prepare(
        "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name <> 'sqlite_sequence'");
    sqlite3_step(count.get());
    EXPECT_EQ(static_cast<std::size_t>(sqlite3_column_int(count.get(), 0)), tables) << fixture;
}

std::string Query(const fs::path& database, const std::string& statement) {
    CPlainDatabase plain(database);
    const auto row = plain.Prepare(statement);
    return sqlite3_step(row.get()) == SQLITE_ROW && sqlite3_column_type(row.get(), 0) != SQLITE_NULL
               ? TextAt(row.get(), 0)
               : "NULL";
}
