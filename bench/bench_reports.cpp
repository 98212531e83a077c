// Speed of reports. Prints a Markdown table; exit code 1 if a limit is broken.
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "bench/CBenchFolder.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "reports/CRecExport.h"
#include "reports/collectreport.h"

namespace {

constexpr int LargeSections = 2000;
constexpr int SmallSections = 1000;
constexpr int RecordsASection = 10;
constexpr double MostMilliseconds = 2000.0;

std::string FillProject(const CBenchFolder& folder, const std::string& name, int sections) {
    const std::string path = folder.MakeProject(name);
    CDbRec database;
    Require(database.OpenDatabase(path, CDbPassword), "open");
    CDbBatch batch(database);
    constexpr const char* codes[] = {"PL", "BX", "CJ", "JG", "SG", "TJ", "CK", "ZW"};
    for (int s = 0; s < sections; ++s) {
        _TESTING_DATA section;
        section.TestingName = "污水管 " + std::to_string(s);
        section.StartWell = "WS" + std::to_string(s);
        section.EndWell = "WS" + std::to_string(s + 1);
        section.VideoFileList = "\\job\\v.avi";
        section.Location = "示范路";
        section.PipeLength = "50.0";
        section.PipeDiameter = "800";
        section.PipeMaterial = "钢筋混凝土管";
        section.TestingDate = "2026/03/14 09:26:53";
        Require(database.AddTesting(section), "add a section");
        const std::int32_t id = database.LastInsertId();
        for (int r = 0; r < RecordsASection; ++r) {
            _REC_DATA record;
            record.TestingID = id;
            record.DefectCode = codes[(s + r) % 8];
            record.DefectType = database.GetDefectType(record.DefectCode);
            record.DefectLevel = static_cast<std::uint8_t>(1 + r % 4);
            record.DistanceStart = static_cast<float>(r) * 4.3F;
            record.DistanceEnd = record.DistanceStart + 0.5F;
            record.DirectionStart = 3;
            record.DirectionEnd = 9;
            record.Comment = "接口处渗水，建议修复";
            Require(database.AddRecord(record), "add a record");
        }
    }
    batch.Commit();
    return path;
}

// From the file of the project to the file of the data set.
std::function<void()> WriteDataset(const CBenchFolder& folder, const std::string& path, int sections) {
    return [&folder, path, sections] {
        CRecExport database;
        Require(database.OpenDatabase(path, CDbPassword), "open");
        CArrID ids;
        for (int id = 1; id <= sections; ++id) {
            ids.push_back(static_cast<std::uint32_t>(id));
        }
        ReportLists lists;
        _PRO_DATA project;
        Require(database.ReadAttrib(project), "read");
        Require(CollectReport(database, project.CriterionName, ids, 10.0F, 0.0F, lists), "collect");
        Require(database.SaveReport(folder.Path("config.xml")), "save");
    };
}

}  // namespace

int main() {
    const CBenchFolder folder;
    const auto large = WriteDataset(folder, FillProject(folder, "large.mdb", LargeSections), LargeSections);
    const auto small = WriteDataset(folder, FillProject(folder, "small.mdb", SmallSections), SmallSections);

    std::printf("| What | Against | Time | Peer | Ratio, median (range) | Limit | |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    bool holds = PrintRatio(
        {"Data set of 2,000 sections, 20,000 records, from file to file", "of 1,000", 2.3, 9, large, small});
    // Of the processor, which other work on the machine doesn't lengthen.
    std::vector<double> times;
    for (int i = 0; i < 5; ++i) {
        const std::clock_t begin = std::clock();
        large();
        times.push_back(1000.0 * static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
    }
    const double time = MedianOf(times);
    std::printf("| The first again, time of the processor | 2 s | %.2f ms | | | 2 s | %s |\n", time,
                time < MostMilliseconds ? "holds" : "BROKEN");
    holds = holds && time < MostMilliseconds;
    return holds ? 0 : 1;
}
