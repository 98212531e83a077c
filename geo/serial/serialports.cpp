#include "geo/serial/serialports.h"

#include <libserialport.h>

#include <filesystem>
#include <optional>

#include "shell/CHostFiles.h"
#include "shell/CProfile.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"

namespace {

constexpr std::size_t MostBytes = 65536;
constexpr const char* Section = "ports";

std::string FilePath() {
    return GetAppFolder() + "ports.ini";
}

CProfile ReadTies() {
    return CProfile(HostFiles().ReadFile(FilePath(), MostBytes).value_or(std::string()));
}

}  // namespace

std::string TiedDevice(int port) {
    return ReadTies().Get(Section, FormatInt(port));
}

bool TieDevice(int port, const std::string& device) {
    CProfile ties = ReadTies();
    ties.Set(Section, FormatInt(port), device);
    return HostFiles().WriteFile(FilePath(), ties.Content());
}

std::string SerialDeviceName(int port) {
    if (std::string tied = TiedDevice(port); !tied.empty()) {
        return tied;
    }
    std::string name;
    for (const char* kind : {"/dev/ttyUSB", "/dev/ttyACM", "/dev/ttyS"}) {
        name = kind + FormatInt(port - 1);
        std::error_code error;
        if (std::filesystem::exists(name, error)) {
            break;
        }
    }
    return name;
}

std::vector<SerialPortInfo> FindSerialPorts() {
    std::vector<SerialPortInfo> found;
    sp_port** ports = nullptr;
    if (sp_list_ports(&ports) != SP_OK) {
        return found;
    }
    for (sp_port** port = ports; *port != nullptr; ++port) {
        const char* name = sp_get_port_name(*port);
        const char* description = sp_get_port_description(*port);
        found.push_back({name == nullptr ? "" : name, description == nullptr ? "" : description});
    }
    sp_free_port_list(ports);
    return found;
}
