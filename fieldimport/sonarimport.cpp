#include "fieldimport/sonarimport.h"

#include <string>

#include "shell/CHostFiles.h"
#include "shell/CProfile.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/sonar.h"

namespace {

std::string SectionProfile(std::int32_t sectionId) {
    CProfile profile({});
    profile.Set(SonarIniKey, SonarIniKey, FormatInt(sectionId));
    return profile.Content();
}

}  // namespace

void StoreSonarFiles(std::string_view projectPath, std::string_view sonarPath, std::int32_t sectionId) {
    const std::string folder = SonarFolder(projectPath);
    if (folder.empty()) {
        return;
    }
    if (const std::string former = OwnSonarFolder(projectPath); !former.empty()) {
        (void)HostFiles().RemoveFolder(former);
    }
    (void)HostFiles().MakeFolder(folder);
    (void)HostFiles().CopyFile(sonarPath, folder + SonarXmlName, CHostFiles::Existing::Keep);
    (void)HostFiles().WriteFile(folder + SonarIniName, SectionProfile(sectionId));
}

bool HoldsSonarFiles(std::string_view projectPath, std::string_view sonarPath, std::int32_t sectionId) {
    const std::string folder = SonarFolder(projectPath);
    const auto read = [](const std::string& path) { return HostFiles().ReadFile(path, MaxSonarBytes); };
    const auto kept = read(folder + SonarXmlName);
    return !folder.empty() && kept && kept == read(std::string(sonarPath)) &&
           read(folder + SonarIniName) == SectionProfile(sectionId);
}
