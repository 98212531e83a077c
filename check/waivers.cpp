#include "check/waivers.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <utility>

#include "shell/CClock.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/documents.h"
#include "shell/paths.h"
#include "shell/seams.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t MostBytes = std::size_t{64} << 20U;

// The file that a path text leads to, however it is written.
std::string WholePath(std::string_view project) {
    std::error_code error;
    const std::filesystem::path path =
        std::filesystem::weakly_canonical(HostFiles().HostPath(project), error);
    return error ? HostFiles().HostPath(project) : path.string();
}

std::string FileOf(const std::string& wholePath) {
    std::uint64_t hash = 14695981039346656037U;  // FNV-1a
    for (const char c : wholePath) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    }
    std::array<char, 17> name{};
    (void)std::snprintf(name.data(), name.size(), "%016llx", static_cast<unsigned long long>(hash));
    const std::string folder = GetSettingsFolder();
    return folder.empty() ? folder : folder + "left\\" + name.data() + ".json";
}

Json ToJson(const Waiver& waiver) {
    return {{"rule", waiver.Finding.Rule},
            {"section", waiver.Finding.Section},
            {"record", waiver.Finding.Record},
            {"field", waiver.Finding.Field},
            {"value", waiver.Finding.Value},
            {"reason", waiver.Reason},
            {"time", waiver.Time}};
}

Waiver FromJson(const Json& json) {
    return {{json.at("rule").get<int>(), json.at("section").get<std::int32_t>(),
             json.at("record").get<std::int32_t>(), json.at("field").get<std::string>(),
             json.at("value").get<std::string>()},
            json.at("reason").get<std::string>(),
            json.at("time").get<std::string>()};
}

}  // namespace

CWaivers::CWaivers(std::string_view project) : m_project(WholePath(project)), m_file(FileOf(m_project)) {
    if (m_file.empty() || !HostFiles().Exists(m_file)) {
        return;
    }
    try {
        const std::optional<std::string> text = HostFiles().ReadFile(m_file, MostBytes);
        const Json json = Json::parse(text.value_or(std::string()));
        if (json.at("project").get<std::string>() == m_project) {
            for (const Json& entry : json.at("left")) {
                m_waivers.push_back(FromJson(entry));
            }
        }
    } catch (const Json::exception&) {
        m_waivers.clear();
        m_broken = true;
        ShowMessage(3840, "\r\n" + m_file);
    }
}

const std::string* CWaivers::ReasonOf(const CheckFinding& finding) const {
    const auto found = std::find_if(m_waivers.begin(), m_waivers.end(),
                                    [&](const Waiver& waiver) { return waiver.Finding == finding; });
    return found == m_waivers.end() ? nullptr : &found->Reason;
}

bool CWaivers::Waive(const std::vector<CheckFinding>& findings, const std::string& reason) {
    std::vector<Waiver> waivers = m_waivers;
    const std::string time = FormatTime(Clock().LocalNow(), "%Y-%m-%d %H:%M:%S");
    for (const CheckFinding& finding : findings) {
        std::erase_if(waivers, [&](const Waiver& waiver) { return waiver.Finding == finding; });
        waivers.push_back({finding, reason, time});
    }
    return Keep(std::move(waivers));
}

bool CWaivers::TakeBack(const std::vector<CheckFinding>& findings) {
    std::vector<Waiver> waivers = m_waivers;
    for (const CheckFinding& finding : findings) {
        std::erase_if(waivers, [&](const Waiver& waiver) { return waiver.Finding == finding; });
    }
    return Keep(std::move(waivers));
}

bool CWaivers::Keep(std::vector<Waiver> waivers) {
    if (m_broken) {
        ShowMessage(3840, "\r\n" + m_file);
        return false;
    }
    Json left = Json::array();
    for (const Waiver& waiver : waivers) {
        left.push_back(ToJson(waiver));
    }
    const std::string text =
        Json{{"project", m_project}, {"left", left}}.dump(1, '\t', false, Json::error_handler_t::replace);
    if (m_file.empty() || !HostFiles().MakeFolder(GetParentFolder(m_file)) ||
        !HostFiles().WriteFile(m_file, text + '\n')) {
        ShowMessage(3841, "\r\n" + m_file);
        return false;
    }
    m_waivers = std::move(waivers);
    return true;
}
