#include "geo/dialogs/mapfiles.h"

#include <QBuffer>
#include <algorithm>
#include <array>
#include <optional>

#include "geo/mapview/CTileFile.h"
#include "geo/mapview/maptexts.h"
#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"

namespace {

constexpr std::size_t MostPageBytes = std::size_t{8} << 20;
constexpr std::size_t MostPictureBytes = std::size_t{64} << 20;

// By the beginning of the file; what is none of these isn't shown.
const char* PictureType(std::string_view bytes) {
    constexpr std::array<std::pair<std::string_view, const char*>, 5> beginnings = {
        {{"\xFF\xD8\xFF", "image/jpeg"},
         {"\x89PNG\r\n", "image/png"},
         {"BM", "image/bmp"},
         {"GIF8", "image/gif"},
         {"RIFF", "image/webp"}}};
    for (const auto& [beginning, type] : beginnings) {
        if (bytes.starts_with(beginning)) {
            return type;
        }
    }
    return nullptr;
}

MapFile AsPicture(std::optional<std::string> bytes) {
    const char* type = bytes ? PictureType(*bytes) : nullptr;
    return type == nullptr ? MapFile() : MapFile{type, std::move(*bytes)};
}

}  // namespace

MapFile ReadPageFile(std::string_view path) {
    const std::string name(path.substr(path.starts_with('/') ? 1 : 0));
    const bool plain = std::all_of(name.begin(), name.end(), [](unsigned char c) {
        return c < 128 && (std::isalnum(c) != 0 || c == '.' || c == '-' || c == '_' || c == '/');
    });
    if (!plain || name.empty() || name.front() == '/' || name.find("..") != name.npos) {
        return {};
    }
    std::string text = name;
    std::replace(text.begin(), text.end(), '/', '\\');
    std::optional<std::string> bytes =
        HostFiles().ReadFile(GetParentFolder(GetMapScriptPath()) + text, MostPageBytes);
    if (!bytes) {
        return {};
    }
    const std::string extension = GetFileExtension(text);
    const char* type = extension == "srp"   ? "text/html;charset=UTF-8"
                       : extension == "js"  ? "text/javascript;charset=UTF-8"
                       : extension == "css" ? "text/css;charset=UTF-8"
                                            : PictureType(*bytes);
    return type == nullptr ? MapFile() : MapFile{type, std::move(*bytes)};
}

MapFile ReadPicture(std::string_view path, const std::set<std::string>& allowed) {
    const std::string picture = PictureOfAddress(path);
    return allowed.contains(picture) ? AsPicture(HostFiles().ReadFile(picture, MostPictureBytes)) : MapFile();
}

MapFile ReadTile(std::string_view path, const CTileFile* file) {
    std::array<int, 3> place{};
    std::size_t at = 0;
    for (int& number : place) {
        const std::size_t end = std::min(path.find('/', at + 1), path.size());
        const std::optional<std::int64_t> value =
            at < path.size() ? ParseWholeInt(path.substr(at + 1, end - at - 1)) : std::nullopt;
        constexpr std::int64_t Most = 1 << 30;
        if (!value || *value < 0 || *value > Most) {
            return {};
        }
        number = static_cast<int>(*value);
        at = end;
    }
    return file == nullptr ? MapFile() : AsPicture(file->Tile(place[0], place[1], place[2]));
}

std::string OriginOf(std::string_view address) {
    const std::size_t host = address.find("://");
    if (host == address.npos) {
        return {};
    }
    return std::string(address.substr(0, std::min(address.find('/', host + 3), address.size())));
}

std::string PngOf(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    return !picture.isNull() && picture.save(&buffer, "PNG") ? bytes.toStdString() : std::string();
}
