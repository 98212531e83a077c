#include "shell/dialogs/theme.h"

#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QStyleFactory>

namespace {

QPalette MakePalette() {
    const QColor text(0x24, 0x2D, 0x36);
    const QColor quiet(QuietTextColour);
    QPalette palette;
    palette.setColor(QPalette::Window, WindowColour);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xF8, 0xFA, 0xFB));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, QColor(0xFB, 0xFC, 0xFD));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Highlight, AccentColour);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, quiet);
    palette.setColor(QPalette::ToolTipBase, QColor(0x2B, 0x35, 0x3F));
    palette.setColor(QPalette::ToolTipText, Qt::white);
    palette.setColor(QPalette::Mid, LineColour);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, QColor(0xA3, 0xAD, 0xB6));
    }
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(0xF1, 0xF3, 0xF5));
    return palette;
}

constexpr const char* StyleSheet = R"(
QToolTip { background: #2B353F; color: white; border: 0; padding: 4px 6px; }
QAbstractItemView { border: 1px solid #D3D9DF; gridline-color: #E6EAEE; }
QAbstractItemView:focus { border-color: #1F6FB2; }
QHeaderView::section { background: #EEF1F4; border: 0; border-right: 1px solid #D9DFE5;
    border-bottom: 1px solid #D3D9DF; padding: 4px 6px; }
QLineEdit, QPlainTextEdit, QTextEdit { border: 1px solid #C3CBD3; border-radius: 3px; padding: 3px 5px;
    background: palette(base); }
QLineEdit:focus, QPlainTextEdit:focus, QTextEdit:focus { border-color: #1F6FB2; }
QLineEdit:disabled, QPlainTextEdit:disabled { color: #A3ADB6; }
QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }
QSplitter::handle { background: transparent; }
QSplitter::handle:hover { background: #C9DDEE; }
)";

}  // namespace

void ApplyTheme(QApplication& application) {
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setPalette(MakePalette());
    QFont font = QApplication::font();
    // Named, or else Chinese text may come in the shapes of another country.
    font.setFamilies({font.family(), "Noto Sans CJK SC", "Microsoft YaHei"});
    QApplication::setFont(font);
    application.setStyleSheet(StyleSheet);
}
