#include "defects/defectpictures.h"

#include <algorithm>

#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/language.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "workbench/capture/grabframe.h"
#include "workbench/capture/picturepath.h"

namespace {

constexpr int MostPictures = 2;

bool Names(const _REC_DATA& record, std::string_view path) {
    return std::any_of(record.Pictures.begin(), record.Pictures.end(),
                       [path](const _PIC_DATA& picture) { return EqualNoCase(picture.Picture, path); });
}

}  // namespace

std::string SecondPicturePath(std::string_view first) {
    return GetParentFolder(first) + GetFileTitle(first) + "_Ex." + GetFileExtension(first);
}

bool AddPictureFromFile(_REC_DATA& record, double firstTime) {
    if (record.Pictures.GetSize() >= MostPictures) {
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
    const std::string path =
        record.Pictures.IsEmpty() ? BuildPicturePath(record.Video) : SecondPicturePath(record.GetPicture1());
    if (path.empty() || !HostFiles().CopyFile(chosen, path, CHostFiles::Existing::Replace)) {
        ShowMessage(2702);
        return false;
    }
    if (!Names(record, path)) {
        // Left behind by a form that was cancelled, it would keep another picture than this. Not before the
        // copy: it may be the file chosen.
        (void)HostFiles().DeleteFile(MakeOriginalPath(path));
    }
    BackupOriginal(path);
    record.AddPicture(path, record.Pictures.IsEmpty() ? firstTime : record.GetPicTime1());
    return true;
}

void DeletePictureFiles(const std::string& path) {
    if (path.empty()) {
        return;
    }
    if (!HostFiles().DeleteFile(path) && HostFiles().Exists(path)) {
        ShowMessage(2105, " \r\n" + path);
    }
    (void)HostFiles().DeleteFile(MakeOriginalPath(path));
}

void ResetPicture(const std::string& path) {
    (void)HostFiles().CopyFile(MakeOriginalPath(path), path, CHostFiles::Existing::Replace);
}

std::optional<_REC_DATA> TakeDefect(const _TESTING_DATA& section, std::string_view video, double seconds) {
    const std::string path = BuildPicturePath(video);
    if (path.empty()) {
        return std::nullopt;
    }
    if (!GrabFrame(video, seconds, path)) {
        ShowMessage(2195);
    }
    BackupOriginal(path);
    _REC_DATA record;
    record.AddPicture(path, static_cast<float>(seconds));
    record.Video = video;
    record.GpsX = section.GpsXStart;
    record.GpsY = section.GpsYStart;
    return record;
}

void DropDefect(std::string_view picture) {
    (void)HostFiles().DeleteFile(picture);
    (void)HostFiles().DeleteFile(MakeOriginalPath(picture));
}

_REC_DATA TakeManhole(std::string_view video, double seconds) {
    const std::string path = BuildPicturePath(video);
    if (path.empty() || !GrabFrame(video, seconds, path)) {
        ShowMessage(2195);
    }
    _REC_DATA record;
    record.AddPicture(path, seconds);
    record.Video = video;
    return record;
}

void DropManhole(std::string_view picture) {
    if (!picture.empty()) {
        (void)HostFiles().DeleteFile(picture);
    }
}
