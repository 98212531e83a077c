#include "defects/dialogs/CNewDefectNameDlg.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>

#include "shell/dialogs/qttext.h"

namespace {

constexpr int LabelId = 1084;
constexpr int EditId = 1085;
constexpr int EditCharacters = 40;

}  // namespace

CNewDefectNameDlg::CNewDefectNameDlg(const std::string& preset, QWidget* parent)
    : CSizeDlg(parent), m_edit(AddControl(EditId, new QLineEdit(ToQt(preset), this))) {
    setWindowTitle("备注");
    auto* label = AddControl(LabelId, new QLabel("请输入备注信息:", this));
    label->setBuddy(m_edit);
    m_edit->setMinimumWidth(m_edit->fontMetrics().averageCharWidth() * EditCharacters);
    m_edit->selectAll();
    auto* column = new QVBoxLayout(this);
    column->addWidget(label);
    column->addWidget(m_edit);
    column->addStretch();
    column->addLayout(MakeOkCancelRow());
    SetCaption(3150);
    SetCaptions({{IdOk, 50}, {IdCancel, 51}, {LabelId, 3151}});
    m_edit->setAccessibleName(label->text());
    AddAnchor(EditId, true, true, true, false);
    AddAnchor(IdOk, false, false, true, true);
    AddAnchor(IdCancel, false, false, true, true);
    m_edit->setFocus();
}

std::string CNewDefectNameDlg::Text() const {
    return FromQt(m_edit->text());
}
