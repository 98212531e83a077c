#include "history/comparison.h"

#include <map>

#include "history/journaltables.h"
#include "history/restorepoints.h"
#include "shell/CPrompts.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/stepnames.h"

namespace {

constexpr int MessageNotTakenBack = 3383;
constexpr int MessageOtherSection = 3384;

// An unquoted name of a column.
std::string NameOf(const std::string& column) {
    return column.substr(1, column.size() - 2);
}

const char* LabelOf(const std::string& table) {
    if (table == "Testing") {
        return "r.StartWell || ' - ' || r.EndWell";
    }
    return table == "Record" ? "r.DefectCode || ' ' || round(r.DistanceStart, 2) || ' m'" : "''";
}

const char* OwnerOf(const std::string& table) {
    if (table == "Testing") {
        return "r.rowid";
    }
    return table == "Record" ? "r.TestingID" : "-1";
}

class CComparison {
public:
    explicit CComparison(CDbRec& database) : m_database(database) {}

    std::vector<SectionDifference> Run() {
        for (const JournalledTable& table : ReadJournalledTables(m_database)) {
            Compare(table);
        }
        std::vector<SectionDifference> list;
        for (auto& [section, difference] : m_sections) {
            difference.Section = section;
            difference.Label = SectionLabel(section);
            list.push_back(std::move(difference));
        }
        return list;
    }

private:
    void Compare(const JournalledTable& table) {
        const std::string selection = std::string("SELECT r.rowid AS Row, ") + OwnerOf(table.Name) +
                                      " AS Owner, ifnull(" + LabelOf(table.Name) + ", '') AS Label FROM ";
        const auto missing = [&](const char* in, const char* from) {
            return selection + in + "." + table.Name + " r WHERE r.rowid NOT IN (SELECT rowid FROM " + from +
                   "." + table.Name + ") ORDER BY r.rowid";
        };
        Add(table, missing("other", "main"), RowChange::Removed);
        Add(table, missing("main", "other"), RowChange::Added);
        std::string differs;
        for (const std::string& column : table.Columns) {
            differs += (differs.empty() ? "" : " OR ");
            differs += "r." + column + " IS NOT o." + column + " COLLATE BINARY";
        }
        Add(table,
            selection + "main." + table.Name + " r JOIN other." + table.Name +
                " o ON o.rowid = r.rowid WHERE " + differs + " ORDER BY r.rowid",
            RowChange::Changed);
    }

    void Add(const JournalledTable& table, const std::string& selection, RowChange change) {
        for (CDbCursor row = m_database.ExecuteAsIs(selection); !row.IsEof(); row.MoveNext()) {
            RowDifference difference;
            difference.Change = change;
            difference.Section = row.GetLong("Owner");
            difference.Label = row.GetText("Label");
            const std::int32_t id = row.GetLong("Row");
            if (table.Name == "Record") {
                difference.Record = id;
            }
            if (change == RowChange::Changed) {
                ReadFields(table, id, difference.Fields);
            }
            m_sections[difference.Section].Rows.push_back(std::move(difference));
        }
    }

    void ReadFields(const JournalledTable& table, std::int32_t id, std::vector<FieldDifference>& fields) {
        struct Names {
            std::string Differs, Then, Now;
        };
        std::vector<Names> names;  // they must outlive the cursor
        std::string columns;
        for (const std::string& column : table.Columns) {
            const std::string number = std::to_string(names.size());
            const Names& name = names.emplace_back(Names{"d" + number, "t" + number, "n" + number});
            columns += (columns.empty() ? "" : ", ");
            columns += "r." + column + " IS NOT o." + column + " COLLATE BINARY AS " + name.Differs +
                       ", ifnull(o." + column + ", '') || '' AS " + name.Then + ", ifnull(r." + column +
                       ", '') || '' AS " + name.Now;
        }
        CDbCursor row =
            m_database.ExecuteAsIs("SELECT " + columns + " FROM main." + table.Name + " r JOIN other." +
                                   table.Name + " o ON o.rowid = r.rowid WHERE r.rowid = " + FormatInt(id));
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (row.GetLong(names[i].Differs) != 0) {
                fields.push_back(
                    {NameOf(table.Columns[i]), row.GetText(names[i].Then), row.GetText(names[i].Now)});
            }
        }
    }

    std::string SectionLabel(std::int32_t section) {
        for (const char* const in : {"main", "other"}) {
            CDbCursor row = m_database.ExecuteAsIs(
                std::string("SELECT ifnull(StartWell || ' - ' || EndWell, '') AS Label FROM ") + in +
                ".Testing WHERE rowid = " + FormatInt(section));
            if (!row.IsEof()) {
                return row.GetText("Label");
            }
        }
        return {};
    }

    CDbRec& m_database;
    std::map<std::int32_t, SectionDifference> m_sections;
};

// Where a row of the point can't come back since another section has it now.
bool IsTakenElsewhere(CDbRec& database, const std::string& section) {
    return !database
                .ExecuteAsIs(
                    "SELECT 1 FROM main.Record r WHERE r.rowid IN (SELECT rowid FROM other.Record WHERE "
                    "TestingID = " +
                    section + ") AND r.TestingID <> " + section + " LIMIT 1")
                .IsEof();
}

// Only rows that differ go and come, so that the step tells what was changed.
void Replace(CDbRec& database, const JournalledTable& table, const std::string& key,
             const std::string& section) {
    const std::string columns = table.ColumnList();
    const std::string where = " WHERE " + key + " = " + section;
    std::string same;
    for (const std::string& column : table.Columns) {
        same += " AND o." + column + " IS r." + column + " COLLATE BINARY";
    }
    const auto unlike = [&](const char* in, const char* from) {
        return "SELECT r.rowid FROM " + std::string(in) + "." + table.Name + " r WHERE r." + key + " = " +
               section + " AND NOT EXISTS (SELECT 1 FROM " + from + "." + table.Name +
               " o WHERE o.rowid = r.rowid" + same + ")";
    };
    database.ExecuteAsIs("DELETE FROM main." + table.Name + " WHERE rowid IN (" + unlike("main", "other") +
                         ")");
    const std::string rowid = table.HasKeyColumn ? "" : "rowid, ";
    database.ExecuteAsIs("INSERT INTO main." + table.Name + " (" + rowid + columns + ") SELECT " + rowid +
                         columns + " FROM other." + table.Name + where +
                         " AND rowid NOT IN (SELECT rowid FROM main." + table.Name + ") ORDER BY rowid");
}

}  // namespace

std::vector<SectionDifference> CompareWithPoint(CDbRec& database, std::string_view pointPath) {
    const CDbBase::COther other(database, pointPath);
    return CComparison(database).Run();
}

bool TakeBackSection(CDbRec& database, std::string_view pointPath, std::int32_t section) {
    if (!MakeRestorePoint(database, PointRestore)) {
        return false;
    }
    const std::string id = FormatInt(section);
    try {
        const CDbStep step(database, StepTakeBack);
        {
            const CDbBase::COther other(database, pointPath);
            if (IsTakenElsewhere(database, id)) {
                ShowMessage(MessageNotTakenBack, "\r\n" + LoadMessage(MessageOtherSection));
                return false;
            }
            if (CChangeWatch* const watch = database.Watch()) {
                watch->BeforeChange();
            }
            CDbBatch batch(database);
            try {
                for (const JournalledTable& table : ReadJournalledTables(database)) {
                    if (table.Name != "Attrib") {
                        Replace(database, table, table.Name == "Testing" ? "ID" : "TestingID", id);
                    }
                }
                batch.Commit();
            } catch (const CDbError&) {
                batch.Discard();
                throw;
            }
        }
        (void)BringBackPictures(database, database);
        return true;
    } catch (const CDbError& error) {
        ShowFailure(MessageNotTakenBack, error);
        return false;
    }
}
