// The commands of the command line program. Each gets the words behind its name, and returns the exit
// code; a wrong call throws CUsageError, a failure std::runtime_error.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

class CDbRec;
struct _TESTING_DATA;

struct CommandContext {
    std::vector<std::string> Words;
    std::string StartFolder;  // where the user stood: path arguments are relative to it
    std::ostream& Out;
    std::ostream& Err;
};

struct Command {
    const char* Name;
    const char* Usage;
    const char* Purpose;
    int (*Run)(const CommandContext&);
};

// commands_catalogue.cpp
int RunStandards(const CommandContext& context);
int RunProjects(const CommandContext& context);
int RunNew(const CommandContext& context);
int RunMakeStandard(const CommandContext& context);
int RunSettings(const CommandContext& context);
// commands_check.cpp
int RunCheck(const CommandContext& context);
// commands_code.cpp
int RunCode(const CommandContext& context);
// commands_convert.cpp
int RunConvert(const CommandContext& context);
// commands_distance.cpp
int RunDistance(const CommandContext& context);
// commands_nmea.cpp
int RunNmea(const CommandContext& context);
// commands_project.cpp
int RunImportXml(const CommandContext& context);
int RunSections(const CommandContext& context);
int RunRecords(const CommandContext& context);
int RunDump(const CommandContext& context);
int RunLoad(const CommandContext& context);
// commands_edit.cpp
int RunGpsCalc(const CommandContext& context);
int RunDeleteSection(const CommandContext& context);
int RunDeleteRecord(const CommandContext& context);
int RunEditSection(const CommandContext& context);
int RunEditRecord(const CommandContext& context);
int RunEditSections(const CommandContext& context);
// commands_excel.cpp
int RunExportExcel(const CommandContext& context);
// commands_geo.cpp
int RunGpsSheet(const CommandContext& context);
int RunImportGps(const CommandContext& context);
int RunExportShape(const CommandContext& context);
int RunMap(const CommandContext& context);
// commands_grab.cpp
int RunGrab(const CommandContext& context);
// commands_grade.cpp
int RunGrade(const CommandContext& context);
// commands_explain.cpp
int RunExplain(const CommandContext& context);
int RunReorder(const CommandContext& context);
// commands_history.cpp
int RunHistory(const CommandContext& context);
int RunUndo(const CommandContext& context);
int RunRedo(const CommandContext& context);
int RunForgetHistory(const CommandContext& context);
int RunRestorePoints(const CommandContext& context);
int RunRestore(const CommandContext& context);
// commands_report.cpp
int RunDataset(const CommandContext& context);
int RunExportWord(const CommandContext& context);
// commands_merge.cpp
int RunMerge(const CommandContext& context);
// commands_strip.cpp
int RunStrip(const CommandContext& context);
// commands_sonar.cpp
int RunSonar(const CommandContext& context);
int RunExportSonar(const CommandContext& context);

// Helpers of the commands (commands.cpp).

// An absolute path text from an argument: "/a/b", "a/b", "\a\b" and "D:\a" are all taken.
std::string PathArgument(const CommandContext& context, const std::string& argument);
// The same for a file to be written. Throws CUsageError where it would replace a project, one of the
// command's `sources` (arguments too) by whatever name, a folder, a device or a pipe. `overStandards`: a
// standard may be replaced.
std::string TargetArgument(const CommandContext& context, const std::string& argument,
                           const std::vector<std::string>& sources, bool overStandards = false);
// The same as a path of this machine.
std::string HostArgument(const CommandContext& context, const std::string& argument);
// A path of the program's own, as it is shown to the user of a shell.
std::string ShownPath(const std::string& path);
std::string ReadInput(const std::string& path, const std::string& shown);
// Throws if it can't be opened; the message was shown.
void OpenProject(CDbRec& database, const CommandContext& context, const std::string& argument);
// Throws if there is none.
_TESTING_DATA FindSection(CDbRec& database, std::int32_t id);
