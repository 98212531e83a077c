#include "geo/staticmap/CStaticMap.h"

#include <algorithm>
#include <array>

#include "geo/staticmap/chinashift.h"
#include "geo/staticmap/httpget.h"
#include "shell/CHostFiles.h"
#include "shell/CProfile.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"

namespace {

constexpr std::size_t MostLines = 50;  // more make a URL that the service refuses
constexpr std::size_t LineNumbers = 4;
constexpr std::size_t MaxFileSize = 1u << 20;

struct Service {
    std::string Host;    // or "host:port"; empty where none was set up
    std::string System;  // that positions are turned to; empty: they go out as they are stored
};

Service ReadService() {
    const std::optional<std::string> content = HostFiles().ReadFile(GetAppFolder() + "map.ini", MaxFileSize);
    const CProfile profile(content.value_or(std::string()));
    const bool turn = EqualNoCase(profile.Get("static_image", "turn"), "yes");
    return {profile.Get("static_image", "host"), turn ? profile.Get("tiles", "system") : std::string()};
}

std::string Position(double x, double y, const std::string& system) {
    constexpr int Decimals = 12;
    const auto [shiftedX, shiftedY] = ShiftedPosition(x, y, system);
    return FormatNumber(shiftedX, Decimals) + "," + FormatNumber(shiftedY, Decimals);
}

}  // namespace

bool CStaticMap::AddPath(double x1, double y1, double x2, double y2) {
    const std::array<double, LineNumbers> line{x1, y1, x2, y2};
    if (std::find(line.begin(), line.end(), 0.0) != line.end() || m_lines.size() >= MostLines * LineNumbers) {
        return false;
    }
    for (std::size_t at = 0; at < m_lines.size(); at += LineNumbers) {
        if (std::equal(line.begin(), line.end(), m_lines.data() + at)) {
            return true;
        }
    }
    m_lines.insert(m_lines.end(), line.begin(), line.end());
    return true;
}

bool CStaticMap::GetImage(const std::string& targetPath) const {
    (void)HostFiles().DeleteFile(targetPath);
    const Service service = ReadService();
    if (service.Host.empty()) {
        return true;
    }
    std::string paths;
    for (std::size_t at = 0; at < m_lines.size(); at += LineNumbers) {
        paths += at == 0 ? "" : "|";
        paths += Position(m_lines[at], m_lines[at + 1], service.System) + ";" +
                 Position(m_lines[at + 2], m_lines[at + 3], service.System);
    }
    // The lines go out as they are: the service takes ",", ";" and "|" plain.
    return HttpGetToFile("http://" + service.Host + "/staticimage?width=640&height=480&paths=" + paths +
                             "&pathStyles=0xff0000,5,1",
                         targetPath);
}
