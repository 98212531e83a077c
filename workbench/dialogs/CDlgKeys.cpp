#include "workbench/dialogs/CDlgKeys.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>

#include "controls/CPipeStrip.h"
#include "controls/CWMPPlayer4.h"
#include "shell/dialogs/qttext.h"
#include "shell/dialogs/theme.h"
#include "shell/language.h"
#include "workbench/coding/dialogs/CCodingLine.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

constexpr int MessageTitle = 3896;
constexpr int MessageVideo = 3897;
constexpr int MessageCommands = 3898;
constexpr int MessageLine = 3899;
constexpr int MessageStrip = 3900;
constexpr int MessageLists = 3901;
constexpr int MessageDelete = 3146;
constexpr int MessageCode = 3139;
constexpr int MessageCodeLast = 3140;
constexpr int IdSheet = 5190;

struct Line {
    QString Keys;
    QString Text;
};

QString Shown(const QString& portable) {
    return QKeySequence(portable).toString(QKeySequence::NativeText);
}

// Keys of the same text stand in one line.
void Add(std::vector<Line>& lines, const QString& keys, int message) {
    const QString text = MessageText(message);
    if (!lines.empty() && lines.back().Text == text) {
        lines.back().Keys += "  " + keys;
    } else {
        lines.push_back({keys, text});
    }
}

std::vector<Line> CommandLines() {
    std::vector<Line> lines;
    for (const ReviewCommand& command : ReviewCommands()) {
        if (command.Shortcut == nullptr || command.Text == 0) {
            continue;
        }
        const bool first = command.Id == CommandFavourite;
        if (command.Id > CommandFavourite && command.Id < CommandFavourite + CFavourites::Places) {
            continue;
        }
        // A button's text is short; its tip tells the whole.
        const int text = command.Bitmap == nullptr ? command.Text : command.Text + TipOffset;
        Add(lines, Shown(command.Shortcut) + (first ? " … 0" : ""), text);
    }
    return lines;
}

std::vector<Line> VideoLines() {
    std::vector<Line> lines;
    for (const CWMPPlayer4::Key& key : CWMPPlayer4::Keys()) {
        if (key.Text != 0) {
            Add(lines, QKeySequence(key.Modifiers | key.Code).toString(QKeySequence::NativeText), key.Text);
        }
    }
    Add(lines, Shown("Return"), MessageCode);
    Add(lines, Shown("Ctrl+Return"), MessageCodeLast);
    return lines;
}

std::vector<Line> CodingLines() {
    std::vector<Line> lines;
    for (const CCodingLine::Key& key : CCodingLine::Keys()) {
        Add(lines, QString(key.Keys), key.Text);
    }
    return lines;
}

std::vector<Line> StripLines() {
    std::vector<Line> lines;
    for (const CPipeStrip::Key& key : CPipeStrip::Keys()) {
        if (key.Text != 0) {
            Add(lines, QKeySequence(key.Code).toString(QKeySequence::NativeText), key.Text);
        }
    }
    return lines;
}

QWidget* MakeSheet(int title, const std::vector<Line>& lines) {
    auto* sheet = new QWidget;
    auto* grid = new QGridLayout(sheet);
    grid->setContentsMargins(0, 0, 0, 10);
    grid->setHorizontalSpacing(14);
    grid->setVerticalSpacing(3);
    auto* heading = new QLabel(MessageText(title));
    heading->setStyleSheet("font-weight: bold; color: " + QColor::fromRgb(AccentColour).name());
    grid->addWidget(heading, 0, 0, 1, 2);
    int row = 1;
    for (const Line& line : lines) {
        auto* keys = new QLabel(line.Keys);
        keys->setStyleSheet("font-weight: bold");
        grid->addWidget(keys, row, 0, Qt::AlignTop);
        auto* text = new QLabel(line.Text);
        text->setWordWrap(true);
        text->setMinimumWidth(200);
        grid->addWidget(text, row++, 1);
    }
    grid->setColumnStretch(1, 1);
    return sheet;
}

}  // namespace

CDlgKeys::CDlgKeys(QWidget* parent) : CSizeDlg(parent) {
    setWindowTitle(MessageText(MessageTitle));
    auto* left = new QVBoxLayout;
    left->addWidget(MakeSheet(MessageCommands, CommandLines()));
    left->addStretch();
    auto* right = new QVBoxLayout;
    right->addWidget(MakeSheet(MessageVideo, VideoLines()));
    right->addWidget(MakeSheet(MessageLine, CodingLines()));
    right->addWidget(MakeSheet(MessageStrip, StripLines()));
    right->addWidget(MakeSheet(MessageLists, {{Shown("Del"), MessageText(MessageDelete)}}));
    right->addStretch();
    auto* sheet = new QWidget;
    sheet->setObjectName("keysheet");
    sheet->setStyleSheet("QWidget#keysheet { background: white }");
    auto* columns = new QHBoxLayout(sheet);
    columns->setSpacing(30);
    columns->addLayout(left, 1);
    columns->addLayout(right, 1);
    auto* area = AddControl(IdSheet, new QScrollArea(this));
    area->setWidget(sheet);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* close = AddControl(IdCancel, new QPushButton("取消", this));
    SetCaptions({{IdCancel, 3596}});
    close->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(close);
    auto* rows = new QVBoxLayout(this);
    rows->addWidget(area, 1);
    rows->addLayout(buttons);
    resize(QSize(860, 720).boundedTo(screen()->availableSize() - QSize(80, 80)));
}
