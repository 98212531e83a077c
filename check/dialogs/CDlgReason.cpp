#include "check/dialogs/CDlgReason.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>

#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/textcodec.h"

namespace {

constexpr int MessageTitle = 3857;
constexpr int MessageReason = 3858;
constexpr int FirstWidth = 420;

}  // namespace

CDlgReason::CDlgReason(std::size_t findings, QWidget* parent)
    : CSizeDlg(parent), m_reason(AddControl(IdReason, new QLineEdit(this))) {
    setWindowTitle(ToQt(FillText(LoadMessage(MessageTitle), {std::to_string(findings)})));
    auto* label = AddControl(IdLabel, new QLabel(MessageText(MessageReason), this));
    label->setBuddy(m_reason);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_reason, 1);
    auto* column = new QVBoxLayout(this);
    column->addLayout(row);
    column->addStretch();
    column->addLayout(MakeOkCancelRow());
    EnableControl(IdOk, false);
    connect(m_reason, &QLineEdit::textChanged, this,
            [this](const QString& text) { EnableControl(IdOk, !text.trimmed().isEmpty()); });
    m_reason->setFocus();
    resize(FirstWidth, sizeHint().height());
}

void CDlgReason::OnOK() {
    Reason = FromQt(m_reason->text().trimmed());
    if (!Reason.empty()) {
        CSizeDlg::OnOK();
    }
}
