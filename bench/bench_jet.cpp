// Speed of taking over a file of the older engine, as a ratio against the program mdb-export (Debian package
// mdbtools) on the same tables. Prints a Markdown table; exit code 1 if a limit is broken. Needs the files
// that DROVANE_JET_FIXTURES names, or ../shared/fixtures/jet beside the source folder.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "bench/CBenchFolder.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "oldfiles/jetconversion.h"
#include "shell/paths.h"
#include "store/CDbBase.h"
#include "store/catalogue.h"

namespace {

namespace fs = std::filesystem;

fs::path Fixture() {
    const char* named = std::getenv("DROVANE_JET_FIXTURES");
    const fs::path folder =
        named != nullptr ? fs::path(named) : fs::path(DROVANE_SOURCE_FOLDER) / "../shared/fixtures/jet";
    return folder / "big_project.mdb";
}

std::string ExportCommand(const fs::path& fixture) {
    std::string command;
    for (const char* table : {"Attrib", "Testing", "Record", "DefectName", "DefectLevel"}) {
        command += "mdb-export '" + fixture.string() + "' " + table + " >/dev/null && ";
    }
    return command + "true";
}

}  // namespace

int main() {
    const fs::path fixture = Fixture();
    if (!fs::exists(fixture) || std::system("mdb-export 2>/dev/null; test $? -ne 127") != 0) {
        std::fprintf(stderr, "needs big_project.mdb (set DROVANE_JET_FIXTURES) and the program mdb-export\n");
        return 2;
    }
    constexpr double mostMilliseconds = 2000;
    const CBenchFolder folder;
    const std::string path = folder.Path("db/p.mdb");
    const std::string exporting = ExportCommand(fixture);
    const auto fresh = [&] {
        fs::remove(folder.Host("db/p.mdb.jet"));
        fs::copy_file(fixture, folder.Host("db/p.mdb"), fs::copy_options::overwrite_existing);
        fs::permissions(folder.Host("db/p.mdb"), fs::perms{0644});
    };
    double longest = 0;
    const auto convert = [&] {
        longest =
            std::max(longest, MillisecondsOf([&] { Require(ConvertInPlace(path, CDbPassword), "convert"); }));
    };
    const auto list = [&] {
        ProjectListing listing;
        FillProjects(GetDbFolder(), {}, listing);
        Require(listing.Rows.size() == 1 && listing.Rows[0].RecordCount == 20000, "list");
    };
    std::printf("| What | Against | Time | Peer | Ratio, median (range) | Limit | |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    const std::string peer = "mdb-export of the five tables to /dev/null";
    bool allHold =
        PrintRatio({"Convert 2,000 sections, 20,000 records in place, flushed", peer, 3.0, 21, convert,
                    [&] { Require(std::system(exporting.c_str()) == 0, "export"); }, fresh});
    std::printf("| The longest of these | 2 s | %.2f ms | | | %.0f ms | %s |\n", longest, mostMilliseconds,
                longest <= mostMilliseconds ? "holds" : "BROKEN");
    allHold = allHold && longest <= mostMilliseconds;
    // Each time a file that hasn't been seen: its time differs.
    allHold = PrintRatio({"List the same file as it is, first time", peer, 2.0, 21, list,
                          [&] { Require(std::system(exporting.c_str()) == 0, "export"); }, fresh}) &&
              allHold;
    allHold =
        PrintRatio({"List it once more", "the first time", 0.05, 21, list, list, [] {}, fresh}) && allHold;
    return allHold ? 0 : 1;
}
