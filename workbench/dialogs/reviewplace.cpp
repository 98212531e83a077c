#include "workbench/dialogs/reviewplace.h"

#include "shell/dialogs/projectsettings.h"

namespace {

constexpr const char* Group = "LastSection";

}  // namespace

std::int32_t LastSection(std::string_view projectPath) {
    const QVariant kept = ProjectSetting(Group, projectPath);
    return kept.isValid() ? kept.toInt() : -1;
}

void RememberSection(std::string_view projectPath, std::int32_t sectionId) {
    KeepProjectSetting(Group, projectPath, sectionId);
}
