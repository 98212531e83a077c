#include "shell/paths.h"

#include <algorithm>

#include "shell/CHostFiles.h"
#include "shell/seams.h"
#include "shell/textcodec.h"

namespace {

std::string& AppFolder() {
    static std::string folder;
    return folder;
}

}  // namespace

void SetAppFolder(std::string_view folder) {
    AppFolder() = folder;
    if (!folder.empty() && !folder.ends_with('\\')) {
        AppFolder() += '\\';
    }
}

std::string GetAppFolder() {
    return AppFolder();
}

std::string GetDbFolder() {
    return GetAppFolder() + "db\\";
}

std::string GetCriterionFolder() {
    return GetDbFolder() + "Criterion\\";
}

std::string GetLanguageFolder() {
    return GetAppFolder() + "Language\\";
}

std::string GetMapScriptPath() {
    return GetAppFolder() + "map\\map.srp";
}

std::string GetReportImageFolder() {
    return GetAppFolder() + "word\\Template\\Images\\";
}

std::string GetFileName(std::string_view path) {
    return std::string(path.substr(path.rfind('\\') + 1));  // npos + 1 is 0
}

std::string GetFileTitle(std::string_view path) {
    const std::string name = GetFileName(path);
    const std::size_t point = name.rfind('.');
    return point == std::string::npos || point == 0 ? name : name.substr(0, point);
}

std::string GetFileExtension(std::string_view path) {
    const std::string name = GetFileName(path);
    const std::size_t point = name.rfind('.');
    return point == std::string::npos ? std::string() : name.substr(point + 1);
}

std::string WithExtension(std::string_view path, std::string_view extension) {
    const bool has = path.size() >= extension.size() &&
                     EqualNoCase(path.substr(path.size() - extension.size()), extension);
    return std::string(path).append(has ? std::string_view() : extension);
}

std::string GetParentFolder(std::string_view path) {
    std::string text(path);
    std::replace(text.begin(), text.end(), '/', '\\');
    if (text.ends_with('\\')) {
        text.pop_back();
    }
    text.erase(text.rfind('\\') + 1);
    return text == "\\" ? std::string() : text;
}

std::string MakeOriginalPath(std::string_view path) {
    const std::size_t point = path.rfind('.');
    std::string text(path);
    return text.insert(point == std::string_view::npos ? 0 : point, "_original");
}

void BackupOriginal(std::string_view path) {
    (void)HostFiles().CopyFile(path, MakeOriginalPath(path), CHostFiles::Existing::Keep);
}
