// Text at the border between the program (UTF-8) and its controls.
#pragma once

#include <QString>
#include <string>
#include <string_view>

class QPlainTextEdit;

QString ToQt(std::string_view text);
std::string FromQt(const QString& text);
// Takes what the operator has made of the text in an edit of several lines, its lines ended by CR LF as the
// files of the field's machines have them. A text that nobody touched stays to the byte: the edit would turn
// its line ends, and its hard blanks into plain ones.
void ReadEdited(const QPlainTextEdit& edit, std::string& text);
// Text of a language message.
QString MessageText(int number);
