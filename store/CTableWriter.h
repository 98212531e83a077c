// Makes a table in an open database and fills it, for content that comes from elsewhere and has to stay as it
// is to the bit: any names, any texts, any numbers. Throws CDbError.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/CDbBase.h"
#include "store/CDbError.h"

struct sqlite3_stmt;

// A value that its table doesn't take: a key that is there already or is no number, a text beyond all size.
class CUnfittingValue : public CDbError {
public:
    using CDbError::CDbError;
};

class CTableWriter {
public:
    struct Column {
        std::string Name;
        std::string Declaration;
    };

    // Every row leaves the columns of `defaults` to what they declare.
    CTableWriter(CDbBase& database, std::string table, const std::vector<Column>& columns,
                 const std::vector<Column>& defaults);

    // The values of a row, by the index in `columns`; texts and bytes must live until Write. What isn't
    // set is NULL.
    void SetInteger(int column, std::int64_t value);
    // What isn't finite becomes the text that reading takes for it.
    void SetReal(int column, double value);
    void SetText(int column, std::string_view text);
    void SetBytes(int column, std::string_view bytes);
    void Write();

    // The next automatic number comes behind this one, or behind the highest there is.
    void SetLastNumber(std::int64_t number);
    // A statement of any kind, as the engine takes it.
    static void Run(const CDbBase& database, const std::string& statement) { database.Run(statement); }

private:
    struct Finisher {
        void operator()(sqlite3_stmt* statement) const;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Finisher>;

    Statement Prepare(const std::string& text) const;
    void Check(int result) const;

    CDbBase& m_database;
    std::string m_table;
    Statement m_insert;
};
