#include "shell/dialogs/projectsettings.h"

#include <QCryptographicHash>
#include <QSettings>

#include "shell/dialogs/qttext.h"

namespace {

QSettings Settings() {
    return QSettings(QSettings::IniFormat, QSettings::UserScope, "drovane", "review");
}

// A path may hold what a key can't.
QString KeyOf(const QString& group, std::string_view projectPath) {
    const QByteArray path = ToQt(projectPath).toLower().toUtf8();
    return group + '/' + QCryptographicHash::hash(path, QCryptographicHash::Sha256).toHex().left(32);
}

}  // namespace

QVariant ProjectSetting(const QString& group, std::string_view projectPath) {
    return UserSetting(KeyOf(group, projectPath));
}

void KeepProjectSetting(const QString& group, std::string_view projectPath, const QVariant& value) {
    KeepUserSetting(KeyOf(group, projectPath), value);
}

QVariant UserSetting(const QString& key) {
    return Settings().value(key);
}

void KeepUserSetting(const QString& key, const QVariant& value) {
    Settings().setValue(key, value);
}
