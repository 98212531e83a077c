#include "apps/cli/cli.h"

#include <algorithm>
#include <filesystem>
#include <ostream>

#include "apps/cli/CArguments.h"
#include "apps/cli/commands.h"
#include "history/CJournal.h"
#include "oldfiles/CJetFiles.h"
#include "shell/CHostFiles.h"
#include "shell/CStreamPrompts.h"
#include "shell/language.h"
#include "shell/programfolder.h"
#include "shell/seams.h"
#include "shell/settings.h"

namespace {

namespace fs = std::filesystem;

constexpr Command Commands[] = {
    {"standards", "[--json]", "list the standards", RunStandards},
    {"projects", "[--json]", "list the projects", RunProjects},
    {"new", "NAME --standard STANDARD [--comment T] [--location T] [--index T]",
     "make a project, print its file", RunNew},
    {"import-xml", "PROJECT FILE... [--skip-known] [--json]",
     "import field folders by their XML descriptions, also those of a sonar, or all below a folder",
     RunImportXml},
    {"sections", "PROJECT [--where QUERY] [--json]",
     "list the sections of a project, or those that are asked for, as in \"no video tester:Li\"",
     RunSections},
    {"records", "PROJECT [--section ID] [--where QUERY] [--json]",
     "list its records, or those that are asked for, as in \"grade>=3 code:PL\"", RunRecords},
    {"sonar", "PROJECT [--json]", "print the sonar data of a project as JSON", RunSonar},
    {"grade", "PROJECT [--k N] [--t N] [--sections ID,ID] [--json]", "compute the condition of the sections",
     RunGrade},
    {"explain", "PROJECT --section ID [--k N] [--t N] [--json]",
     "tell how the grade of a section came about, and what each record weighs", RunExplain},
    {"reorder", "PROJECT --section ID [--dry-run]",
     "put the records of a section in the order of distance, where that gives another grade", RunReorder},
    {"check", "PROJECT [--only errors|warnings|hints] [--k N] [--t N] [--pictures] [--json]",
     "tell what a client would send back; with --pictures also what is in pictures and videos", RunCheck},
    {"dataset", "PROJECT [--k N] [--t N] [--sections ID,ID] -o FILE.xml",
     "write what a report of the sections shows, as the report generator reads it", RunDataset},
    {"export-word", "PROJECT [--k N] [--t N] [--sections ID,ID] -o FILE.docx",
     "make the Word report of the project's standard", RunExportWord},
    {"export-sonar", "PROJECT -o FILE.docx", "make the report on the silt that a sonar measured",
     RunExportSonar},
    {"export-excel", "PROJECT [-o FILE.xlsx]",
     "write the inspection table, by default into your documents, and print its file", RunExportExcel},
    {"gps-sheet", "FILE [--json]", "print well numbers and positions of a surveyor's workbook", RunGpsSheet},
    {"import-gps", "PROJECT FILE",
     "set the positions of the manholes from such a workbook, print how many sections have one",
     RunImportGps},
    {"nmea", "FILE [--block N] [--offset HOURS] [--json]",
     "print the fixes that the text of a satellite receiver tells, as JSON", RunNmea},
    {"export-shape", "PROJECT [--sections ID,ID] -o FILE.shp", "write the defects as a shapefile",
     RunExportShape},
    {"map", "PROJECT [--sections ID,ID] [--json]", "print what the map of the sections is told", RunMap},
    {"gps-calc", "PROJECT --section ID", "place the records between the section's manholes", RunGpsCalc},
    {"code", "PROJECT --section ID \"PL3 12.4 0903\" --at SECONDS [--dry-run] [--json]",
     "store a defect coded in one line; --dry-run tells what was understood, exit code 3 that something is "
     "missing",
     RunCode},
    {"edit-section", "PROJECT --section ID FIELD=VALUE...", "change fields of a section", RunEditSection},
    {"edit-sections", "PROJECT --where QUERY FIELD=VALUE... [--dry-run]",
     "change fields of all sections that are asked for, in one step, and print what changes",
     RunEditSections},
    {"edit-record", "PROJECT --record ID FIELD=VALUE...", "change fields of a record", RunEditRecord},
    {"delete-section", "PROJECT --section ID", "delete a section with its records", RunDeleteSection},
    {"delete-record", "PROJECT --record ID", "delete a record", RunDeleteRecord},
    {"dump", "PROJECT", "print the whole project as one JSON document", RunDump},
    {"load", "PROJECT FILE.json", "add the sections and records of such a document", RunLoad},
    {"merge", "FIRST.mdb SECOND.mdb",
     "join two projects into a third; print its file, and that of the list of sections left out", RunMerge},
    {"history", "PROJECT [--json]", "list what was changed in a project, by steps", RunHistory},
    {"undo", "PROJECT [STEPS]", "take steps back, the last one first", RunUndo},
    {"redo", "PROJECT [STEPS]", "do again what was taken back", RunRedo},
    {"forget-history", "PROJECT", "forget the steps, and delete the pictures kept for them",
     RunForgetHistory},
    {"restore-points", "PROJECT [--json]",
     "list the copies that were made of a project; it may be gone itself", RunRestorePoints},
    {"restore", "PROJECT POINT -o NEW.mdb", "make a new project of such a copy", RunRestore},
    {"strip", "PROJECT --section ID [--width PIXELS] -o FILE.svg",
     "draw a section as a pipe with its defects", RunStrip},
    {"grab", "VIDEO SECONDS -o FILE.jpg", "write the frame that is shown at that position as a picture",
     RunGrab},
    {"distance", "VIDEO [--region X,Y,W,H] [--value SECONDS=DISTANCE ...] [--unit m|ft] [--json]",
     "read the counter of the cable out of the pictures; exit code 3 if there is none for certain",
     RunDistance},
    {"convert", "FILE... [--to DIR] [--json]",
     "convert files of the older database engine, in place or into a folder", RunConvert},
    {"make-standard", "FILE.json -o FILE.mdb", "make a criterion database", RunMakeStandard},
    {"settings",
     "[--language NAME] [--work-folder DIR] [--gps-port N] [--gps-baud N] [--drive X=DIR]... [--json]",
     "show or change the settings", RunSettings},
};

void PrintUsage(std::ostream& out) {
    out << "usage: drovane-cli [--app-folder DIR] [--yes] COMMAND ...\n\n";
    for (const Command& command : Commands) {
        out << "  " << command.Name << ' ' << command.Usage << "\n      " << command.Purpose << '\n';
    }
    out << "\nPROJECT is the path of a project file. Questions count as answered with Cancel, with --yes as"
           " answered with OK.\nExit codes: 0 done, 1 failed, 2 called wrongly, 3 nothing\n"
           "to undo or redo, or it no longer fits; nothing has changed then.\n";
}

// The folder that holds the program folder's own parts, and that relative resource paths start from.
fs::path FindAppFolder(std::vector<std::string>& words) {
    for (std::size_t i = 0; i < words.size() && words[i] != "--"; ++i) {
        if (words[i] != "--app-folder") {
            continue;
        }
        if (i + 1 == words.size()) {
            throw CUsageError("--app-folder needs a value");
        }
        const fs::path folder = fs::absolute(words[i + 1]).lexically_normal();
        words.erase(words.begin() + static_cast<std::ptrdiff_t>(i),
                    words.begin() + static_cast<std::ptrdiff_t>(i) + 2);
        if (!fs::is_directory(folder)) {
            throw std::runtime_error(folder.string() + " is no folder");
        }
        return folder;
    }
    return ExecutableFolder();
}

bool TakeFlag(std::vector<std::string>& words, const char* flag) {
    const auto end = std::find(words.begin(), words.end(), "--");
    const auto found = std::find(words.begin(), end, flag);
    if (found == end) {
        return false;
    }
    words.erase(found);
    return true;
}

int RunCommand(std::vector<std::string> words, std::ostream& out, std::ostream& err) {
    const std::string startFolder = fs::current_path().string();
    const fs::path appFolder = FindAppFolder(words);
    const bool yes = TakeFlag(words, "--yes");
    if (words.empty()) {
        PrintUsage(err);
        return 2;
    }
    const std::string name = words.front();
    words.erase(words.begin());
    if (name == "help" || name == "--help" || name == "-h") {
        PrintUsage(out);
        return 0;
    }
    const Command* command = std::find_if(std::begin(Commands), std::end(Commands),
                                          [&](const Command& known) { return known.Name == name; });
    if (command == std::end(Commands)) {
        throw CUsageError("unknown command " + name);
    }
    CHostFiles files(appFolder);
    CStreamPrompts prompts(err, yes);
    const CSeamScope seams({&prompts, nullptr, &files, nullptr});
    CJetFiles oldFiles;
    const COldFilesScope oldFilesScope(oldFiles);
    CJournals journals;
    const CChangeWatchesScope watchesScope(journals);
    EnterProgramFolder(appFolder);
    LoadSettings();
    LoadLanguageTable();
    try {
        return command->Run({words, startFolder, out, err});
    } catch (const CUsageError& error) {
        err << "drovane-cli " << name << ": " << error.what() << "\nusage: drovane-cli " << name << ' '
            << command->Usage << '\n';
        return 2;
    }
}

}  // namespace

int RunCli(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    try {
        const int code = RunCommand(arguments, out, err);
        out.flush();
        if (!out) {
            err << "drovane-cli: the output can't be written\n";
            return 1;
        }
        return code;
    } catch (const CUsageError& error) {
        err << "drovane-cli: " << error.what() << "; see drovane-cli help\n";
        return 2;
    } catch (const std::exception& error) {
        err << "drovane-cli: " << error.what() << '\n';
        return 1;
    }
}
