#include "store/catalogue.h"

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

// Opening first rolls back what a crash may have left half done; only then a copy is whole.
bool ReadForDeletion(std::string_view path) {
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
    for (const std::string& name : HostFiles().ListFiles(folder, Extension)) {
        const std::string path = std::string(folder) + name;
        if (!EqualNoCase(path, excludedPath)) {
            (void)AddProjectRow(path, listing);
        }
    }
}

bool AddProjectRow(std::string_view path, ProjectListing& listing) {
    _PRO_DATA& project = listing.Projects[listing.Projects.Add(_PRO_DATA())];
    project.ProjectPath = path;
    CDbRec database;
    if (!database.OpenDatabase(path, CDbPassword) || !database.ReadAttrib(project)) {
        return false;
    }
    const std::int32_t count = database.CountRecords(-1);
    if (count < 0) {
        return false;
    }
    database.Close();
    listing.Rows.push_back(
        {project.ProjectName, project.CriterionName, count, project.CreateTime, std::string(path)});
    return true;
}

void LoadCriterionList(CCriterionDataArray& list, std::string_view folder, std::string_view password) {
    for (const std::string& name : HostFiles().ListFiles(folder, Extension)) {
        _CRITERION_DATA entry{std::string(folder) + name, {}};
        CDbRec database;
        _PRO_DATA attributes;
        const bool read = database.OpenDatabase(entry.Path, password) && database.ReadAttrib(attributes);
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
    // A copy of an open file would take its lock away.
    if (COpenFile::IsOpen(HostFiles().HostPath(source)) ||
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
    if (!EmptyProject(path)) {
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
