#include "history/journaltables.h"

#include <array>

#include "shell/textcodec.h"
#include "store/CDbBase.h"
#include "store/CDbError.h"
#include "store/sqltext.h"

namespace {

constexpr int Format = 1;
constexpr std::array<const char*, 3> Journalled{"Attrib", "Testing", "Record"};
constexpr std::array<const char*, 3> Columns{"Aux_Seq", "Aux_Side", "Aux_Row"};

CDbCursor TableInfo(CDbBase& database, const std::string& table) {
    return database.ExecuteAsIs("PRAGMA table_info(" + QuotedText(table) + ")");
}

std::vector<std::string> ColumnsOf(CDbBase& database, const std::string& table) {
    std::vector<std::string> columns;
    for (CDbCursor rows = TableInfo(database, table); !rows.IsEof(); rows.MoveNext()) {
        columns.push_back(QuoteSqlName(rows.GetText("name")));
    }
    return columns;
}

void DropTable(CDbBase& database, const std::string& name) {
    database.ExecuteAsIs("DROP TABLE IF EXISTS " + name);
}

// Where the change happened, for the first row of a step. `row` is "NEW" or "OLD".
std::string PlaceOf(const std::string& table, const std::string& row) {
    if (table == "Testing") {
        return row + ".ID, -1, " + row + ".StartWell || ' - ' || " + row + ".EndWell, ''";
    }
    if (table == "Record") {
        return row + ".TestingID, " + row +
               ".ID, ifnull((SELECT StartWell || ' - ' || EndWell FROM Testing " + "WHERE ID = " + row +
               ".TestingID), ''), " + row + ".DefectCode || ' ' || round(" + row + ".DistanceStart, 2)";
    }
    return "-1, -1, '', ''";
}

// OR FAIL, as all that triggers insert: where a statement could abort half way the engine keeps a copy of
// each page that it touches, encrypted anew, which costs more than the change itself. Their numbers are
// unique anyway.
std::string InsertStep(const std::string& place) {
    return "INSERT OR FAIL INTO Aux_Step (ID, Name, Time, Account, Section, Record, Label, Detail, Undone) "
           "SELECT drovane_step(), drovane_step_name(), now(), drovane_account(), " +
           place + ", 0 WHERE NOT EXISTS (SELECT 1 FROM Aux_Step WHERE ID = drovane_step()); ";
}

std::string InsertImage(const JournalledTable& table, const std::string& row, int side) {
    return "INSERT OR FAIL INTO " + table.ImageName() + " (Aux_Seq, Aux_Side, Aux_Row, " +
           table.ColumnList() + ") VALUES (drovane_image(), " + std::to_string(side) + ", " + row +
           ".rowid, " + table.ColumnList(row + ".") + "); ";
}

void CreateTrigger(CDbBase& database, const JournalledTable& table, const std::string& event,
                   const std::string& condition, const std::string& body) {
    database.ExecuteAsIs("CREATE TEMP TRIGGER Aux_" + table.Name + "_" + event + " AFTER " + event +
                         " ON main." + table.Name + " WHEN drovane_step() > 0" + condition + " BEGIN " +
                         body + "END");
}

// What was undone can't be done again once something else has been done.
std::string DropUndone(const std::vector<JournalledTable>& tables) {
    const std::string from =
        " WHERE Aux_Seq >= (SELECT min(ID) FROM Aux_Step WHERE Undone = 1 AND ID <> NEW.ID) << 32 AND "
        "Aux_Seq < NEW.ID << 32; ";
    std::string body;
    for (const JournalledTable& table : tables) {
        body += "DELETE FROM " + table.ImageName() + from;
    }
    return body + "DELETE FROM Aux_Step WHERE Undone = 1 AND ID <> NEW.ID; ";
}

}  // namespace

std::string JournalledTable::ColumnList(const std::string& prefix) const {
    std::string list;
    for (const std::string& column : Columns) {
        list += (list.empty() ? "" : ", ") + prefix + column;
    }
    return list;
}

std::string QuotedText(const std::string& text) {
    return "'" + EscapeSqlText(text) + "'";
}

std::int64_t FirstNumber(std::int64_t step) {
    return step << 32;
}

std::string OfStep(std::int64_t step) {
    return "Aux_Seq >= " + std::to_string(FirstNumber(step)) + " AND Aux_Seq < " +
           std::to_string(FirstNumber(step + 1));
}

std::vector<JournalledTable> ReadJournalledTables(CDbBase& database) {
    std::vector<JournalledTable> tables;
    for (const char* const name : Journalled) {
        JournalledTable table{name, ColumnsOf(database, name)};
        for (CDbCursor rows = TableInfo(database, name); !rows.IsEof(); rows.MoveNext()) {
            table.HasKeyColumn = table.HasKeyColumn ||
                                 (rows.GetLong("pk") > 0 && EqualNoCase(rows.GetText("type"), "INTEGER"));
        }
        if (!table.Columns.empty()) {
            tables.push_back(std::move(table));
        }
    }
    return tables;
}

bool HasTable(CDbBase& database, const std::string& name) {
    return !database
                .ExecuteAsIs("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = " +
                             QuotedText(name))
                .IsEof();
}

std::string JournalOf(CDbBase& database) {
    if (!HasTable(database, "Aux_Journal")) {
        return {};
    }
    CDbCursor row = database.ExecuteAsIs("SELECT Journal FROM Aux_Journal");
    return row.IsEof() ? std::string() : row.GetText("Journal");
}

bool JournalFits(CDbBase& database, const std::vector<JournalledTable>& tables) {
    if (database.ExecuteAsIs("SELECT 1 FROM Aux_Journal WHERE Format = " + std::to_string(Format)).IsEof()) {
        return false;
    }
    for (const JournalledTable& table : tables) {
        std::vector<std::string> wanted;
        for (const char* const column : Columns) {
            wanted.push_back(QuoteSqlName(column));
        }
        wanted.insert(wanted.end(), table.Columns.begin(), table.Columns.end());
        if (ColumnsOf(database, table.ImageName()) != wanted) {
            return false;
        }
    }
    return HasTable(database, "Aux_Step") && HasTable(database, "Aux_Picture");
}

CSecureDeletion::CSecureDeletion(CDbBase& database)
    : m_database(database), m_before(database.ExecuteAsIs("PRAGMA secure_delete").GetLong("secure_delete")) {
    m_database.ExecuteAsIs("PRAGMA secure_delete = ON");
}

CSecureDeletion::~CSecureDeletion() {
    try {
        m_database.ExecuteAsIs("PRAGMA secure_delete = " + std::to_string(m_before));
    } catch (const CDbError&) {
        // Then it stays on, which only takes time.
    }
}

void CreateJournal(CDbBase& database, const std::vector<JournalledTable>& tables, const std::string& identity,
                   const std::string& journal, bool former) {
    const CSecureDeletion secure(database);
    for (const char* const name : Journalled) {
        DropTable(database, std::string("Aux_") + name);
    }
    for (const char* const name : {"Aux_Journal", "Aux_Step", "Aux_Picture"}) {
        DropTable(database, name);
    }
    database.ExecuteAsIs(
        "CREATE TABLE Aux_Journal (ID INTEGER PRIMARY KEY, Format INTEGER, Journal TEXT, "
        "Identity TEXT, Began TEXT, Former INTEGER)");
    database.ExecuteAsIs("INSERT INTO Aux_Journal VALUES (1, " + std::to_string(Format) + ", " +
                         QuotedText(journal) + ", " + QuotedText(identity) + ", now(), " +
                         (former ? "1)" : "0)"));
    database.ExecuteAsIs(
        "CREATE TABLE Aux_Step (ID INTEGER PRIMARY KEY, Name INTEGER, Time TEXT, "
        "Account TEXT, Section INTEGER, Record INTEGER, Label TEXT, Detail TEXT, "
        "Undone INTEGER, Size INTEGER)");
    // There are few, at the end, and each new step asks for them.
    database.ExecuteAsIs("CREATE INDEX Aux_StepUndone ON Aux_Step (ID) WHERE Undone = 1");
    database.ExecuteAsIs(
        "CREATE TABLE Aux_Picture (Aux_Seq INTEGER PRIMARY KEY, Path TEXT, Before TEXT, "
        "After TEXT, Move TEXT)");
    for (const JournalledTable& table : tables) {
        // Without types, so that values stay what they are.
        database.ExecuteAsIs("CREATE TABLE " + table.ImageName() +
                             " (Aux_Seq INTEGER PRIMARY KEY, Aux_Side INTEGER, Aux_Row INTEGER, " +
                             table.ColumnList() + ")");
    }
}

void CreateTriggers(CDbBase& database, const std::vector<JournalledTable>& tables) {
    for (const JournalledTable& table : tables) {
        std::string differs;
        for (const std::string& column : table.Columns) {
            differs += (differs.empty() ? " AND (" : " OR ");
            differs += "OLD." + column + " IS NOT NEW." + column + " COLLATE BINARY";
        }
        CreateTrigger(database, table, "INSERT", "",
                      InsertStep(PlaceOf(table.Name, "NEW")) + InsertImage(table, "NEW", 1));
        CreateTrigger(database, table, "UPDATE", differs + ")",
                      InsertStep(PlaceOf(table.Name, "OLD")) + InsertImage(table, "OLD", 0) +
                          InsertImage(table, "NEW", 1));
        CreateTrigger(database, table, "DELETE", "",
                      InsertStep(PlaceOf(table.Name, "OLD")) + InsertImage(table, "OLD", 0));
    }
    database.ExecuteAsIs(
        "CREATE TEMP TRIGGER Aux_Step_New AFTER INSERT ON main.Aux_Step WHEN EXISTS "
        "(SELECT 1 FROM Aux_Step WHERE Undone = 1) BEGIN " +
        DropUndone(tables) + "END");
}

bool HasTriggers(CDbBase& database) {
    return !database.ExecuteAsIs("SELECT 1 FROM sqlite_temp_master WHERE name = 'Aux_Step_New'").IsEof();
}
