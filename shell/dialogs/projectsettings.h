// What the program remembers of a project in its user's settings: conveniences, whose loss costs nothing.
// A project is known by the text of its path, without regard to case.
#pragma once

#include <QString>
#include <QVariant>
#include <string_view>

// `group` names what is remembered. Not valid if nothing was.
QVariant ProjectSetting(const QString& group, std::string_view projectPath);
void KeepProjectSetting(const QString& group, std::string_view projectPath, const QVariant& value);

// The same of the program as a whole.
QVariant UserSetting(const QString& key);
void KeepUserSetting(const QString& key, const QVariant& value);

// The path text of the project that was open last.
inline constexpr const char* LastProjectKey = "LastProject";
