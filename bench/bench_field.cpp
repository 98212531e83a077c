// Speed of what comes back from the street and what goes to map departments: surveyors' sheets, merged
// projects, shapefiles. Prints a Markdown table; exit code 1 if a limit is broken.
#include <shapefil.h>

#include <cstdio>
#include <string>

#include "bench/CBenchFolder.h"
#include "bench/fillproject.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "fieldimport/gpsimport.h"
#include "fieldimport/gpssheet.h"
#include "geo/shapefile/CShapeFile.h"
#include "reports/ooxml/ziparchive.h"
#include "shell/CHostFiles.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbRec.h"
#include "store/merge.h"
#include "store/projectdocument.h"

namespace {

constexpr int SheetRows = 20000;
constexpr int SheetSections = 2000;
constexpr int MergeSections = 1000;
constexpr int Shapes = 100000;

std::string NoPicture(int) {
    return {};
}

// Every tenth row is a manhole of the project.
std::string Sheet() {
    std::string rows = "<row r=\"1\"/>";
    for (int i = 0; i < SheetRows; ++i) {
        const std::string well = i % 10 == 0 ? "WS" + std::to_string(i / 10) : "other" + std::to_string(i);
        rows += "<row><c t=\"inlineStr\"><is><t>" + well + "</t></is></c><c><v>113." +
                std::to_string(100000 + i) + "</v></c><c><v>23." + std::to_string(100000 + i) +
                "</v></c></row>";
    }
    const std::string type = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
    const auto relation = [&](const char* kind, const char* target) {
        return "<R><Relationship Id=\"a\" Type=\"" + type + kind + "\" Target=\"" + target + "\"/></R>";
    };
    return WriteZip({{"_rels/.rels", relation("officeDocument", "xl/w.xml"), {}, 6},
                     {"xl/_rels/w.xml.rels", relation("worksheet", "s.xml"), {}, 6},
                     {"xl/w.xml", "<w xmlns:r=\"r\"><sheet r:id=\"a\"/></w>", {}, 6},
                     {"xl/s.xml", "<worksheet><sheetData>" + rows + "</sheetData></worksheet>", {}, 6}});
}

// The same work without looking anything up: the calls that are told, for the sections that have a manhole.
void ReadAndUpdate(const std::string& project, const std::string& sheet) {
    GpsSheet rows;
    Require(ReadGpsSheet(sheet, rows), "read the sheet");
    CDbRec database;
    CTestingDataArray sections;
    Require(database.OpenDatabase(project, CDbPassword) && database.ReadTestings(sections), "open");
    CDbBatch batch(database);
    for (const _TESTING_DATA& section : sections) {
        // Once for the row of each of its manholes.
        Require(database.UpdateTesting(section) && database.UpdateTesting(section) &&
                    database.RecalcRecordGps(section.ID),
                "update");
    }
    batch.Commit();
}

void ImportSheet(const std::string& project, const std::string& sheet) {
    CDbRec database;
    GpsImport result;
    Require(database.OpenDatabase(project, CDbPassword) && ImportGpsSheet(database, sheet, result) &&
                result.Sections == SheetSections,
            "import the sheet");
}

_PRO_DATA Project(const std::string& path, const std::string& name) {
    CDbRec database;
    _PRO_DATA project;
    Require(database.OpenDatabase(path, CDbPassword) && database.ReadAttrib(project), "open");
    project.ProjectPath = path;
    project.ProjectName = name;
    return project;
}

// Wells that the other project hasn't; `orphans`: no record has a section.
void MakeSecond(const std::string& path, bool orphans) {
    FillProject(path, MergeSections, {}, NoPicture);
    CDbRec database;
    Require(database.OpenDatabase(path, CDbPassword), "open");
    database.Execute("update Testing set StartWell = 'X' || StartWell");
    if (orphans) {
        database.Execute("update Record set TestingID = -1");
    }
}

std::string Document(const std::string& path) {
    CDbRec database;
    std::string document;
    Require(database.OpenDatabase(path, CDbPassword) &&
                DumpProject(database, [&](std::string_view text) { document += text; }),
            "dump");
    return document;
}

bool BenchMerge(const CBenchFolder& folder, const char* what, const _PRO_DATA& first,
                const std::string& second) {
    const std::string document = Document(second);
    const _PRO_DATA other = Project(second, "second");
    std::string merged;
    return PrintRatio({what, "loading the second as a document", 3.0, 7,
                       [&] {
                           MergeResult result;
                           Require(MergeProjects(first, other, result), "merge");
                           merged = result.Path;
                       },
                       [&] {
                           CDbRec database;
                           Require(database.OpenDatabase(folder.Path("db/load.mdb"), CDbPassword) &&
                                       LoadProject(database, document).Done,
                                   "load");
                       },
                       [&] { (void)HostFiles().DeleteFile(merged); },
                       [&] {
                           std::filesystem::remove(folder.Host("db/load.mdb"));
                           (void)folder.MakeProject("load.mdb");
                       }});
}

void WriteBare(const CRecDataArray& records, const std::string& path) {
    SHPHandle shapes = SHPCreate(path.c_str(), SHPT_MULTIPOINT);
    for (const _REC_DATA& record : records) {
        SHPObject* shape = SHPCreateSimpleObject(SHPT_MULTIPOINT, 1, &record.GpsX, &record.GpsY, nullptr);
        SHPWriteObject(shapes, -1, shape);
        SHPDestroyObject(shape);
    }
    SHPClose(shapes);
    DBFHandle table = DBFCreate(path.c_str());
    DBFAddField(table, "DefectCode", FTString, 10, 0);
    for (int i = 0; i < records.GetSize(); ++i) {
        DBFWriteStringAttribute(table, i, 0, GbkFromUtf8(records[i].DefectCode).c_str());
    }
    DBFClose(table);
}

}  // namespace

int main() {
    const CBenchFolder folder;
    std::printf("| What | Against | Time | Peer | Ratio, median (range) | Limit | |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    bool allHold = true;

    const std::string project = folder.MakeProject("sheet.mdb");
    FillProject(project, SheetSections, {}, NoPicture);
    const std::string sheet = folder.Path("sheet.xlsx");
    Require(HostFiles().WriteFile(sheet, Sheet()), "write the sheet");
    allHold = PrintRatio({"Sheet of 20,000 rows into 2,000 sections, 20,000 records",
                          "reading it, and the same updates without looking up", 1.5, 5,
                          [&] { ImportSheet(project, sheet); }, [&] { ReadAndUpdate(project, sheet); }}) &&
              allHold;

    const std::string path = folder.MakeProject("first.mdb");
    FillProject(path, MergeSections, {}, NoPicture);
    const _PRO_DATA first = Project(path, "first");
    const std::string second = folder.MakeProject("second.mdb");
    MakeSecond(second, false);
    allHold = BenchMerge(folder, "Merge of two projects of 1,000 sections, 10,000 records", first, second) &&
              allHold;
    const std::string orphans = folder.MakeProject("orphans.mdb");
    MakeSecond(orphans, true);
    allHold = BenchMerge(folder, "The same with 10,000 records without a section", first, orphans) && allHold;

    CRecDataArray records;
    for (int i = 0; i < Shapes; ++i) {
        _REC_DATA record;
        record.DefectCode = "PL";
        record.GpsX = 113 + i * 1e-6;
        record.GpsY = 23 + i * 1e-6;
        records.Add(record);
    }
    allHold = PrintRatio({"Shapefile of 100,000 records, flushed", "bare shapelib", 1.5, 7,
                          [&] {
                              CShapeFile file;
                              file.AddRecords(records);
                              Require(file.WriteShapeFile(folder.Path("ours.shp")) == 1, "write");
                          },
                          [&] { WriteBare(records, folder.Host("bare.shp").string()); }}) &&
              allHold;
    return allHold ? 0 : 1;
}
