#include "history/CJournal.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>

#include "history/fileidentity.h"
#include "history/heldpictures.h"
#include "history/restorepoints.h"
#include "shell/CClock.h"
#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "store/CDbBase.h"
#include "store/CDbError.h"
#include "store/stepnames.h"

namespace {

constexpr std::int64_t MostSteps = 1000;
constexpr int MostDays = 90;
// A journal takes a tenth of its file, or this if that is more.
constexpr std::int64_t MostBytes = 16 << 20;
constexpr std::int64_t PageSize = 4096;

std::string Account() {
    const passwd* const entry = getpwuid(geteuid());
    return entry == nullptr ? std::to_string(geteuid()) : entry->pw_name;
}

// A path with the file's name as it is on the disk, so that it comes back under that one.
std::string PathOnDisk(std::string_view path) {
    const std::string host = HostFiles().HostPath(path);
    return GetParentFolder(path) + host.substr(host.rfind('/') + 1);
}

std::int64_t NumberIn(CDbCursor row, const char* column) {
    return row.IsEof() ? 0 : static_cast<std::int64_t>(row.GetDouble(column));
}

std::int64_t NumberOf(CDbBase& database, const std::string& statement) {
    return NumberIn(database.ExecuteAsIs(statement), "n");
}

}  // namespace

CJournal::CJournal(CDbBase& database) : m_database(database), m_account(Account()) {
    try {
        if (HasTable(m_database, "Aux_Journal") && IsOwn()) {
            FinishMoves();
        }
    } catch (const CDbError&) {
        // The project can be worked on all the same, and the next opening tries again.
    }
}

CJournal* CJournal::Of(CDbBase& database) {
    return dynamic_cast<CJournal*>(database.Watch());
}

bool CJournal::IsOwn() const {
    const CDbCursor row =
        m_database.ExecuteAsIs("SELECT 1 FROM Aux_Journal WHERE Identity = " +
                               QuotedText(FileIdentity(HostFiles().HostPath(m_database.Path()))));
    return !row.IsEof();
}

void CJournal::Create(bool former) {
    m_journal = RandomName();
    CreateJournal(m_database, m_tables, FileIdentity(HostFiles().HostPath(m_database.Path())), m_journal,
                  former);
}

void CJournal::Prepare() {
    if (m_ready &&
        (m_preparedIn == 0 || m_preparedIn == m_database.BatchSerial() || HasTriggers(m_database))) {
        m_preparedIn = m_preparedIn == m_database.BatchSerial() ? m_preparedIn : 0;
        return;
    }
    if (!m_ready) {
        m_database.Define("drovane_step", [this] { return m_paused ? 0 : m_step; });
        m_database.Define("drovane_step_name", [this] { return std::int64_t{m_name}; });
        m_database.Define("drovane_image", [this] { return NextNumber(); });
        m_database.Define("drovane_account", [this] { return m_account; });
    }
    CDbBatch batch(m_database);
    try {
        m_tables = ReadJournalledTables(m_database);
        const bool there = HasTable(m_database, "Aux_Journal");
        const bool own = there && IsOwn();
        if (!own || !JournalFits(m_database, m_tables)) {
            Create(there && !own);
        } else {
            m_journal = m_database.ExecuteAsIs("SELECT Journal FROM Aux_Journal").GetText("Journal");
        }
        m_lastStep = std::max(m_lastStep, LastNumber());
        m_thinnedAt = std::max(m_thinnedAt, m_lastStep);
        CreateTriggers(m_database, m_tables);
    } catch (const CDbError&) {
        batch.Discard();
        throw;
    }
    batch.Commit();
    m_ready = true;
    m_preparedIn = m_database.BatchSerial();
}

// Numbers of steps that are no more may still stand in the rows of pictures.
std::int64_t CJournal::LastNumber() {
    return std::max(NumberOf(m_database, "SELECT ifnull(max(ID), 0) AS n FROM Aux_Step"),
                    NumberOf(m_database, "SELECT ifnull(max(Aux_Seq) >> 32, 0) AS n FROM Aux_Picture"));
}

std::int64_t CJournal::Step() {
    if (m_step == 0) {
        m_step = ++m_lastStep;
        m_image = 0;
    }
    return m_step;
}

std::int64_t CJournal::NextNumber() {
    return FirstNumber(m_step) + ++m_image;
}

void CJournal::BeginStep(int name) {
    if (m_scopes++ == 0) {
        m_name = name;
        m_step = 0;
    }
}

void CJournal::EndStep() {
    if (m_scopes > 0 && --m_scopes == 0) {
        DropPending();
        m_step = 0;
        ThinSometimes();
    }
}

// A program that runs for weeks never closes its project.
void CJournal::ThinSometimes() {
    constexpr std::int64_t some = 256;
    if (!m_ready || m_database.BatchSerial() != 0 || m_lastStep - m_thinnedAt < some) {
        return;
    }
    m_thinnedAt = m_lastStep;
    try {
        const CPause pause(*this);
        Thin();
    } catch (const CDbError&) {
        // Nothing of the project depends on it.
    }
}

void CJournal::BeforeChange() {
    if (m_paused) {
        return;
    }
    const auto day = std::chrono::floor<std::chrono::days>(Clock().LocalNow());
    // Not while changes are pending that may be taken back.
    if (m_day != day && !(m_changed && m_database.BatchSerial() != 0)) {
        m_day = day;
        MakeDailyPoint(m_database);
    }
    Prepare();
    if (m_scopes == 0) {
        m_name = StepChange;
        m_step = 0;
    }
    (void)Step();
    m_changed = true;
}

bool CJournal::HasPending() const {
    return std::any_of(m_pending.begin(), m_pending.end(),
                       [](const Pending& entry) { return !entry.Written; });
}

void CJournal::WriteStepRow(std::int32_t section, std::int32_t record) {
    const auto one = [](const char* column, const char* table, std::int32_t id) {
        return std::string("ifnull((SELECT ") + column + " FROM " + table + " WHERE ID = " + FormatInt(id) +
               "), '')";
    };
    m_database.ExecuteAsIs(
        "INSERT INTO Aux_Step (ID, Name, Time, Account, Section, Record, Label, Detail, Undone) SELECT " +
        std::to_string(m_step) + ", " + FormatInt(m_name) + ", now(), drovane_account(), " +
        FormatInt(section) + ", " + FormatInt(record) + ", " +
        one("StartWell || ' - ' || EndWell", "Testing", section) + ", " +
        one("DefectCode || ' ' || round(DistanceStart, 2)", "Record", record) +
        ", 0 WHERE NOT EXISTS (SELECT 1 FROM Aux_Step WHERE ID = " + std::to_string(m_step) + ")");
}

void CJournal::WritePending() {
    WriteStepRow(-1, -1);
    // Whoever changes the project has carried out by now what it had to do before.
    m_database.ExecuteAsIs("UPDATE Aux_Picture SET Move = '' WHERE Move <> '' AND Aux_Seq < " +
                           std::to_string(FirstNumber(m_step)));
    for (Pending& entry : m_pending) {
        if (!entry.Written) {
            m_database.ExecuteAsIs("INSERT INTO Aux_Picture VALUES (" + std::to_string(NextNumber()) + ", " +
                                   QuotedText(entry.Path) + ", " + QuotedText(entry.Before) + ", " +
                                   QuotedText(entry.After) + ", " + QuotedText(entry.Move) + ")");
            entry.Written = true;
        }
    }
}

std::string_view CJournal::Hold(const std::vector<std::string_view>& paths) {
    Prepare();
    for (const std::string_view path : paths) {
        if (path.empty() || !HostFiles().Exists(path)) {
            continue;
        }
        SweepOrphans(path);
        Pending entry{PathOnDisk(path), HeldName(m_journal, path), PictureAbsent, MoveRemove};
        if (!HoldPicture(path, entry.Before)) {
            return path;
        }
        m_pending.push_back(std::move(entry));
    }
    return {};
}

void CJournal::NoteMade(std::string_view path) {
    if (!path.empty() && HostFiles().Exists(path)) {
        Prepare();
        m_pending.push_back({PathOnDisk(path), PictureAbsent, PictureInPlace, {}});
    }
}

bool CJournal::IsKnown(const std::string& heldName) {
    const std::string name = QuotedText(heldName);
    return !m_database
                .ExecuteAsIs("SELECT 1 FROM Aux_Picture WHERE Before = " + name + " OR After = " + name +
                             " OR Move = " + name)
                .IsEof();
}

void CJournal::DropPending() {
    for (const Pending& entry : m_pending) {
        try {
            if (IsHeldName(entry.Before) && (!entry.Written || !IsKnown(entry.Before))) {
                DeleteHeld(entry.Path, entry.Before);
            }
        } catch (const CDbError&) {
            // The batch was lost: the next sweep of the folder takes it away.
        }
    }
    m_pending.clear();
}

void CJournal::WriteStep(std::int32_t section, std::int32_t record, bool replaced) {
    if (!HasPending()) {
        return;
    }
    BeforeChange();
    CDbBatch batch(m_database);
    for (Pending& entry : m_pending) {
        if (replaced && !entry.Written && entry.Move == MoveRemove) {
            entry.After = PictureInPlace;
            entry.Move = MoveReplace;
        }
    }
    WriteStepRow(section, record);
    WritePending();
    batch.Commit();
}

void CJournal::SweepOrphans(std::string_view picture) {
    const std::string folder = HoldingFolder(picture);
    if (std::find(m_sweptFolders.begin(), m_sweptFolders.end(), folder) != m_sweptFolders.end()) {
        return;
    }
    m_sweptFolders.push_back(folder);
    for (const std::string& name : HostFiles().ListFiles(folder, "")) {
        if (name.starts_with(m_journal) && !IsKnown(name)) {
            (void)HostFiles().DeleteFile(folder + name);
        }
    }
}

void CJournal::FinishMoves() {
    struct Row {
        std::string Seq, Path, Before, After, Move;
    };
    std::vector<Row> rows;
    for (CDbCursor row =
             m_database.ExecuteAsIs("SELECT CAST(Aux_Seq AS TEXT) AS Seq, Path, Before, After, Move "
                                    "FROM Aux_Picture WHERE Move <> ''");
         !row.IsEof(); row.MoveNext()) {
        rows.push_back({row.GetText("Seq"), row.GetText("Path"), row.GetText("Before"), row.GetText("After"),
                        row.GetText("Move")});
    }
    if (rows.empty()) {
        return;
    }
    CDbBatch batch(m_database);
    for (const Row& row : rows) {
        const std::string of = " WHERE Aux_Seq = " + row.Seq;
        bool done = true;
        if (row.Move == MoveRemove) {
            done = RemoveIfHeld(row.Path, IsHeldName(row.After) ? row.After : row.Before);
        } else if (row.Move == MoveReplace &&
                   HostFiles().HaveSameContent(row.Path, HeldPath(row.Path, row.Before))) {
            // It was never replaced.
            DeleteHeld(row.Path, row.Before);
            m_database.ExecuteAsIs("DELETE FROM Aux_Picture" + of);
            continue;
        } else if (row.Move != MoveReplace) {
            done = PlaceHeld(row.Path, row.Move);
        }
        if (done) {
            m_database.ExecuteAsIs("UPDATE Aux_Picture SET Move = ''" + of);
        }
    }
    std::string images;
    for (const JournalledTable& table : ReadJournalledTables(m_database)) {
        images += " AND NOT EXISTS (SELECT 1 FROM " + table.ImageName() +
                  " WHERE Aux_Seq >= Aux_Step.ID << 32 AND Aux_Seq < (Aux_Step.ID + 1) << 32)";
    }
    m_database.ExecuteAsIs(
        "DELETE FROM Aux_Step WHERE NOT EXISTS (SELECT 1 FROM Aux_Picture WHERE Aux_Seq >= "
        "Aux_Step.ID << 32 AND Aux_Seq < (Aux_Step.ID + 1) << 32)" +
        images);
    batch.Commit();
}

void CJournal::Closing() {
    DropPending();
    m_paused = true;
    if (!m_ready || !m_changed || m_database.FileGone()) {
        return;
    }
    try {
        FinishMoves();
        Thin();
        DropGarbage();
    } catch (const CDbError&) {
        // Nothing of the project depends on it.
    }
}

void CJournal::Forget() {
    Prepare();
    DropPending();
    FinishMoves();
    const CSecureDeletion secure(m_database);
    CDbBatch batch(m_database);
    struct Held {
        std::string Path, Name;
    };
    std::vector<Held> held;
    for (CDbCursor row = m_database.ExecuteAsIs("SELECT Path, Before, After FROM Aux_Picture"); !row.IsEof();
         row.MoveNext()) {
        for (const char* const slot : {"Before", "After"}) {
            if (std::string name = row.GetText(slot); IsHeldName(name)) {
                held.push_back({row.GetText("Path"), std::move(name)});
            }
        }
    }
    for (const std::string& name : {std::string("Aux_Step"), std::string("Aux_Picture")}) {
        m_database.ExecuteAsIs("DELETE FROM " + name);
    }
    for (const JournalledTable& table : m_tables) {
        m_database.ExecuteAsIs("DELETE FROM " + table.ImageName());
    }
    m_database.ExecuteAsIs("UPDATE Aux_Journal SET Began = now(), Former = 0");
    batch.Commit();
    for (const Held& file : held) {
        DeleteHeld(file.Path, file.Name);
    }
}

// Pictures of steps that are no more. What a restore point names stays.
void CJournal::DropGarbage() {
    struct Row {
        std::string Seq, Path, Before, After;
    };
    std::vector<Row> rows;
    for (CDbCursor row =
             m_database.ExecuteAsIs("SELECT CAST(Aux_Seq AS TEXT) AS Seq, Path, Before, After FROM "
                                    "Aux_Picture WHERE Aux_Seq >> 32 NOT IN (SELECT ID FROM "
                                    "Aux_Step)");
         !row.IsEof(); row.MoveNext()) {
        rows.push_back(
            {row.GetText("Seq"), row.GetText("Path"), row.GetText("Before"), row.GetText("After")});
    }
    if (rows.empty()) {
        return;
    }
    CPointPictures named(m_database.Path(), m_journal);
    CDbBatch batch(m_database);
    std::vector<Row> dropped;
    for (Row& row : rows) {
        const bool kept = (IsHeldName(row.Before) || IsHeldName(row.After)) && named.Contains(row.Path);
        if (!kept) {
            m_database.ExecuteAsIs("DELETE FROM Aux_Picture WHERE Aux_Seq = " + row.Seq);
            dropped.push_back(std::move(row));
        }
    }
    batch.Commit();
    for (const Row& row : dropped) {
        for (const std::string& slot : {row.Before, row.After}) {
            if (IsHeldName(slot)) {
                DeleteHeld(row.Path, slot);
            }
        }
    }
}

// The oldest go, never one in the midst: the chain stays whole.
void CJournal::Thin() {
    std::string size;
    for (const JournalledTable& table : m_tables) {
        std::string lengths;
        for (const std::string& column : table.Columns) {
            lengths += " + ifnull(length(" + column + "), 0)";
        }
        const std::string overhead = std::to_string(8 + 2 * table.Columns.size());
        size += " + (SELECT ifnull(sum(" + overhead + lengths + "), 0) FROM " + table.ImageName() +
                " WHERE Aux_Seq >= Aux_Step.ID << 32 AND Aux_Seq < (Aux_Step.ID + 1) << 32)";
    }
    const std::int64_t pages = NumberIn(m_database.ExecuteAsIs("PRAGMA page_count"), "page_count");
    const std::int64_t most = std::max(MostBytes, pages * PageSize / 10);
    // The newest step always stays, however large.
    const std::int64_t newest = NumberOf(m_database, "SELECT ifnull(max(ID), 0) AS n FROM Aux_Step");
    std::int64_t last = NumberOf(
        m_database,
        "SELECT ifnull(max(ID), 0) AS n FROM Aux_Step WHERE ID <= (SELECT ID FROM Aux_Step "
        "ORDER BY ID DESC LIMIT 1 OFFSET " +
            std::to_string(MostSteps) + ") OR Time < datetime(now(), '-" + FormatInt(MostDays) + " days')");
    constexpr std::int64_t unmeasured = 64;
    CDbBatch batch(m_database);
    if (NumberOf(m_database, "SELECT count(*) AS n FROM Aux_Step WHERE Size IS NULL") >= unmeasured) {
        m_database.ExecuteAsIs("UPDATE Aux_Step SET Size = 0" + size + " WHERE Size IS NULL");
    }
    std::int64_t bytes = 0;
    for (CDbCursor row = m_database.ExecuteAsIs("SELECT ID, ifnull(Size, 0" + size +
                                                ") AS Bytes FROM Aux_Step ORDER BY ID DESC");
         !row.IsEof(); row.MoveNext()) {
        bytes += static_cast<std::int64_t>(row.GetDouble("Bytes"));
        if (bytes > most) {
            last = std::max(last, std::int64_t{row.GetLong("ID")});
            break;
        }
    }
    last = std::min(last, newest - 1);
    if (last > 0 && NumberOf(m_database, "SELECT ifnull(min(ID), 0) AS n FROM Aux_Step") <= last) {
        const std::string limit = std::to_string(FirstNumber(last + 1));
        for (const JournalledTable& table : m_tables) {
            m_database.ExecuteAsIs("DELETE FROM " + table.ImageName() + " WHERE Aux_Seq < " + limit);
        }
        m_database.ExecuteAsIs("DELETE FROM Aux_Step WHERE ID <= " + std::to_string(last));
    }
    batch.Commit();
}

std::unique_ptr<CChangeWatch> CJournals::Watch(CDbBase& database) {
    return std::make_unique<CJournal>(database);
}
