#include "shell/newpipedefaults.h"

#include <array>
#include <optional>
#include <utility>

#include "shell/CHostFiles.h"
#include "shell/CProfile.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"

namespace {

constexpr const char* Section = "new_pipe_section";
constexpr std::size_t MaxValueBytes = 99;  // readers of this file have buffers of 100
constexpr std::size_t MaxFileSize = 16u << 20;

using Field = std::pair<const char*, std::string NewPipeDefaults::*>;

constexpr std::array<Field, 12> Fields{{
    {"section_name", &NewPipeDefaults::SectionName},
    {"start_jing_du", &NewPipeDefaults::StartLongitude},
    {"start_wei_du", &NewPipeDefaults::StartLatitude},
    {"end_jing_du", &NewPipeDefaults::EndLongitude},
    {"end_wei_du", &NewPipeDefaults::EndLatitude},
    {"task_no", &NewPipeDefaults::TaskNo},
    {"task_name", &NewPipeDefaults::TaskName},
    {"place", &NewPipeDefaults::Place},
    {"pipe_dia", &NewPipeDefaults::PipeDiameter},
    {"pipe_len", &NewPipeDefaults::PipeLength},
    {"company", &NewPipeDefaults::Company},
    {"oprator", &NewPipeDefaults::Tester},
}};

std::string ConfigPath() {
    return GetAppFolder() + "config.ini";
}

NewPipeDefaults& InMemory() {
    static NewPipeDefaults values;
    return values;
}

}  // namespace

NewPipeDefaults LoadNewPipeDefaults() {
    const CProfile profile(HostFiles().ReadFile(ConfigPath(), MaxFileSize).value_or(std::string()));
    NewPipeDefaults values;
    for (const auto& [key, field] : Fields) {
        values.*field = Utf8FromGbk(profile.Get(Section, key).substr(0, MaxValueBytes));
    }
    return values;
}

bool SaveNewPipeDefaults(const NewPipeDefaults& values) {
    const std::string path = ConfigPath();
    const std::optional<std::string> former = HostFiles().ReadFile(path, MaxFileSize);
    if (!former && HostFiles().Exists(path)) {
        return false;  // what can't be read can't be kept, so it isn't replaced
    }
    CProfile profile(former.value_or(std::string()));
    for (const auto& [key, field] : Fields) {
        profile.Set(Section, key, GbkFromUtf8(values.*field));
    }
    return HostFiles().WriteFile(path, profile.Content());
}

NewPipeDefaults GetNewPipeDefaults() {
    return InMemory();
}

void SetNewPipeDefaults(const NewPipeDefaults& values) {
    InMemory() = values;
}
