// Speed of the section list, as a ratio against reading what it shows. Prints a Markdown table; exit code 1
// if the limit is broken.
#include <QApplication>
#include <cstdio>
#include <cstdlib>

#include "bench/CBenchFolder.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "lists/CTestingList.h"
#include "shell/dialogs/theme.h"
#include "store/CDbRec.h"

namespace {

constexpr int Sections = 10000;

void FillProject(CDbRec& database) {
    CDbBatch batch(database);
    for (int s = 0; s < Sections; ++s) {
        const std::string number = std::to_string(s);
        _TESTING_DATA section;
        section.TestingName = "污水管 " + number;
        section.StartWell = "WS" + number;
        section.EndWell = "WS" + std::to_string(s + 1);
        section.TaskName = "东环路管网检测";
        section.TestingDirection = "顺流";
        section.PipeLength = "50.5";
        section.PipeDiameter = "800";
        section.PipeMaterial = "钢筋混凝土管";
        section.PipeType = "污水";
        section.VideoFileList = "D:\\Works\\" + number + "\\v.avi";
        Require(database.AddTesting(section), "add a section");
        if (s % 2 == 0) {
            _REC_DATA record;
            record.TestingID = database.LastInsertId();
            record.DefectCode = "PL";
            Require(database.AddRecord(record), "add a record");
        }
    }
    batch.Commit();
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    ApplyTheme(application);
    const CBenchFolder folder;
    CDbRec database;
    Require(database.OpenDatabase(folder.MakeProject("big.mdb"), CDbPassword), "open");
    FillProject(database);

    CTestingList list;
    list.CreateColumns(false);
    list.resize(1000, 600);
    list.show();

    std::printf("| What | Against | Time | Peer | Ratio, median (range) | Limit | |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    const bool holds = PrintRatio(
        {"Fill the section list with 10,000 sections and their record counts, until it is drawn",
         "reading the same through CDbRec", 1.5, 15,
         [&] {
             Require(list.Fill(database) && list.RowCount() == Sections, "fill");
             list.RebuildHasDefects();
             list.SelectRow(Sections / 2);
             list.repaint();
             list.viewport()->repaint();
         },
         [&] {
             CTestingDataArray sections;
             std::unordered_map<std::int32_t, std::int32_t> counts;
             Require(database.ReadTestings(sections) && database.CountRecordsBySection(counts), "read");
         }});
    return holds ? 0 : 1;
}
