#include "store/newsections.h"

#include <algorithm>

#include "shell/CClock.h"
#include "shell/CHostFiles.h"
#include "shell/CProgress.h"
#include "shell/CPrompts.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/settings.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/stepnames.h"

namespace {

bool IsNewSection(CDbRec& database, const _TESTING_DATA& section) {
    try {
        if (!database.FindTestingByWells(section.StartWell, section.EndWell)) {
            return true;
        }
        ShowMessage(2189);
    } catch (const CDbError&) {
        ShowMessage(2013);
    }
    return false;
}

bool MakeFolder(const std::string& folder) {
    if (HostFiles().MakeFolder(folder)) {
        return true;
    }
    ShowMessage(2202, folder);
    return false;
}

std::string FreeFolder(const std::string& parent) {
    for (auto time = Clock().LocalNow();; time += std::chrono::seconds(1)) {
        std::string folder = parent + FormatTime(time, "%Y-%m-%d-%H%M%S\\");
        if (!HostFiles().Exists(folder)) {
            return folder;
        }
    }
}

// Where the video lies afterwards; empty on failure.
std::string CopyVideo(const std::string& video, const std::string& folder, const CopyProgress& progress) {
    std::string name = video;
    std::replace(name.begin(), name.end(), '/', '\\');
    name = GetFileName(name);
    // It separates the videos of a section, so it can't be part of one.
    std::replace(name.begin(), name.end(), '*', '_');
    std::string target = folder + name;
    const std::unique_ptr<CProgress> shown = progress(name);
    const bool copied = HostFiles().CopyFile(video, target, CHostFiles::Existing::Keep, *shown);
    return copied ? target : std::string();
}

bool AddNewSection(CDbRec& database, _TESTING_DATA section, const CopyProgress& progress) {
    if (!IsNewSection(database, section)) {
        return false;
    }
    std::string parent = GetWorkFolder();
    if (!parent.ends_with('\\')) {
        parent += '\\';
    }
    if (!MakeFolder(parent)) {
        return false;
    }
    const std::string folder = FreeFolder(parent);
    if (!MakeFolder(folder)) {
        return false;
    }
    const std::string copy = CopyVideo(section.VideoFileList, folder, progress);
    if (copy.empty()) {
        (void)HostFiles().RemoveEmptyFolder(folder);
        ShowMessage(2190);
        return false;
    }
    section.VideoFileList = copy;
    if (!database.AddTesting(section)) {
        (void)HostFiles().DeleteFile(copy);
        (void)HostFiles().RemoveEmptyFolder(folder);
        return false;
    }
    return true;
}

}  // namespace

bool AddNewSections(CDbRec& database, const std::vector<_TESTING_DATA>& sections,
                    const CopyProgress& progress) {
    const CDbStep step(database, StepAddSection);
    return std::all_of(sections.begin(), sections.end(), [&](const _TESTING_DATA& section) {
        return AddNewSection(database, section, progress);
    });
}
