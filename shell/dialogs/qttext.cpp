#include "shell/dialogs/qttext.h"

#include <QPlainTextEdit>

#include "shell/language.h"

QString ToQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string FromQt(const QString& text) {
    return text.toStdString();
}

void ReadEdited(const QPlainTextEdit& edit, std::string& text) {
    if (edit.document()->isModified()) {
        text = FromQt(edit.toPlainText().replace('\n', "\r\n"));
    }
}

QString MessageText(int number) {
    return ToQt(LoadMessage(number));
}
