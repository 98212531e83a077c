// What the journal costs, as ratios against the same changes without one, and how long the ways back take.
// Prints Markdown tables; exit code 1 if a limit is broken.
#include <chrono>
#include <cstdio>

#include "bench/CBenchFolder.h"
#include "bench/fieldfolder.h"
#include "bench/fillproject.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "history/CJournal.h"
#include "history/restorepoints.h"
#include "history/steps.h"
#include "store/CDbRec.h"

namespace {

constexpr int Changes = 40;

// Single changes of records, each stored by itself.
class CSingleChanges {
public:
    CSingleChanges(const std::string& path, CChangeWatches* watches) {
        std::unique_ptr<CChangeWatchesScope> scope;
        if (watches != nullptr) {
            scope = std::make_unique<CChangeWatchesScope>(*watches);
        }
        Require(m_database.OpenDatabase(path, CDbPassword) && m_database.ReadRecords(1, m_records, false),
                "open");
    }
    void Run() {
        for (int i = 0; i < Changes; ++i) {
            _REC_DATA record = m_records[i % m_records.GetSize()];
            record.Comment = "change " + std::to_string(++m_count);
            Require(m_database.UpdateRecord(record), "change");
        }
    }

private:
    CDbRec m_database;
    CRecDataArray m_records;
    int m_count = 0;
};

double Milliseconds(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

bool PrintTime(const char* what, double milliseconds, double limit) {
    const bool holds = milliseconds <= limit;
    std::printf("| %s | %.1f ms | %.0f ms | %s |\n", what, milliseconds, limit, holds ? "holds" : "BROKEN");
    return holds;
}

}  // namespace

int main() {
    const CBenchFolder folder;
    CJournals journals;
    for (const char* const name : {"bare.mdb", "kept.mdb"}) {
        FillProject(folder.MakeProject(name), 100, folder.Path("job/v.avi"),
                    [](int) { return std::string(); });
    }
    std::printf("| What | Against | Time | Peer | Ratio, median (range) | Limit | |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    bool allHold = true;
    {
        CSingleChanges kept(folder.Path("db/kept.mdb"), &journals);
        CSingleChanges bare(folder.Path("db/bare.mdb"), nullptr);
        allHold = PrintRatio({"40 single changes, each stored with its step", "the same without a journal",
                              1.3, 25, [&] { kept.Run(); }, [&] { bare.Run(); }}) &&
                  allHold;
    }
    MakeFieldFolder(folder, "two", 2000);
    const auto imported = [&](CChangeWatches* watches) {
        return [&, watches] {
            std::unique_ptr<CChangeWatchesScope> scope;
            if (watches != nullptr) {
                scope = std::make_unique<CChangeWatchesScope>(*watches);
            }
            Import(folder, "two")();
        };
    };
    allHold =
        PrintRatio({"Import of 2,000 items with its step", "the same without a journal", 1.2, 9,
                    imported(&journals), imported(nullptr), EmptyProject(folder), EmptyProject(folder)}) &&
        allHold;

    std::printf("\n| What | Time | Limit | |\n|---|---|---|---|\n");
    const std::string big = folder.MakeProject("big.mdb");
    FillProject(big, 10000, folder.Path("job/v.avi"),
                [&](int i) { return folder.Path("job/" + std::to_string(i)); });
    const CChangeWatchesScope scope(journals);
    EmptyProject(folder)();
    Import(folder, "two")();
    {
        CDbRec database;
        Require(database.OpenDatabase(folder.Path("db/import.mdb"), CDbPassword), "open");
        const double undo =
            Milliseconds([&] { Require(UndoSteps(database).Result == StepResult::Outcome::Done, "undo"); });
        allHold = PrintTime("Undo of that import", undo, 300) && allHold;
        const double redo =
            Milliseconds([&] { Require(RedoSteps(database).Result == StepResult::Outcome::Done, "redo"); });
        allHold = PrintTime("Redo of it", redo, 300) && allHold;
    }
    CDbRec database;
    Require(database.OpenDatabase(big, CDbPassword), "open");
    const double point = Milliseconds([&] { Require(MakeRestorePoint(database, PointImport), "point"); });
    allHold = PrintTime("Restore point of 10,000 sections, 100,000 records", point, 1500) && allHold;
    return allHold ? 0 : 1;
}
