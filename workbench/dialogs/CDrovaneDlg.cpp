#include "workbench/dialogs/CDrovaneDlg.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "shell/CLiveChannel.h"
#include "shell/dialogs/bringtofront.h"
#include "shell/dialogs/qttext.h"

namespace {

constexpr int TextWidth = 420;

}  // namespace

CDrovaneDlg::CDrovaneDlg(CLiveChannel& channel, QWidget* parent) : CSizeDlg(parent), m_channel(channel) {
    setWindowTitle("缺陷判读");
    auto* text = new QLabel(MessageText(3062), this);
    text->setWordWrap(true);
    text->setMinimumSize(TextWidth, TextWidth / 4);
    text->setAlignment(Qt::AlignCenter);
    auto* column = new QVBoxLayout(this);
    column->addWidget(text, 1);
    column->addWidget(AddControl(IdCancel, new QPushButton("退出", this)), 0, Qt::AlignRight);
    m_channel.OnRaise = [this] { BringToFront(*this); };
}

CDrovaneDlg::~CDrovaneDlg() {
    m_channel.OnRaise = nullptr;
    m_channel.OnRecord = nullptr;
}

void CDrovaneDlg::OnInitDialog() {
    SetCaption(800);
    SetCaptions({{IdCancel, 51}});
}
