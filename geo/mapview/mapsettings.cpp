#include "geo/mapview/mapsettings.h"

#include <algorithm>
#include <optional>

#include "shell/CHostFiles.h"
#include "shell/CProfile.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"

namespace {

constexpr std::size_t MaxFileSize = 1u << 20;
constexpr const char* Section = "tiles";

}  // namespace

MapTiles ReadMapTiles() {
    const std::optional<std::string> content = HostFiles().ReadFile(GetAppFolder() + "map.ini", MaxFileSize);
    const std::string text = content.value_or(std::string());
    const CProfile profile(IsValidUtf8(text) ? text : Utf8FromGbk(text));
    MapTiles tiles;
    tiles.Address = profile.Get(Section, "url");
    if (!tiles.Address.starts_with("http://") && !tiles.Address.starts_with("https://")) {
        tiles.Address.clear();
    }
    tiles.Attribution = profile.Get(Section, "attribution");
    tiles.File = profile.Get(Section, "mbtiles");
    std::replace(tiles.File.begin(), tiles.File.end(), '/', '\\');
    if (const std::optional<std::int64_t> zoom = ParseWholeInt(profile.Get(Section, "max_zoom"))) {
        tiles.DeepestZoom = static_cast<int>(std::clamp<std::int64_t>(*zoom, 1, 22));
    }
    const std::string system = profile.Get(Section, "system");
    for (const char* known : {"GCJ-02", "BD-09"}) {
        if (EqualNoCase(system, known)) {
            tiles.System = known;
        }
    }
    return tiles;
}
