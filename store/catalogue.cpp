#include "store/catalogue.h"

#include <filesystem>

#include "shell/CClock.h"
#include "shell/CDesktop.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/CSilentPrompts.h"
#include "shell/failures.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/COldFiles.h"
#include "store/COpenFile.h"
#include "store/sonar.h"

namespace {

constexpr const char* Extension = ".mdb";
constexpr const char* JournalEnding = "-journal";
constexpr int MessageNoTrash = 3411;
constexpr int MessageProject = 3412;
constexpr int MessageOtherRow = 3413;
constexpr int MessageStays = 3414;

class CListing {
public:
    CListing() { OldFiles().BeginListing(); }
    ~CListing() { OldFiles().EndListing(); }
    CListing(const CListing&) = delete;
    CListing& operator=(const CListing&) = delete;
};

}  // namespace

std::string FreeProjectPath() {
    using std::chrono::seconds;
    for (auto time = Clock().LocalNow();; time += seconds(1)) {
        const std::string title = GetDbFolder() + FormatTime(time, "%Y-%m-%d-%H%M%S");
        // A side folder of a lost project mustn't become the new one's.
        if (!HostFiles().Exists(title + Extension) && !HostFiles().Exists(title + "_sn") &&
            !HostFiles().Exists(title + Extension +
                                JournalEnding)) {  // it would be rolled back into the new one
            return title + Extension;
        }
    }
}

namespace {

// As a listing reads it: nothing is asked, and a file of the older engine isn't changed. Without `count`
// the records aren't counted. Shows the message of what fails.
bool ReadListed(std::string_view path, std::string_view password, _PRO_DATA& project, std::int32_t* count) {
    if (OldFiles().IsOld(path)) {
        const OldFileListing listed = OldFiles().List(path, password);
        if (listed.Stopped) {
            return false;
        }
        const bool uncounted = count != nullptr && listed.Records < 0;
        const int failure = listed.OpenFailure != 0   ? listed.OpenFailure
                            : listed.ReadFailure != 0 ? listed.ReadFailure
                            : uncounted               ? 2018
                                                      : 0;
        if (failure != 0) {
            ShowMessage(failure, failure == 2000 ? path : std::string_view());
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
    if (!database.OpenDatabase(path, password, CDbBase::Access::Shared) || !database.ReadAttrib(project)) {
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
    if (OldFiles().IsOld(path)) {
        _PRO_DATA project;
        return ReadListed(path, CDbPassword, project, nullptr);
    }
    CDbRec database;
    CTestingDataArray sections;
    return database.OpenDatabase(path, CDbPassword) && database.ReadTestings(sections);
}

// In one step with the removal of the file: without that nothing has happened.
bool EmptyAndRemove(std::string_view path) {
    CDbRec database;
    CTestingDataArray sections;
    if (!database.OpenDatabase(path, CDbPassword, CDbBase::Access::Making) ||
        !database.ReadTestings(sections)) {
        return false;
    }
    CDbBatch batch(database);
    for (const _TESTING_DATA& section : sections) {
        if (!database.DeleteTesting(section)) {
            batch.Discard();
            return false;
        }
    }
    const bool removed = HostFiles().DeleteFile(path);
    batch.Discard();
    if (!removed) {
        ShowMessage(2205, "\r\n" + FailureText(HostFiles().LastError()));
    }
    return removed;
}

bool RemoveOld(std::string_view path) {
    const bool removed = HostFiles().DeleteFile(path);
    if (!removed) {
        ShowMessage(2205, "\r\n" + FailureText(HostFiles().LastError()));
    }
    return removed;
}

// What the question tells; without a word of what can't be read, which the deletion itself tells.
std::string Describe(std::string_view path) {
    CSilentPrompts silent;
    const CSeamScope scope({.Prompts = &silent});
    _PRO_DATA project;
    std::string sections = "?";
    if (OldFiles().IsOld(path)) {
        (void)ReadListed(path, CDbPassword, project, nullptr);
    } else {
        CDbRec database;
        CTestingDataArray all;
        if (database.OpenDatabase(path, CDbPassword) && database.ReadAttrib(project) &&
            database.ReadTestings(all)) {
            sections = FormatInt(all.GetSize());
        }
    }
    return FillText(LoadMessage(MessageProject), {project.ProjectName, GetFileName(path), sections});
}

bool AskToDelete(std::string_view path, const ProjectRow* shown) {
    std::string text = LoadMessage(2204) + "\r\n" + Describe(path);
    if (shown != nullptr && !EqualNoCase(shown->OwnPath, path)) {
        text += "\r\n" +
                FillText(LoadMessage(MessageOtherRow), {shown->ProjectName, GetFileName(shown->OwnPath)});
    }
    return Prompts().AskBeforeLoss(2204, text);
}

}  // namespace

void FillProjects(std::string_view folder, std::string_view excludedPath, ProjectListing& listing) {
    listing.Projects.RemoveAll();
    listing.Rows.clear();
    const CListing remembered;
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
    const CListing remembered;
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

namespace {

// Without its attributes it would be listed without a name: a disk that is full may have room for the copy
// and no more. What can't even be opened stays, since it may be what is wrong with the standard.
void DropUnnamed(std::string_view path) {
    bool opens = false;
    {
        CSilentPrompts silent;
        const CSeamScope scope({.Prompts = &silent});
        CDbRec database;
        opens = database.OpenDatabase(path, CDbPassword, CDbBase::Access::Shared);
    }
    if (opens) {
        (void)HostFiles().DeleteFile(path);
    }
}

}  // namespace

std::string CreateProject(const ProjectProperties& properties, int criterionIndex,
                          const CCriterionDataArray& criteria) {
    if (!CanSaveProject(properties, criterionIndex, criteria)) {
        return {};
    }
    const std::string path = FreeProjectPath();
    const std::string& source = criteria[criterionIndex].Path;
    if (OldFiles().IsOld(source)) {
        if (!OldFiles().ConvertTo(source, path, CDbPassword)) {
            return {};
        }
    } else if (COpenFile::IsOpen(HostFiles().HostPath(source)) ||  // a copy would take its lock away
               !HostFiles().CopyFile(source, path, CHostFiles::Existing::Keep)) {
        ShowMessage(2203, path);
        return {};
    }
    if (!WriteNewAttrib(path, properties, FormatInt(criterionIndex), CDbBase::Access::Making)) {
        DropUnnamed(path);
        return {};
    }
    return path;
}

DatabaseKind KindOfDatabase(std::string_view path) {
    if (!HostFiles().Exists(path)) {
        return DatabaseKind::None;
    }
    if (COpenFile::IsHeld(HostFiles().HostPath(path))) {
        return DatabaseKind::InUse;
    }
    CSilentPrompts silent;
    const CSeamScope scope({.Prompts = &silent});
    _PRO_DATA project;
    if (OldFiles().IsOld(path)) {
        return ReadListed(path, CDbPassword, project, nullptr) && project.ProjectName.empty()
                   ? DatabaseKind::Standard
                   : DatabaseKind::Project;
    }
    CDbRec database;
    CTestingDataArray sections;
    if (database.OpenDatabase(path, CDbPassword, CDbBase::Access::Shared)) {
        const bool standard = database.ReadAttrib(project) && project.ProjectName.empty() &&
                              database.ReadTestings(sections) && sections.GetSize() == 0;
        return standard ? DatabaseKind::Standard : DatabaseKind::Project;
    }
    return EqualNoCase(GetFileExtension(path), "mdb") ? DatabaseKind::Unreadable : DatabaseKind::None;
}

bool WriteNewAttrib(std::string_view path, const ProjectProperties& properties,
                    std::string_view standardIndex, CDbBase::Access access) {
    _PRO_DATA attributes;
    attributes.ProjectName = properties.ProjectName;
    attributes.Comment = properties.Comment;
    attributes.ProjectIndex = properties.ProjectIndex;
    attributes.StandardIndex = standardIndex;
    attributes.Location = properties.Location;
    CDbRec database;
    return database.OpenDatabase(path, CDbPassword, access) && database.WriteAttrib(attributes, true);
}

bool DeleteProject(std::string_view path, const ProjectRow* shown) {
    if (!AskToDelete(path, shown) || !ReadForDeletion(path)) {
        return false;
    }
    if (!Desktop().CopyToTrash(path) && !AskBeforeLoss(MessageNoTrash)) {
        return false;
    }
    const std::string sonar = OwnSonarFolder(path);
    try {
        // Nobody converts a project to throw it away.
        if (!(OldFiles().IsOld(path) ? RemoveOld(path) : EmptyAndRemove(path))) {
            return false;
        }
    } catch (const CDbError&) {
        ShowMessage(2205);
        return false;
    }
    (void)HostFiles().DeleteFile(std::string(path) + JournalEnding);
    if (!sonar.empty()) {
        (void)HostFiles().RemoveFolder(sonar);
    }
    return true;
}

std::vector<std::string> UnreadableFiles(const ProjectListing& listing) {
    std::vector<std::string> paths;
    std::size_t row = 0;
    for (const _PRO_DATA& project : listing.Projects) {
        if (row < listing.Rows.size() && listing.Rows[row].OwnPath == project.ProjectPath) {
            ++row;
        } else {
            paths.push_back(project.ProjectPath);
        }
    }
    return paths;
}

bool SetAside(const std::vector<std::string>& paths) {
    std::string stay;
    for (const std::string& path : paths) {
        const std::string folder = GetParentFolder(path) + "unreadable\\";
        std::string target = folder + GetFileName(path);
        for (int number = 2; HostFiles().Exists(target); ++number) {
            target = folder + GetFileTitle(path) + " (" + FormatInt(number) + ")." + GetFileExtension(path);
        }
        if (COpenFile::IsHeld(HostFiles().HostPath(path)) || !HostFiles().MakeFolder(folder) ||
            !HostFiles().MoveFile(path, target)) {
            stay += "\r\n" + GetFileName(path);
        } else if (HostFiles().Exists(path + JournalEnding)) {
            (void)HostFiles().MoveFile(path + JournalEnding, target + JournalEnding);
        }
    }
    if (!stay.empty()) {
        ShowMessage(MessageStays, stay);
    }
    return stay.empty();
}
