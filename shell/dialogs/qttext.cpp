#include "shell/dialogs/qttext.h"

#include "shell/language.h"

QString ToQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string FromQt(const QString& text) {
    return text.toStdString();
}

QString MessageText(int number) {
    return ToQt(LoadMessage(number));
}
