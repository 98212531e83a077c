// Speed of the database rooms, as ratios against plain uses of the engine run side by side. Prints a
// Markdown table; exit code 1 if a limit is broken.
#include <sqlcipher/sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "assessment/sectiongrades.h"
#include "bench/CBenchFolder.h"
#include "bench/fieldfolder.h"
#include "bench/fillproject.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "store/CDbRec.h"
#include "store/catalogue.h"

namespace {

constexpr int Sections = 2000;

std::string PictureName(const CBenchFolder& folder, int number) {
    return folder.Path("job/picture/" + std::to_string(number) + ".jpg");
}

void MakePictures(const CBenchFolder& folder) {
    std::filesystem::create_directories(folder.Host("job/picture"));
    for (int i = 0; i < Sections * RecordsASection; ++i) {
        std::ofstream(folder.Host("job/picture/" + std::to_string(i) + ".jpg")) << std::string(400, 'x');
    }
}

// A bare connection, as a program without the store's rules would hold it.
class CBare {
public:
    CBare(const std::string& hostPath, const std::string& key) {
        Require(sqlite3_open_v2(hostPath.c_str(), &m_connection, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK,
                "bare open");
        Run("PRAGMA key = \"x'" + key + "'\"");
        Run("PRAGMA cipher_page_size = 4096");
    }
    ~CBare() { sqlite3_close(m_connection); }
    CBare(const CBare&) = delete;
    CBare& operator=(const CBare&) = delete;

    void Run(const std::string& statement) {
        Require(sqlite3_exec(m_connection, statement.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK,
                statement.c_str());
    }

    // Takes every value of every row as what it is; returns the IDs of the rows, which are their first
    // column.
    std::vector<int> ReadAll(const char* statement) {
        sqlite3_stmt* rows = Prepare(statement);
        std::vector<int> ids = ReadRows(rows);
        sqlite3_finalize(rows);
        return ids;
    }

    // Sections in their order, with the records of each.
    int ReadProject() {
        int count = 0;
        sqlite3_stmt* rows = Prepare("select * from Record where TestingID = ?");
        for (const int id : ReadAll("select * from Testing order by TestingOrder")) {
            sqlite3_bind_int(rows, 1, id);
            count += static_cast<int>(ReadRows(rows).size());
            sqlite3_reset(rows);
        }
        sqlite3_finalize(rows);
        return count;
    }

private:
    struct Value {
        double Number = 0.0;
        std::string Text;
    };

    sqlite3_stmt* Prepare(const char* statement) {
        sqlite3_stmt* rows = nullptr;
        Require(sqlite3_prepare_v2(m_connection, statement, -1, &rows, nullptr) == SQLITE_OK, statement);
        return rows;
    }

    std::vector<int> ReadRows(sqlite3_stmt* rows) {
        std::vector<int> ids;
        const int columns = sqlite3_column_count(rows);
        while (sqlite3_step(rows) == SQLITE_ROW) {
            std::vector<Value>& row = m_table.emplace_back(static_cast<std::size_t>(columns));
            for (int c = 0; c < columns; ++c) {
                Value& value = row[static_cast<std::size_t>(c)];
                if (sqlite3_column_type(rows, c) == SQLITE_TEXT) {
                    value.Text = reinterpret_cast<const char*>(sqlite3_column_text(rows, c));
                } else {
                    value.Number = sqlite3_column_double(rows, c);
                }
            }
            ids.push_back(static_cast<int>(row[0].Number));
        }
        return ids;
    }

    sqlite3* m_connection = nullptr;
    std::vector<std::vector<Value>> m_table;
};

std::vector<SectionRecords> ReadProject(CDbRec& database) {
    const CHostFiles::CLookOnce look(HostFiles());
    CTestingDataArray sections;
    Require(database.ReadTestings(sections) && sections.GetSize() == Sections, "read sections");
    std::vector<SectionRecords> project(static_cast<std::size_t>(sections.GetSize()));
    for (int i = 0; i < sections.GetSize(); ++i) {
        SectionRecords& entry = project[static_cast<std::size_t>(i)];
        entry.Section = sections[i];
        Require(database.ReadRecords(entry.Section.ID, entry.Records, true), "read records");
    }
    return project;
}

}  // namespace

int main() {
    const CBenchFolder folder;
    MakePictures(folder);
    const std::string path = folder.MakeProject("big.mdb");
    const std::string host = folder.Host("db/big.mdb").string();
    FillProject(path, Sections, folder.Path("job/v.avi"),
                [&](int record) { return PictureName(folder, record); });
    const std::string key = DatabaseKey(CDbPassword);

    std::printf("| What | Against | Time | Peer | Ratio, median (range) | Limit | |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    bool allHold = true;
    const auto print = [&](const RatioRow& row) { allHold = PrintRatio(row) && allHold; };

    std::vector<SectionRecords> project;
    {
        CDbRec database;
        Require(database.OpenDatabase(path, CDbPassword), "open");
        project = ReadProject(database);
    }
    // A connection may be held once only, so each side opens its own beforehand.
    std::unique_ptr<CDbRec> ours;
    std::unique_ptr<CBare> bare;
    const auto openOurs = [&] {
        project.clear();
        bare.reset();
        ours = std::make_unique<CDbRec>();
        Require(ours->OpenDatabase(path, CDbPassword), "open");
    };
    const auto openBare = [&] {
        ours.reset();
        bare = std::make_unique<CBare>(host, key);
    };
    print({"Read 2,000 sections, 20,000 records through CDbRec, with scores, pictures copied",
           "loop over the same rows with the engine's C interface, one compiled statement for all sections",
           2.0, 15, [&] { project = ReadProject(*ours); },
           [&] { Require(bare->ReadProject() == Sections * RecordsASection, "bare read"); }, openOurs,
           openBare});

    openOurs();
    project = ReadProject(*ours);
    std::vector<_EVALUATE_DATA> results(Sections);
    print({"Score 2,000 sections, 20,000 records", "reading them through CDbRec", 0.1, 15,
           [&] {
               for (std::size_t i = 0; i < project.size(); ++i) {
                   EvaluateSection(results[i], project[i].Records, 50.0F, 800.0F, 10.0F, 0.0F);
               }
           },
           [&] { project = ReadProject(*ours); }, [&] { Require(project.size() == Sections, "read"); },
           [&] {
               Require(results.back().countJG > 0, "score");
               openOurs();
           }});
    bare.reset();
    ours.reset();

    print({"Open a project: open, defect names, attributes", "bare open, key and one select", 5.0, 101,
           [&] {
               CDbRec database;
               _PRO_DATA attributes;
               Require(database.OpenDatabase(path, CDbPassword) && database.ReadAttrib(attributes), "open");
           },
           [&] { Require(CBare(host, key).ReadAll("select * from Attrib").size() == 1, "bare open"); }});

    MakeFieldFolder(folder, "one", 1000);
    MakeFieldFolder(folder, "two", 2000);
    print({"Import a folder of 2,000 items", "one of 1,000", 2.3, 9, Import(folder, "two"),
           Import(folder, "one"), EmptyProject(folder), EmptyProject(folder)});

    std::filesystem::remove_all(folder.Host("db"));
    std::filesystem::create_directories(folder.Host("db"));
    std::filesystem::copy(std::filesystem::path(DROVANE_PROGRAM_FOLDER) / "db/Criterion",
                          folder.Host("db/Criterion"));
    for (int i = 0; i < 200; ++i) {
        (void)folder.MakeProject("p" + std::to_string(i) + ".mdb");
    }
    ProjectListing listing;
    const double listed = MillisecondsOf([&] { FillProjects(folder.Path("db/"), {}, listing); });
    Require(listing.Rows.size() == 200, "list");
    const bool holds = listed / 200 < 20;
    std::printf(
        "| List a folder of 200 projects | 20 ms a project | %.2f ms | | %.2f ms a project | 20 ms | %s |\n",
        listed, listed / 200, holds ? "holds" : "BROKEN");
    return allHold && holds ? 0 : 1;
}
