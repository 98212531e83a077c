#include "shell/dialogs/CDlgAbout.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>

#include "shell/CHostFiles.h"
#include "shell/dialogs/qttext.h"
#include "shell/dialogs/theme.h"
#include "shell/seams.h"

namespace {

constexpr int IconSize = 64;
constexpr int Margin = 24;

constexpr const char* Libraries =
    "Qt 6 – LGPL 3\n"
    "mpv, FFmpeg – LGPL 2.1, GPL 2\n"
    "MDB Tools – LGPL 2\n"
    "SQLCipher – BSD\n"
    "OpenSSL – Apache 2.0\n"
    "libjpeg-turbo – BSD, IJG\n"
    "TinyXML, TinyXML-2, zlib – zlib\n"
    "libxlsxwriter – BSD\n"
    "libzip – BSD\n"
    "libcurl – curl\n"
    "JSON for Modern C++ – MIT";

QLabel* MakeIcon(QWidget* parent) {
    auto* icon = new QLabel(parent);
    QPixmap picture(ToQt(HostFiles().HostPath("ui\\drovane.png")));
    if (picture.isNull()) {
        icon->hide();
        return icon;
    }
    const double ratio = parent->devicePixelRatioF();
    picture =
        picture.scaled(QSize(IconSize, IconSize) * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    picture.setDevicePixelRatio(ratio);
    icon->setPixmap(picture);
    return icon;
}

}  // namespace

CDlgAbout::CDlgAbout(QWidget* parent) : CSizeDlg(parent) {
    setWindowFlag(Qt::WindowMinMaxButtonsHint, false);
    setWindowTitle("关于");
    SetCaption(959);

    auto* name = new QLabel("Drovane", this);
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    large.setWeight(QFont::DemiBold);
    name->setFont(large);
    auto* purpose = new QLabel(MessageText(3064), this);
    auto* version = new QLabel(MessageText(3063) + " " DROVANE_VERSION, this);
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* built = new QLabel(MessageText(3065), this);
    auto* libraries = new QLabel(Libraries, this);
    QPalette quiet = version->palette();
    quiet.setColor(QPalette::WindowText, QColor(QuietTextColour));
    for (QLabel* label : {version, built, libraries}) {
        label->setPalette(quiet);
    }
    auto* ok = AddControl(IdOk, new QPushButton("确定", this));
    ok->setDefault(true);
    SetCaptions({{IdOk, 50}});

    auto* title = new QVBoxLayout;
    title->setSpacing(Margin / 4);  // or else that of the row counts
    title->addWidget(name);
    title->addWidget(purpose);
    title->addWidget(version);
    title->addStretch();
    auto* head = new QHBoxLayout;
    head->setSpacing(Margin);
    head->addWidget(MakeIcon(this), 0, Qt::AlignTop);
    head->addLayout(title, 1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Margin, Margin, Margin, Margin * 2 / 3);
    column->addLayout(head);
    column->addSpacing(Margin / 2);
    column->addWidget(built);
    column->addWidget(libraries);
    column->addSpacing(Margin / 2);
    column->addWidget(ok, 0, Qt::AlignRight);
    column->setSizeConstraint(QLayout::SetFixedSize);
}
