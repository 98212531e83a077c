#include "store/catalogue.h"

#include <filesystem>

#include "shell/CClock.h"
#include "shell/CDesktop.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbRec.h"
#include "store/COpenFile.h"
#include "store/jetconversion.h"
#include "store/jetlisting.h"

namespace {

constexpr const char* Extension = ".mdb";

std::string FreeProjectPath() {
    using std::chrono::seconds;
    for (auto time = Clock().LocalNow();; time += seconds(1)) {
        const std::string title = GetDbFolder() + FormatTime(time, "%Y-%m-%d-%H%M%S");
        // A side folder of a lost project mustn't become the new one's.
        if (!HostFiles().Exists(title + Extension) && !HostFiles().Exists(title + "_sn")) {
            return title + Extension;
        }
    }
}

// As a listing reads it: nothing is asked, and a file of the older engine isn't changed. Without `count`
// the records aren't counted. Shows the message of what fails.
bool ReadListed(std::string_view path, std::string_view password, _PRO_DATA& project, std::int32_t* count) {
    if (IsOldDatabase(path)) {
        const JetListed listed = ListOldDatabase(path, password);
        if (listed.Stopped) {
            return false;
        }
        const bool uncounted = count != nullptr && listed.Records < 0;
        const int failure = listed.OpenFailure != 0   ? listed.OpenFailure
                            : listed.ReadFailure != 0 ? listed.ReadFailure
                            : uncounted               ? 2018
                                                      : 0;
        if (failure != 0) {
            ShowOldDatabaseFailure(failure, path);
            return false;
        }
        const std::string ownPath = project.ProjectPath;
        project = listed.Attributes;
        project.ProjectPath = ownPath;
        if (count != nullptr) {
            *count = listed.Records;
        }
        return true;
    }
    CDbRec database;
    if (!database.OpenDatabase(path, password) || !database.ReadAttrib(project)) {
        return false;
    }
    if (count != nullptr) {
        *count = database.CountRecords(-1);
        return *count >= 0;
    }
    return true;
}

// The open project may have been named by another way, such as a link.
bool IsSameFile(std::string_view a, std::string_view b) {
    std::error_code error;
    return !b.empty() && std::filesystem::equivalent(HostFiles().HostPath(a), HostFiles().HostPath(b), error);
}

// Opening first rolls back what a crash may have left half done; only then a copy is whole.
bool ReadForDeletion(std::string_view path) {
    if (IsOldDatabase(path)) {
        _PRO_DATA project;
        return ReadListed(path, CDbPassword, project, nullptr);
    }
    CDbRec database;
    CTestingDataArray sections;
    return database.OpenDatabase(path, CDbPassword) && database.ReadTestings(sections);
}

bool EmptyProject(std::string_view path) {
    CDbRec database;
    CTestingDataArray sections;
    if (!database.OpenDatabase(path, CDbPassword) || !database.ReadTestings(sections)) {
        return false;
    }
    for (const _TESTING_DATA& section : sections) {
        (void)database.DeleteTesting(section);  // tells of its own failure, and the others still go
    }
    return true;
}

}  // namespace

void FillProjects(std::string_view folder, std::string_view excludedPath, ProjectListing& listing) {
    listing.Projects.RemoveAll();
    listing.Rows.clear();
    const CJetListingScope remembered;
    for (const std::string& name : HostFiles().ListFiles(folder, Extension)) {
        const std::string path = std::string(folder) + name;
        if (!EqualNoCase(path, excludedPath) && !IsSameFile(path, excludedPath)) {
            (void)AddProjectRow(path, listing);
        }
    }
}

bool AddProjectRow(std::string_view path, ProjectListing& listing) {
    _PRO_DATA& project = listing.Projects[listing.Projects.Add(_PRO_DATA())];
    project.ProjectPath = path;
    std::int32_t count = 0;
    if (!ReadListed(path, CDbPassword, project, &count)) {
        return false;
    }
    listing.Rows.push_back(
        {project.ProjectName, project.CriterionName, count, project.CreateTime, std::string(path)});
    return true;
}

void LoadCriterionList(CCriterionDataArray& list, std::string_view folder, std::string_view password) {
    const CJetListingScope remembered;
    for (const std::string& name : HostFiles().ListFiles(folder, Extension)) {
        _CRITERION_DATA entry{std::string(folder) + name, {}};
        _PRO_DATA attributes;
        const bool read = ReadListed(entry.Path, password, attributes, nullptr);
        entry.Name = read ? attributes.CriterionName : LoadMessage(2004);
        list.Add(std::move(entry));
    }
}

bool CanSaveProject(const ProjectProperties& properties, int criterionIndex,
                    const CCriterionDataArray& criteria) {
    return !properties.ProjectName.empty() && criterionIndex >= 0 && criterionIndex < criteria.GetSize();
}

std::string CreateProject(const ProjectProperties& properties, int criterionIndex,
                          const CCriterionDataArray& criteria) {
    if (!CanSaveProject(properties, criterionIndex, criteria)) {
        return {};
    }
    const std::string path = FreeProjectPath();
    const std::string& source = criteria[criterionIndex].Path;
    if (IsOldDatabase(source)) {
        if (!ConvertTo(source, path, CDbPassword)) {
            return {};
        }
    } else if (COpenFile::IsOpen(HostFiles().HostPath(source)) ||  // a copy would take its lock away
               !HostFiles().CopyFile(source, path, CHostFiles::Existing::Keep)) {
        ShowMessage(2203, path);
        return {};
    }
    return WriteNewAttrib(path, properties, FormatInt(criterionIndex)) ? path : std::string();
}

bool WriteNewAttrib(std::string_view path, const ProjectProperties& properties,
                    std::string_view standardIndex) {
    _PRO_DATA attributes;
    attributes.ProjectName = properties.ProjectName;
    attributes.Comment = properties.Comment;
    attributes.ProjectIndex = properties.ProjectIndex;
    attributes.StandardIndex = standardIndex;
    attributes.Location = properties.Location;
    CDbRec database;
    return database.OpenDatabase(path, CDbPassword) && database.WriteAttrib(attributes, true);
}

bool DeleteProject(std::string_view path) {
    if (!AskOkCancel(2204) || !ReadForDeletion(path)) {
        return false;
    }
    (void)Desktop().CopyToTrash(path);
    // Nobody converts a project to throw it away.
    if (!IsOldDatabase(path) && !EmptyProject(path)) {
        return false;
    }
    if (!HostFiles().DeleteFile(path)) {
        ShowMessage(2205);
        return false;
    }
    const std::string file(path);
    (void)HostFiles().DeleteFile(file + "-journal");
    if (EqualNoCase(GetFileExtension(file), "mdb")) {
        (void)HostFiles().RemoveFolder(file.substr(0, file.size() - 4) + "_sn");
    }
    return true;
}
