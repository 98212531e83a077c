#include "shell/dialogs/CQtPrompts.h"

#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QIcon>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>

#include "shell/CHostFiles.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"

namespace {

constexpr int MessageBackslash = 3000;
constexpr int IconSize = 40;

void NameButton(QAbstractButton* button, int number) {
    // With a missing language file the toolkit's own text beats an empty button.
    if (const QString text = MessageText(number); !text.isEmpty()) {
        button->setText(text);
    }
}

bool RunBox(QMessageBox::Icon kind, const std::string& text, QMessageBox::StandardButtons buttons,
            QMessageBox::StandardButton enter = QMessageBox::Ok) {
    QMessageBox box(kind, QApplication::applicationDisplayName(), ToQt(text), buttons,
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    if (const QIcon icon = QApplication::windowIcon(); !icon.isNull()) {
        box.setIconPixmap(icon.pixmap(QSize(IconSize, IconSize), box.devicePixelRatioF()));
    }
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    NameButton(box.button(QMessageBox::Ok), 50);
    if ((buttons & QMessageBox::Cancel) != 0) {
        NameButton(box.button(QMessageBox::Cancel), 51);
        box.setEscapeButton(QMessageBox::Cancel);
    }
    box.setDefaultButton(enter);
    // Also in the midst of work that shows the wait cursor, the box waits for the operator.
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    const bool confirmed = box.exec() == QMessageBox::Ok;
    QApplication::restoreOverrideCursor();
    return confirmed;
}

constexpr QFileDialog::Options ChooserOptions = QFileDialog::HideNameFilterDetails;

}  // namespace

QString ChooserFilters(const std::vector<FileFilter>& filters) {
    QStringList rows;
    for (const FileFilter& filter : filters) {
        QStringList patterns;
        for (const std::string& pattern : filter.Patterns) {
            const QString given = ToQt(pattern == "*.*" ? "*" : pattern);
            patterns << given;
            for (const QString& other : {given.toLower(), given.toUpper()}) {
                if (!patterns.contains(other)) {
                    patterns << other;
                }
            }
        }
        rows << ToQt(filter.Label) + " (" + patterns.join(' ') + ")";
    }
    return rows.join(";;");
}

void CQtPrompts::ShowMessage(int, const std::string& text) {
    (void)RunBox(QMessageBox::Information, text, QMessageBox::Ok);
}

bool CQtPrompts::AskOkCancel(int, const std::string& text) {
    return RunBox(QMessageBox::Question, text, QMessageBox::Ok | QMessageBox::Cancel);
}

bool CQtPrompts::AskBeforeLoss(int, const std::string& text) {
    return RunBox(QMessageBox::Question, text, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
}

std::size_t CQtPrompts::Choose(int, const std::string& text, const std::vector<std::string>& options) {
    QInputDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(QApplication::applicationDisplayName());
    dialog.setLabelText(ToQt(text));
    dialog.setOption(QInputDialog::UseListViewForComboBoxItems);
    QStringList rows;
    for (const std::string& option : options) {
        rows << ToQt(option);
    }
    dialog.setComboBoxItems(rows);
    dialog.setTextValue(rows.value(0));
    if (const QString ok = MessageText(50); !ok.isEmpty()) {
        dialog.setOkButtonText(ok);
        dialog.setCancelButtonText(MessageText(51));
    }
    const bool chosen = dialog.exec() == QDialog::Accepted;
    const qsizetype row = rows.indexOf(dialog.textValue());
    return chosen && row > 0 ? static_cast<std::size_t>(row) : 0;
}

std::string CQtPrompts::Chosen(const QString& hostPath) {
    if (hostPath.isEmpty()) {
        return {};
    }
    const QFileInfo info(hostPath);
    m_folder = info.isDir() ? hostPath : info.absolutePath();
    const auto path = CHostFiles::PathText(FromQt(hostPath));
    if (!path) {
        ::ShowMessage(MessageBackslash, FromQt(hostPath));
        return {};
    }
    return *path;
}

std::string CQtPrompts::PickOpenFile(const std::string& title, const std::vector<FileFilter>& filters) {
    return Chosen(QFileDialog::getOpenFileName(QApplication::activeWindow(), ToQt(title), m_folder,
                                               ChooserFilters(filters), nullptr, ChooserOptions));
}

std::vector<std::string> CQtPrompts::PickOpenFiles(const std::string& title,
                                                   const std::vector<FileFilter>& filters) {
    std::vector<std::string> paths;
    for (const QString& file :
         QFileDialog::getOpenFileNames(QApplication::activeWindow(), ToQt(title), m_folder,
                                       ChooserFilters(filters), nullptr, ChooserOptions)) {
        if (std::string path = Chosen(file); !path.empty()) {
            paths.push_back(std::move(path));
        }
    }
    return paths;
}

std::string CQtPrompts::PickSaveFile(const std::string& title, const std::string& defaultName,
                                     const std::string& defaultExtension,
                                     const std::vector<FileFilter>& filters) {
    QFileDialog dialog(QApplication::activeWindow(), ToQt(title), m_folder, ChooserFilters(filters));
    dialog.setOptions(ChooserOptions);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(ToQt(defaultExtension));
    dialog.selectFile(ToQt(defaultName));
    return dialog.exec() == QDialog::Accepted ? Chosen(dialog.selectedFiles().value(0)) : std::string();
}

std::string CQtPrompts::PickFolder(const std::string& title) {
    return Chosen(QFileDialog::getExistingDirectory(QApplication::activeWindow(), ToQt(title), m_folder));
}

std::optional<std::uint32_t> CQtPrompts::PickColour(std::uint32_t colour) {
    const auto byte = [colour](int shift) { return static_cast<int>(colour >> shift & 0xFFU); };
    QColorDialog dialog(QColor(byte(0), byte(8), byte(16)), QApplication::activeWindow());
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    if (const QString title = MessageText(3176); !title.isEmpty()) {
        dialog.setWindowTitle(title);
    }
    if (auto* buttons = dialog.findChild<QDialogButtonBox*>()) {
        NameButton(buttons->button(QDialogButtonBox::Ok), 50);
        NameButton(buttons->button(QDialogButtonBox::Cancel), 51);
    }
    if (dialog.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    const QColor chosen = dialog.selectedColor();
    return static_cast<std::uint32_t>(chosen.red() | chosen.green() << 8 | chosen.blue() << 16);
}
