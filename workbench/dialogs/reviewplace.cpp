#include "workbench/dialogs/reviewplace.h"

#include <QCryptographicHash>
#include <QSettings>

#include "shell/dialogs/qttext.h"

namespace {

constexpr const char* Group = "LastSection";

QSettings UserSettings() {
    return QSettings(QSettings::IniFormat, QSettings::UserScope, "drovane", "review");
}

// A path may hold what a key can't.
QString KeyOf(std::string_view projectPath) {
    const QByteArray path = ToQt(projectPath).toLower().toUtf8();
    return QString(Group) + '/' + QCryptographicHash::hash(path, QCryptographicHash::Sha256).toHex().left(32);
}

}  // namespace

std::int32_t LastSection(std::string_view projectPath) {
    return UserSettings().value(KeyOf(projectPath), -1).toInt();
}

void RememberSection(std::string_view projectPath, std::int32_t sectionId) {
    UserSettings().setValue(KeyOf(projectPath), sectionId);
}
