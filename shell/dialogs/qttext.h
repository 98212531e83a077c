// Text at the border between the program (UTF-8) and its controls.
#pragma once

#include <QString>
#include <string>
#include <string_view>

QString ToQt(std::string_view text);
std::string FromQt(const QString& text);
// Text of a language message.
QString MessageText(int number);
