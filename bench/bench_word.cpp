// Speed and memory of Word reports. Prints Markdown tables; exit code 1 if a limit is broken.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zip.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>

#include "bench/CBenchFolder.h"
#include "bench/fillproject.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "reports/CRecExport.h"
#include "reports/word/generator.h"
#include "reports/word/wordreport.h"
#include "shell/paths.h"

namespace {

constexpr int Sections = 500;
constexpr int FewSections = 50;  // for a peer that takes minutes over 500
constexpr int PictureBytes = 60000;
constexpr long MostMegabytes = 400;

std::string PictureFile(const CBenchFolder& folder, int number) {
    return folder.Path("job/picture/" + std::to_string(number) + ".jpg");
}

// What a camera's frame is to an archive: a JPEG's beginning and end, and in between what can't be
// compressed.
void MakePictures(const CBenchFolder& folder, int count) {
    std::filesystem::create_directories(folder.Host("job/picture"));
    const std::string head = std::string("\xFF\xD8\xFF\xE0\0\x10JFIF\0\1\1\1\0\x48\0\x48\0\0", 20) +
                             std::string("\xFF\xC0\0\x0B\x08\x02\x40\x02\xD0\1\1\x11\0", 13) +
                             std::string("\xFF\xDA\0\x08\1\1\0\0\x3F\0", 10);
    std::mt19937 random(1);
    for (int i = 0; i < count; ++i) {
        std::string bytes = head;
        while (bytes.size() < PictureBytes) {
            bytes += static_cast<char>(random() % 255);  // 255 would begin a marker
        }
        std::ofstream(folder.Host("job/picture/" + std::to_string(i) + ".jpg"), std::ios::binary)
            << bytes << "\xFF\xD9";
    }
}

std::string MakeProject(const CBenchFolder& folder, int sections, const std::string& criterion = "GB.mdb") {
    const std::string path = folder.MakeProject(std::to_string(sections) + criterion, criterion);
    FillProject(path, sections, "\\job\\v.avi", [&](int record) { return PictureFile(folder, record); });
    return path;
}

struct Collected : CReportRun {
    CRecExport Project;
    std::string CriterionName;
};

void Collect(const std::string& path, Collected& report) {
    Require(report.Project.OpenDatabase(path, CDbPassword), "open");
    _PRO_DATA project;
    ReportOrder order{{}, 10.0F, 0.0F, {}};
    Require(report.Project.ReadAttrib(project) && report.Project.ReadTestings(order.Sections), "read");
    report.CriterionName = project.CriterionName;
    Require(CollectWordReport(report.Project, project.CriterionName, order, report), "collect");
}

// From the file of the project to the document.
void WriteReport(const CBenchFolder& folder, const std::string& path) {
    Collected report;
    Collect(path, report);
    Require(WriteWordReportTo(folder.Path("report.docx"), report, report.CriterionName, {}).Complete,
            "report");
}

// The same for the standard whose documents another program makes.
void RunGenerator(const CBenchFolder& folder, const std::string& path) {
    Collected report;
    Collect(path, report);
    Require(UsesGenerator(report.CriterionName) &&
                RunGenerator(report.Project, report, folder.Path("report.docx")) == 0,
            "generator");
}

void CopyPictures(const CBenchFolder& folder, int count) {
    const std::string target = folder.Host("pictures.zip").string();
    int error = 0;
    zip_t* archive = zip_open(target.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    Require(archive != nullptr, "zip");
    for (int i = 0; i < count; ++i) {
        const std::string name = std::to_string(i) + ".jpg";
        zip_source_t* source = zip_source_file(archive, folder.Host("job/picture/" + name).c_str(), 0, -1);
        const zip_int64_t index = zip_file_add(archive, name.c_str(), source, ZIP_FL_OVERWRITE);
        Require(index >= 0 &&
                    zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0) == 0,
                "zip a picture");
    }
    Require(zip_close(archive) == 0, "close the zip");
    // Documents are flushed, so this is too.
    Require(std::system(("sync '" + target + "'").c_str()) == 0, "sync");
}

// In a process of its own, so that nothing else is counted. The largest of it and of those that it starts.
long MegabytesOf(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    rusage usage{};
    int status = 0;
    Require(child > 0 && wait4(child, &status, 0, &usage) == child && status == 0, "measure memory");
    return usage.ru_maxrss / 1024;
}

bool PrintMemory(const char* what, long megabytes) {
    const bool holds = megabytes < MostMegabytes;
    std::printf("| %s | %ld MB | %ld MB | | | %ld MB | %s |\n", what, MostMegabytes, megabytes, MostMegabytes,
                holds ? "holds" : "BROKEN");
    return holds;
}

void SaveLists(const CBenchFolder& folder, ReportLists lists) {
    for (std::string& text : lists.ProjectStrings) {
        if (text.ends_with(".jpg")) {
            text = HostFiles().HostPath(text);  // stored paths are in small letters
        }
    }
    std::ofstream(folder.Host("lists.json")) << nlohmann::json{{"SectionRows", lists.SectionRows},
                                                               {"ShortRows", lists.ShortRows},
                                                               {"WellTotalRows", lists.WellTotalRows},
                                                               {"Codes", lists.Codes.size()},
                                                               {"ProjectStrings", lists.ProjectStrings}};
    CDocx(GetAppFolder() + "GB.dotx").Save(folder.Path("template.docx"));
}

}  // namespace

int main() {
    const CBenchFolder folder;
    MakePictures(folder, 2 * Sections * RecordsASection);
    const std::string half = MakeProject(folder, Sections);
    const std::string whole = MakeProject(folder, 2 * Sections);
    const auto write = [&] { WriteReport(folder, half); };

    std::printf("| What | Against | Time | Peer | Ratio, median (range) | Limit | |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    // First of all, before anything of it lies in the memory that the child inherits.
    const long megabytes = MegabytesOf(write);
    const std::string other = MakeProject(folder, Sections, "CQ.mdb");
    const long otherMegabytes = MegabytesOf([&] { RunGenerator(folder, other); });
    bool holds = PrintRatio(
        {"Word report of 500 sections, 5,000 records, 5,000 pictures of 60 kB, from the project's file",
         "copying the pictures into an uncompressed zip archive", 3.0, 5, write,
         [&] { CopyPictures(folder, Sections * RecordsASection); }});
    holds = PrintRatio({"Word report of 1,000 sections", "of 500", 2.2, 5,
                        [&] { WriteReport(folder, whole); }, write}) &&
            holds;

    Collected few;
    Collect(MakeProject(folder, FewSections), few);
    SaveLists(folder, few.Lists);
    const std::string script = std::string(DROVANE_PYTHON " '") + DROVANE_SOURCE_FOLDER +
                               "/bench/fill_word_report.py' '" + folder.Host("template.docx").string() +
                               "' '" + folder.Host("lists.json").string() + "' '" +
                               folder.Host("peer.docx").string() + "'";
    holds =
        PrintRatio(
            {"Fill and write the report of 50 sections, 500 pictures", "a script through python-docx", 0.1, 3,
             [&] {
                 Require(WriteWordReportTo(folder.Path("report.docx"), few, few.CriterionName, {}).Complete,
                         "report");
             },
             [&] { Require(std::system(script.c_str()) == 0, "python-docx"); }}) &&
        holds;
    holds = PrintMemory("Memory of the first", megabytes) && holds;
    holds = PrintMemory("Memory of the same for 重庆规范, by DocxGenerator", otherMegabytes) && holds;
    return holds ? 0 : 1;
}
