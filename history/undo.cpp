#include "history/undo.h"

#include <algorithm>
#include <map>
#include <vector>

#include "history/CJournal.h"
#include "history/heldpictures.h"
#include "shell/CHostFiles.h"
#include "shell/failures.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"

namespace {

constexpr int MessageRowChanged = 3367;      // section, record or project
constexpr int MessageRecordsWithout = 3368;  // its sections have got records
constexpr int MessagePictureGone = 3369;
constexpr int MessagePictureThere = 3370;
constexpr int MessagePictureKept = 3371;

struct Unfit {
    std::string Why;
};

// The pictures of one path in a step: what it was before the first row of them, and after the last.
struct PathChange {
    std::string Path;
    std::string FirstSeq, Before;
    std::string LastSeq, After;
};

// What the images of a step say about rows of one table.
class CTableStep {
public:
    CTableStep(CDbRec& database, const JournalledTable& table, std::int64_t step, bool undo)
        : m_database(database), m_table(table), m_of(OfStep(step)), m_undo(undo) {}

    bool IsEmpty() {
        return m_database.ExecuteAsIs("SELECT 1 FROM " + m_table.ImageName() + " WHERE " + m_of + " LIMIT 1")
            .IsEof();
    }

    // Throws Unfit where the rows aren't what the step left.
    void Check() {
        std::string same;
        for (const std::string& column : m_table.Columns) {
            same += " AND r." + column + " IS e." + column + " COLLATE BINARY";
        }
        RefuseFirst("SELECT e.Aux_Row AS Row FROM " + m_table.ImageName() + " e WHERE e.Aux_Seq IN (" +
                    Images(true) + ") AND NOT EXISTS (SELECT 1 FROM " + m_table.Name +
                    " r WHERE r.rowid = e.Aux_Row" + same + ") LIMIT 1");
        RefuseFirst("SELECT r.rowid AS Row FROM " + m_table.Name + " r WHERE r.rowid IN (" + Rows() +
                    ") AND r.rowid NOT IN (SELECT Aux_Row FROM " + m_table.ImageName() +
                    " WHERE Aux_Seq IN (" + Images(true) + ")) LIMIT 1");
    }

    void Apply() {
        m_database.ExecuteAsIs("DELETE FROM " + m_table.Name + " WHERE rowid IN (" + Rows() + ")");
        const std::string key = m_table.HasKeyColumn ? "" : "rowid, ";
        const std::string row = m_table.HasKeyColumn ? "" : "Aux_Row, ";
        m_database.ExecuteAsIs("INSERT INTO " + m_table.Name + " (" + key + m_table.ColumnList() +
                               ") SELECT " + row + m_table.ColumnList() + " FROM " + m_table.ImageName() +
                               " WHERE Aux_Seq IN (" + Images(false) + ") ORDER BY Aux_Row");
    }

private:
    std::string Rows() const { return "SELECT Aux_Row FROM " + m_table.ImageName() + " WHERE " + m_of; }

    // The images of the rows as they are to be before the way is gone (`from`), or behind it: per row the
    // first image if it shows the row before the step, or the last one if it shows it after.
    std::string Images(bool from) const {
        const bool after = from == m_undo;
        return std::string("SELECT Seq FROM (SELECT ") + (after ? "max" : "min") +
               "(Aux_Seq) AS Seq, Aux_Side FROM " + m_table.ImageName() + " WHERE " + m_of +
               " GROUP BY Aux_Row) WHERE Aux_Side = " + (after ? "1" : "0");
    }

    void RefuseFirst(const std::string& selection) {
        CDbCursor row = m_database.ExecuteAsIs(selection);
        if (row.IsEof()) {
            return;
        }
        const std::string number = FormatInt(row.GetLong("Row"));
        std::string what;
        if (m_table.Name != "Attrib") {
            what = LoadMessage(m_table.Name == "Testing" ? MessageSection : MessageRecord) + " " + number;
        } else {
            what = LoadMessage(MessageProject);
        }
        throw Unfit{FillText(LoadMessage(MessageRowChanged), {what})};
    }

    static constexpr int MessageSection = 3372;
    static constexpr int MessageRecord = 3373;
    static constexpr int MessageProject = 3374;

    CDbRec& m_database;
    const JournalledTable& m_table;
    std::string m_of;
    bool m_undo;
};

std::vector<PathChange> ReadPictures(CDbRec& database, std::int64_t step) {
    std::vector<PathChange> changes;
    std::map<std::string, std::size_t> known;
    for (CDbCursor row = database.ExecuteAsIs("SELECT CAST(Aux_Seq AS TEXT) AS Seq, Path, Before, After FROM "
                                              "Aux_Picture WHERE " +
                                              OfStep(step) + " ORDER BY Aux_Seq");
         !row.IsEof(); row.MoveNext()) {
        const std::string path = row.GetText("Path");
        const auto [place, fresh] = known.try_emplace(path, changes.size());
        if (fresh) {
            changes.push_back({path, row.GetText("Seq"), row.GetText("Before"), {}, {}});
        }
        changes[place->second].LastSeq = row.GetText("Seq");
        changes[place->second].After = row.GetText("After");
    }
    return changes;
}

// Whether rows of the project name the picture.
bool IsNamed(CDbRec& database, const std::string& path) {
    const std::string text = QuotedText(path);
    return !database
                .ExecuteAsIs("SELECT 1 FROM Record WHERE Picture1 = " + text + " OR Picture2 = " + text +
                             " LIMIT 1")
                .IsEof();
}

// What has been held for a way that isn't gone after all goes again.
class CHeldForNow {
public:
    ~CHeldForNow() {
        for (const auto& [path, name] : m_names) {
            DeleteHeld(path, name);
        }
    }
    void Hold(const std::string& path, const std::string& name) {
        if (!HoldPicture(path, name)) {
            throw Unfit{
                FillText(LoadMessage(MessagePictureKept), {path, FailureText(HostFiles().LastError())})};
        }
        m_names.emplace_back(path, name);
    }
    void Keep() { m_names.clear(); }

private:
    std::vector<std::pair<std::string, std::string>> m_names;
};

class CPictureStep {
public:
    CPictureStep(CDbRec& database, const CJournal& journal, std::int64_t step, bool undo)
        : m_database(database), m_journal(journal), m_undo(undo), m_changes(ReadPictures(database, step)) {}

    bool IsEmpty() const { return m_changes.empty(); }

    void Prepare() {
        for (const PathChange& change : m_changes) {
            Prepare(change);
        }
    }

    void Keep() { m_held.Keep(); }

private:
    // With the rows as they will be.
    void Prepare(const PathChange& change) {
        const std::string& now = m_undo ? change.After : change.Before;
        const std::string& then = m_undo ? change.Before : change.After;
        const bool there = HostFiles().Exists(change.Path);
        if (IsHeldName(then) && !HostFiles().Exists(HeldPath(change.Path, then))) {
            throw Unfit{FillText(LoadMessage(MessagePictureGone), {change.Path})};
        }
        if (now == PictureAbsent && there &&
            !(IsHeldName(then) && HostFiles().HaveSameContent(change.Path, HeldPath(change.Path, then)))) {
            throw Unfit{FillText(LoadMessage(MessagePictureThere), {change.Path})};
        }
        // A picture that other records of the project show isn't the step's alone.
        if (then == PictureAbsent && there && IsNamed(m_database, change.Path)) {
            return;
        }
        std::string held = PictureAbsent;
        if (now == PictureInPlace && there) {
            held = HeldName(m_journal.Name(), change.Path);
            m_held.Hold(change.Path, held);
        }
        const std::string move = then == PictureAbsent ? (held == PictureAbsent ? "" : MoveRemove)
                                                       : (IsHeldName(then) ? then : "");
        Set(m_undo ? change.LastSeq : change.FirstSeq, m_undo ? "After" : "Before", held,
            then == PictureAbsent ? move : "");
        if (then != PictureAbsent) {
            Set(m_undo ? change.FirstSeq : change.LastSeq, m_undo ? "Before" : "After", PictureInPlace, move);
        }
    }

    void Set(const std::string& seq, const char* slot, const std::string& value, const std::string& move) {
        m_database.ExecuteAsIs(std::string("UPDATE Aux_Picture SET ") + slot + " = " + QuotedText(value) +
                               (move.empty() ? "" : ", Move = " + QuotedText(move)) +
                               " WHERE Aux_Seq = " + seq);
    }

    CDbRec& m_database;
    const CJournal& m_journal;
    bool m_undo;
    std::vector<PathChange> m_changes;
    CHeldForNow m_held;
};

// A section that goes must not leave records behind that came in some other way.
void RefuseOrphans(CDbRec& database, std::int64_t step) {
    const CDbCursor row = database.ExecuteAsIs(
        "SELECT 1 FROM Record WHERE TestingID IN (SELECT Aux_Row FROM Aux_Testing WHERE " + OfStep(step) +
        ") AND TestingID NOT IN (SELECT rowid FROM Testing) LIMIT 1");
    if (!row.IsEof()) {
        throw Unfit{LoadMessage(MessageRecordsWithout)};
    }
}

}  // namespace

StepFit TakeStep(CDbRec& database, CJournal& journal, std::int64_t step, bool undo) {
    const CJournal::CPause pause(journal);
    CPictureStep pictures(database, journal, step, undo);
    CDbBatch batch(database);
    try {
        bool sections = false;
        for (const JournalledTable& table : journal.Tables()) {
            CTableStep rows(database, table, step, undo);
            if (!rows.IsEmpty()) {
                rows.Check();
                rows.Apply();
                sections = sections || table.Name == "Testing";
            }
        }
        if (sections) {
            RefuseOrphans(database, step);
        }
        pictures.Prepare();
        database.ExecuteAsIs("UPDATE Aux_Step SET Undone = " + std::string(undo ? "1" : "0") +
                             " WHERE ID = " + std::to_string(step));
        batch.Commit();
    } catch (const Unfit& unfit) {
        batch.Discard();
        return {false, unfit.Why};
    } catch (const CDbError&) {
        batch.Discard();
        throw;
    }
    pictures.Keep();
    if (!pictures.IsEmpty()) {
        journal.FinishMoves();
    }
    return {};
}
