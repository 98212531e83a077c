// Standards, projects and settings.
#include <cctype>
#include <limits>
#include <nlohmann/json.hpp>
#include <ostream>

#include "apps/cli/CArguments.h"
#include "apps/cli/CTextTable.h"
#include "apps/cli/commands.h"
#include "shell/CHostFiles.h"
#include "shell/drives.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/settings.h"
#include "shell/textcodec.h"
#include "store/CDbBase.h"
#include "store/catalogue.h"
#include "store/criterionmaker.h"
#include "store/recordjson.h"

namespace {

using Json = nlohmann::ordered_json;

CCriterionDataArray Standards() {
    CCriterionDataArray list;
    LoadCriterionList(list, GetCriterionFolder(), CDbPassword);
    return list;
}

int FindStandard(const CCriterionDataArray& list, const std::string& name) {
    std::string names;
    for (int i = 0; i < list.GetSize(); ++i) {
        if (EqualNoCase(list[i].Name, name)) {
            return i;
        }
        names += "\n  " + list[i].Name;
    }
    throw std::runtime_error("no standard of the name \"" + name + "\"; there are:" + names);
}

void SetDriveOption(const CommandContext& context, const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals != 1 || !std::isalpha(static_cast<unsigned char>(text[0])) || text.size() < 3) {
        throw CUsageError("--drive needs X=DIR");
    }
    const std::string place = HostFiles().DriveFolder(text[0]).string();
    std::error_code error;
    switch (SetDrive(text[0], HostArgument(context, text.substr(2)), error)) {
        case DriveResult::Done:
            return;
        case DriveResult::NoFolder:
            throw std::runtime_error(text.substr(2) + " is no folder");
        case DriveResult::HasFiles:
            throw std::runtime_error(place + " is a folder with files of its own; move it away first");
        case DriveResult::Failed:
            throw std::runtime_error(place + " can't be made: " + error.message());
    }
}

std::uint32_t SettingNumber(const CArguments& arguments, const std::string& option) {
    const std::optional<std::int64_t> value = ParseWholeInt(arguments.Require(option));
    if (!value || *value < 0 || *value > std::numeric_limits<std::uint32_t>::max()) {
        throw CUsageError(option + " needs a whole number");
    }
    return static_cast<std::uint32_t>(*value);
}

void SetLanguage(const std::string& name) {
    std::vector<std::string> languages;
    EnumLanguages(languages);
    std::string known;
    for (const std::string& language : languages) {
        if (EqualNoCase(language, name)) {
            SetLanguageName(language);
            return;
        }
        known += "\n  " + language;
    }
    throw std::runtime_error("no language of the name \"" + name + "\"; there are:" + known);
}

}  // namespace

int RunStandards(const CommandContext& context) {
    const CArguments arguments(context.Words, {}, {"--json"});
    arguments.ExpectPlaces(0, 0);
    Json json = Json::array();
    CTextTable table({"Standard", "File"});
    for (const _CRITERION_DATA& entry : Standards()) {
        json.push_back({{"Name", entry.Name}, {"Path", ShownPath(entry.Path)}});
        table.Add({entry.Name, ShownPath(entry.Path)});
    }
    if (arguments.Has("--json")) {
        context.Out << JsonText(json) << '\n';
    } else {
        table.Print(context.Out);
    }
    return 0;
}

int RunProjects(const CommandContext& context) {
    const CArguments arguments(context.Words, {}, {"--json"});
    arguments.ExpectPlaces(0, 0);
    ProjectListing listing;
    FillProjects(GetDbFolder(), {}, listing);
    Json json = Json::array();
    CTextTable table({"Project", "Standard", "Records", "Created", "File"});
    for (const ProjectRow& row : listing.Rows) {
        const std::string path = ShownPath(row.OwnPath);
        json.push_back({{"ProjectName", row.ProjectName},
                        {"CriterionName", row.CriterionName},
                        {"RecordCount", row.RecordCount},
                        {"CreateTime", row.CreateTime},
                        {"ProjectPath", path}});
        table.Add({row.ProjectName, row.CriterionName, FormatInt(row.RecordCount), row.CreateTime, path});
    }
    if (arguments.Has("--json")) {
        context.Out << JsonText(json) << '\n';
    } else {
        table.Print(context.Out);
    }
    return 0;
}

int RunNew(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--standard", "--comment", "--location", "--index"}, {});
    arguments.ExpectPlaces(1, 1);
    const CCriterionDataArray criteria = Standards();
    const int index = FindStandard(criteria, arguments.Require("--standard"));
    const ProjectProperties properties{arguments.Places()[0], arguments.Get("--comment").value_or(""),
                                       arguments.Get("--index").value_or(""),
                                       arguments.Get("--location").value_or("")};
    if (properties.ProjectName.empty()) {
        throw std::runtime_error(LoadMessage(2164));
    }
    const std::string path = CreateProject(properties, index, criteria);
    if (path.empty()) {
        return 1;
    }
    context.Out << ShownPath(path) << '\n';
    return 0;
}

int RunMakeStandard(const CommandContext& context) {
    const CArguments arguments(context.Words, {"-o"}, {});
    arguments.ExpectPlaces(1, 1);
    const std::string& source = arguments.Places()[0];
    const std::string target =
        HostFiles().HostPath(TargetArgument(context, arguments.Require("-o"), {source}, true));
    try {
        WriteCriterionFile(ParseCriterion(ReadInput(PathArgument(context, source), source)), target);
    } catch (const CUsageError&) {
        throw;
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(source + ": " + error.what());
    }
    return 0;
}

int RunSettings(const CommandContext& context) {
    const CArguments arguments(
        context.Words, {"--language", "--work-folder", "--gps-port", "--gps-baud", "--drive*"}, {"--json"});
    arguments.ExpectPlaces(0, 0);
    bool changed = false;
    if (const auto language = arguments.Get("--language")) {
        SetLanguage(*language);
        changed = true;
    }
    if (const auto folder = arguments.Get("--work-folder")) {
        SetWorkFolder(folder->empty() ? *folder : PathArgument(context, *folder));
        changed = true;
    }
    if (arguments.Has("--gps-port")) {
        SetGpsPort(SettingNumber(arguments, "--gps-port"));
        changed = true;
    }
    if (arguments.Has("--gps-baud")) {
        SetGpsBaud(SettingNumber(arguments, "--gps-baud"));
        changed = true;
    }
    if (changed && !SaveSettings()) {
        throw std::runtime_error("set.dat can't be written");
    }
    for (const std::string& drive : arguments.GetAll("--drive")) {
        SetDriveOption(context, drive);
    }

    Json drives = Json::object();
    CTextTable table({"Setting", "Value"});
    table.Add({"language", GetLanguageName()});
    table.Add({"work folder", GetWorkFolder()});
    table.Add({"GPS port", FormatInt(GetGpsPort())});
    table.Add({"GPS baud", FormatInt(GetGpsBaud())});
    for (const Drive& drive : ListDrives()) {
        table.Add({std::string("drive ") + drive.Letter, drive.Folder});
        drives[std::string(1, drive.Letter)] = drive.Folder;
    }
    if (arguments.Has("--json")) {
        context.Out << JsonText({{"language", GetLanguageName()},
                                 {"workFolder", GetWorkFolder()},
                                 {"gpsPort", GetGpsPort()},
                                 {"gpsBaud", GetGpsBaud()},
                                 {"drives", drives}})
                    << '\n';
    } else {
        table.Print(context.Out);
    }
    return 0;
}
