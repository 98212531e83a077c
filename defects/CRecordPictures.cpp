#include "defects/CRecordPictures.h"

#include <algorithm>

#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/failures.h"
#include "shell/language.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/recordpictures.h"
#include "workbench/capture/grabframe.h"
#include "workbench/capture/picturepath.h"

namespace {

constexpr int MostPictures = 2;
constexpr int MessageNoTwin = 3306;
constexpr int MessageNoOriginal = 3307;
constexpr int MessageNotReset = 3308;

bool IsAbsolute(std::string_view folder) {
    return folder.starts_with('\\') || folder.substr(0, 3).ends_with(":\\");
}

void TellReason(int message, std::string_view path) {
    ShowMessage(message,
                std::string("\r\n").append(path).append("\r\n") + FailureText(HostFiles().LastError()));
}

void DeleteTold(std::string_view path) {
    if (!HostFiles().DeleteFile(path) && HostFiles().Exists(path)) {
        ShowMessage(2105, std::string(" \r\n").append(path));
    }
}

}  // namespace

std::string SecondPicturePath(std::string_view first) {
    return GetParentFolder(first) + GetFileTitle(first) + "_Ex." + GetFileExtension(first);
}

bool KeepOriginal(std::string_view path) {
    const std::string twin = MakeOriginalPath(path);
    if (HostFiles().Exists(twin) || HostFiles().CopyFile(path, twin, CHostFiles::Existing::Keep)) {
        return true;
    }
    TellReason(MessageNoTwin, path);
    return false;
}

bool ResetPicture(std::string_view path) {
    const std::string twin = MakeOriginalPath(path);
    if (!HostFiles().Exists(twin)) {
        ShowMessage(MessageNoOriginal, std::string("\r\n").append(path));
        return false;
    }
    if (!HostFiles().CopyFile(twin, path, CHostFiles::Existing::Replace)) {
        TellReason(MessageNotReset, path);
        return false;
    }
    return true;
}

void DeletePictureFiles(std::string_view path) {
    if (!path.empty()) {
        DeleteTold(path);
        (void)HostFiles().DeleteFile(MakeOriginalPath(path));
    }
}

const std::string& CRecordPictures::Make(std::string path) {
    return m_made.emplace_back(std::move(path));
}

bool CRecordPictures::Names(std::string_view path) const {
    return std::any_of(m_record.Pictures.begin(), m_record.Pictures.end(),
                       [path](const _PIC_DATA& picture) { return EqualNoCase(picture.Picture, path); });
}

bool CRecordPictures::AddFrame(std::string_view video, double seconds, double time, int failure, Twin twin) {
    const bool there = HostFiles().Exists(video);
    const std::string path = there ? BuildPicturePath(video) : NamePicture(video);
    if (path.empty()) {
        return false;
    }
    if (!there || !GrabFrame(video, seconds, Make(path))) {
        ShowMessage(failure, std::string("\r\n").append(video));
    } else if (twin == Twin::AtOnce) {
        BackupOriginal(path);
    }
    AddPicture(m_record, path, time);
    return true;
}

bool CRecordPictures::AddFile(double firstTime) {
    if (m_record.Pictures.GetSize() >= MostPictures) {
        ShowMessage(2199);
        return false;
    }
    // All files are offered under this label.
    const std::string chosen =
        Prompts().PickOpenFile(LoadMessage(3181), {{LoadMessage(2701) + "(*.jpg)", {"*.*"}}});
    if (chosen.empty()) {
        return false;
    }
    // A record may have lost its first picture: the file gets the name that a frame of its video would get.
    const bool first = m_record.Pictures.IsEmpty();
    const std::string path =
        first ? BuildPicturePath(m_record.Video) : SecondPicturePath(m_record.GetPicture1());
    if (path.empty() || !HostFiles().CopyFile(chosen, path, CHostFiles::Existing::Replace)) {
        ShowMessage(2702);
        return false;
    }
    if (!Names(path)) {
        // Left behind by a form that ended with a crash, it would keep another picture than this. Not before
        // the copy: it may be the file chosen.
        (void)HostFiles().DeleteFile(MakeOriginalPath(path));
    }
    BackupOriginal(Make(path));
    AddPicture(m_record, path, first ? firstTime : m_record.GetPicTime1());
    return true;
}

bool CRecordPictures::AddManholeFile(std::string_view folder) {
    const std::string base = IsAbsolute(folder) ? std::string(folder) : GetParentFolder(m_record.Video);
    if (!IsAbsolute(base)) {
        // A record must not depend on the folder that the program happens to work in.
        ShowMessage(2702);
        return false;
    }
    const std::string chosen = Prompts().PickOpenFile(LoadMessage(3172), {{"(*.jpg)", {"*.jpg"}}});
    if (chosen.empty()) {
        return false;
    }
    const std::string target = base + "picture\\";
    (void)HostFiles().MakeFolder(target);
    const std::string path = FreePicturePath(target, "%H%M%S");
    if (path.empty() || !HostFiles().CopyFile(chosen, path, CHostFiles::Existing::Keep)) {
        ShowMessage(2702, "\r\n" + FailureText(HostFiles().LastError()));
        return false;
    }
    m_copies.push_back(path);
    AddPicture(m_record, path, 0.0);
    return true;
}

std::vector<std::string> CRecordPictures::Made() const {
    std::vector<std::string> made = m_made;
    made.insert(made.end(), m_copies.begin(), m_copies.end());
    return made;
}

void CRecordPictures::RemoveManholeFile(int index) {
    if (index >= 0 && index < m_record.Pictures.GetSize()) {
        DeleteTold(m_record.Pictures[index].Picture);
        m_record.Pictures.RemoveAt(index);
    }
}

void CRecordPictures::TakeBack() {
    for (const std::string& path : m_made) {
        (void)HostFiles().DeleteFile(path);
        (void)HostFiles().DeleteFile(MakeOriginalPath(path));
    }
    m_made.clear();
}
