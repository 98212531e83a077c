// The tables of the journal, and the triggers that fill them. Beside each table of a project whose rows are
// changed stands one with the same columns, which holds how rows were before a change and how they are after
// it:
//
//   Aux_Journal   one row: which file this journal is about
//   Aux_Step      the steps, oldest first; those that are undone come last
//   Aux_Testing, Aux_Record, Aux_Attrib
//                 images of rows; Aux_Seq is the step's number times 2^32 plus the image's, Aux_Side 0 before
//                 the change and 1 after it, Aux_Row the row's key
//   Aux_Picture   picture files of the steps, numbered in the same way; see heldpictures.h
//
// The triggers are temporary: they live as long as the connection, and nothing of them stands in the file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class CDbBase;

struct JournalledTable {
    std::string Name;
    std::vector<std::string> Columns;  // in quotation marks, as statements take them
    bool HasKeyColumn = false;         // one of them is the key
    std::string ImageName() const { return "Aux_" + Name; }
    std::string ColumnList(const std::string& prefix = {}) const;
};

// Those of them that the file has, with the columns that it has. Throws CDbError, like all that follow.
std::vector<JournalledTable> ReadJournalledTables(CDbBase& database);

bool HasTable(CDbBase& database, const std::string& name);
// The name of the journal that stands in the file, whosever it is; empty if none does.
std::string JournalOf(CDbBase& database);
// Whether the journal's tables fit the project's. Those of another version don't.
bool JournalFits(CDbBase& database, const std::vector<JournalledTable>& tables);
// While one lives, what is deleted leaves no bytes behind in the file.
class CSecureDeletion {
public:
    explicit CSecureDeletion(CDbBase& database);
    ~CSecureDeletion();
    CSecureDeletion(const CSecureDeletion&) = delete;
    CSecureDeletion& operator=(const CSecureDeletion&) = delete;

private:
    CDbBase& m_database;
    int m_before;
};
// Replaces what was there, without a trace. `identity` as by FileIdentity; `journal` is the name of the new
// one; `former` tells that there was another one, of another file.
void CreateJournal(CDbBase& database, const std::vector<JournalledTable>& tables, const std::string& identity,
                   const std::string& journal, bool former);
// They ask drovane_step(), 0 for "not now", drovane_step_name(), drovane_image() and drovane_account().
void CreateTriggers(CDbBase& database, const std::vector<JournalledTable>& tables);
bool HasTriggers(CDbBase& database);

// The images and pictures of a step have numbers from the first to before the second.
std::int64_t FirstNumber(std::int64_t step);
// "Aux_Seq >= ... AND Aux_Seq < ...".
std::string OfStep(std::int64_t step);
std::string QuotedText(const std::string& text);  // in single quotation marks
