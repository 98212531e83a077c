// What work on many rows costs: a filter at each key press over 20,000 records, with both lists that show it;
// the import of 300 field folders against that of one; a change of 2,000 sections. Prints Markdown tables;
// exit code 1 if a limit is broken.
#include <QApplication>
#include <clocale>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/CBenchFolder.h"
#include "bench/fieldfolder.h"
#include "bench/fillproject.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "bulk/CQueryRows.h"
#include "bulk/dialogs/CAllDefects.h"
#include "bulk/edits.h"
#include "bulk/jobimport.h"
#include "history/CJournal.h"
#include "lists/CTestingList.h"
#include "shell/CProgress.h"
#include "shell/dialogs/theme.h"
#include "store/CDbRec.h"

namespace {

constexpr int Sections = 2'000;
constexpr int Folders = 300;
constexpr int ItemsAFolder = 10;
constexpr int Rounds = 5;

bool PrintLimit(const char* what, double value, double limit, const char* unit) {
    std::printf("| %s | %.2f %s | %.1f %s | %s |\n", what, value, unit, limit, unit,
                value <= limit ? "holds" : "BROKEN");
    std::fflush(stdout);
    return value <= limit;
}

// The slowest of all key presses, each as the median of some rounds.
double WorstKey(CDbRec& database) {
    CQueryRows rows;
    CTestingList sections;
    CAllDefects records;
    sections.CreateColumns(false);
    sections.resize(1200, 300);
    records.resize(700, 300);
    Require(sections.Fill(database) && rows.Read(database), "read");
    records.Show(database, rows);
    sections.show();
    records.show();
    QApplication::processEvents();
    double worst = 0.0;
    for (const std::string query : {"grade>=3 code:PL", "Y1234", "no picture", "-code:PL distance<4"}) {
        for (std::size_t typed = 1; typed <= query.size(); ++typed) {
            std::vector<double> times;
            for (int round = 0; round < Rounds; ++round) {
                times.push_back(MillisecondsOf([&] {
                    const CQueryRows::Hits hits = rows.Find(ParseQuery(query.substr(0, typed)));
                    sections.ShowOnly({hits.Sections.begin(), hits.Sections.end()});
                    records.ShowOnly({hits.Records.begin(), hits.Records.end()});
                    QApplication::processEvents();
                }));
            }
            worst = std::max(worst, MedianOf(times));
        }
    }
    return worst;
}

// Field folders of sections with manholes of their own.
std::vector<std::string> MakeFolders(const CBenchFolder& folder) {
    MakeFieldFolder(folder, "field", ItemsAFolder);
    std::ifstream in(folder.Host("field/d.xml"));
    const std::string description{std::istreambuf_iterator<char>(in), {}};
    std::vector<std::string> files;
    for (int i = 0; i < Folders; ++i) {
        const std::string name = "job/" + std::to_string(i);
        std::filesystem::create_directories(folder.Host(name));
        for (int item = 0; item < ItemsAFolder; ++item) {
            const std::string picture = "/" + std::to_string(item) + ".jpg";
            std::filesystem::copy_file(folder.Host("field" + picture), folder.Host(name + picture));
        }
        std::string own = description;
        const std::string well = "<osd5 value=\"";
        own.insert(own.find(well) + well.size(), "S" + std::to_string(i) + "-");
        std::ofstream(folder.Host(name + "/d.xml")) << own;
        files.push_back(folder.Path(name + "/d.xml"));
    }
    return files;
}

double ImportTime(const CBenchFolder& folder, const std::vector<std::string>& files) {
    static int number = 0;
    CDbRec database;
    Require(database.OpenDatabase(folder.MakeProject("i" + std::to_string(number++) + ".mdb"), CDbPassword),
            "open");
    CProgress silent;
    return MillisecondsOf([&] {
        Require(ImportJob(database, files, silent).Taken == static_cast<int>(files.size()), "import");
    });
}

double BulkEditTime(CDbRec& database, int round) {
    CTestingDataArray sections;
    Require(database.ReadTestings(sections), "read");
    std::vector<const _TESTING_DATA*> chosen;
    for (const _TESTING_DATA& section : sections) {
        chosen.push_back(&section);
    }
    return MillisecondsOf([&] {
        const SectionPlan plan =
            PlanSectionEdits(chosen, {{"Tester", "陆听禾" + std::to_string(round)}, {"TaskName", "一标"}});
        Require(ApplyEdits(database, plan.Edits), "edit");
    });
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    ApplyTheme(application);
    const CBenchFolder folder;
    CJournals journals;
    const CChangeWatchesScope scope(journals);
    const std::string project = folder.MakeProject("rows.mdb");
    FillProject(project, Sections, folder.Path("v.avi"), [](int) { return std::string(); });
    CDbRec database;
    Require(database.OpenDatabase(project, CDbPassword), "open");

    std::printf("| Operation | Time | Limit | |\n|---|---|---|---|\n");
    bool holds = PrintLimit("Filter of 20,000 records, slowest key", WorstKey(database), 30.0, "ms");
    std::vector<double> edits;
    for (int round = 0; round < Rounds; ++round) {
        edits.push_back(BulkEditTime(database, round));
    }
    holds = PrintLimit("Change of 2,000 sections, two fields", MedianOf(edits), 1000.0, "ms") && holds;

    const std::vector<std::string> files = MakeFolders(folder);
    std::vector<double> ratios;
    for (int round = 0; round < Rounds; ++round) {
        std::vector<double> ones;
        for (int one = 0; one < 20; ++one) {
            ones.push_back(ImportTime(folder, {files[static_cast<std::size_t>(one)]}));
        }
        ratios.push_back(ImportTime(folder, files) / (Folders * MedianOf(ones)));
    }
    return PrintLimit("Import of 300 folders, against 300 times one", MedianOf(ratios), 1.2, "times") && holds
               ? 0
               : 1;
}
