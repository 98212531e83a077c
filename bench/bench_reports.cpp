// Speed of reports. Prints a Markdown table; exit code 1 if a limit is broken.
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "bench/CBenchFolder.h"
#include "bench/fillproject.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "reports/CRecExport.h"
#include "reports/collectreport.h"

namespace {

constexpr int LargeSections = 2000;
constexpr int SmallSections = 1000;
constexpr double MostMilliseconds = 2000.0;

std::string MakeProject(const CBenchFolder& folder, const std::string& name, int sections) {
    const std::string path = folder.MakeProject(name);
    FillProject(path, sections, "\\job\\v.avi", [](int) { return std::string(); });
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
    const auto large = WriteDataset(folder, MakeProject(folder, "large.mdb", LargeSections), LargeSections);
    const auto small = WriteDataset(folder, MakeProject(folder, "small.mdb", SmallSections), SmallSections);

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
