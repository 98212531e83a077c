// The journal of one open project: what this program changes there is written down in the project itself, in
// the same transaction as the change. Triggers of the connection take images of the rows, so that no
// operation can forget to; operations only say which changes are one step, and its name.
//
// The journal is about one file. In a copy of it, and where the project's tables have got other columns, it
// begins anew with the first change.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "history/journaltables.h"
#include "store/CChangeWatch.h"

class CJournal : public CChangeWatch {
public:
    // Finishes what a crash left half done with pictures. Throws nothing.
    explicit CJournal(CDbBase& database);
    // Null if nobody keeps one, as of what is open for reading only.
    static CJournal* Of(CDbBase& database);

    void Closing() override;
    void BeginStep(int name) override;
    void EndStep() override;
    void BeforeChange() override;
    bool HasPending() const override;
    void WritePending() override;
    std::string_view Hold(const std::vector<std::string_view>& paths) override;
    void NoteMade(std::string_view path) override;
    void DropPending() override;
    void WriteStep(std::int32_t section, std::int32_t record, bool replaced) override;

    // For who puts rows back. All throw CDbError.
    void Prepare();  // tables and triggers are there afterwards
    const std::string& Name() const { return m_journal; }
    const std::vector<JournalledTable>& Tables() const { return m_tables; }
    // While one lives, changes aren't written down.
    class CPause {
    public:
        explicit CPause(CJournal& journal) : m_journal(journal) { m_journal.m_paused = true; }
        ~CPause() { m_journal.m_paused = false; }
        CPause(const CPause&) = delete;
        CPause& operator=(const CPause&) = delete;

    private:
        CJournal& m_journal;
    };
    // The moves of picture files that Aux_Picture tells.
    void FinishMoves();
    // Whether the tables in the file are those of this file's journal.
    bool IsOwn() const;
    // Empties it and begins anew.
    void Forget();

private:
    struct Pending {
        std::string Path;
        std::string Before;
        std::string After;
        std::string Move;
        bool Written = false;
    };

    void Create(bool former);
    std::int64_t Step();
    std::int64_t NextNumber();
    std::int64_t LastNumber();
    void WriteStepRow(std::int32_t section, std::int32_t record);
    bool IsKnown(const std::string& heldName);
    void SweepOrphans(std::string_view picture);
    void DropGarbage();
    void Thin();
    void ThinSometimes();

    CDbBase& m_database;
    std::vector<JournalledTable> m_tables;
    std::string m_journal;
    std::string m_account;
    bool m_ready = false;
    std::uint64_t m_preparedIn = 0;  // the batch, which may be taken back; 0 for none
    bool m_paused = false;
    bool m_changed = false;
    std::chrono::local_days m_day{};  // of the last restore point asked for
    int m_scopes = 0;
    int m_name = 0;
    std::int64_t m_step = 0;  // of the changes that come; 0 until the first of them
    std::int64_t m_lastStep = 0;
    std::int64_t m_thinnedAt = 0;  // the last step then
    std::int64_t m_image = 0;      // the last number within the step
    std::vector<Pending> m_pending;
    std::vector<std::string> m_sweptFolders;
};

// Installed by programs: every project that is opened to work on has a journal.
class CJournals : public CChangeWatches {
public:
    std::unique_ptr<CChangeWatch> Watch(CDbBase& database) override;
};
