#include "workbench/capture/picturepath.h"

#include "shell/CClock.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/paths.h"
#include "shell/seams.h"

namespace {

// File systems take 255 bytes. Behind the title come the time and the ending, and "_original" in the name
// of the twin.
constexpr std::size_t MaxTitle = 255 - 7 - 4 - 9;

std::string FittingTitle(std::string_view video) {
    std::string title = GetFileTitle(video);
    if (title.size() > MaxTitle) {
        std::size_t end = MaxTitle;
        while (end > 0 && (static_cast<unsigned char>(title[end]) & 0xC0) == 0x80) {
            --end;  // not in the middle of a character
        }
        title.resize(end);
    }
    return title;
}

std::string PictureFolder(std::string_view video) {
    const std::size_t separator = video.rfind('\\');
    return separator == std::string_view::npos ? std::string()
                                               : std::string(video.substr(0, separator + 1)) + "picture\\";
}

}  // namespace

std::string FreePicturePath(std::string_view beginning, const char* format) {
    const auto now = Clock().LocalNow();
    for (auto time = now; time < now + std::chrono::days(1); time += std::chrono::seconds(1)) {
        const std::string path = std::string(beginning) + FormatTime(time, format) + ".jpg";
        if (!HostFiles().Exists(path) && !HostFiles().Exists(MakeOriginalPath(path))) {
            return path;
        }
    }
    return {};
}

std::string NamePicture(std::string_view video) {
    const std::string folder = PictureFolder(video);
    return folder.empty() ? folder : FreePicturePath(folder + FittingTitle(video), "_%H%M%S");
}

std::string BuildPicturePath(std::string_view video) {
    const std::string folder = PictureFolder(video);
    if (!folder.empty() && !HostFiles().MakeFolder(folder)) {
        ShowMessage(2202, folder);
        return {};
    }
    return NamePicture(video);
}
