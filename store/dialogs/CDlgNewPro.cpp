#include "store/dialogs/CDlgNewPro.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "shell/CPrompts.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/qttext.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "store/CDbRec.h"

namespace {

constexpr int CommentLines = 4;
constexpr int FieldCharacters = 36;

}  // namespace

CDlgNewPro::CDlgNewPro(QWidget* parent) : CSizeDlg(parent) {
    setWindowTitle("工程属性");
    auto* grid = new QGridLayout;
    const auto addRow = [&](int labelId, const char* text, int id, auto* control) {
        const int row = grid->rowCount();
        auto* label = AddControl(labelId, new QLabel(text, this));
        label->setBuddy(control);
        grid->addWidget(label, row, 0, Qt::AlignTop | Qt::AlignRight);
        grid->addWidget(AddControl(id, control), row, 1);
        // Labels stand beside the first line of their fields.
        label->setFixedHeight(id == IdComment ? QLineEdit().sizeHint().height()
                                              : control->sizeHint().height());
    };
    addRow(1065, "工程名称:", IdName, new QLineEdit(this));
    addRow(1066, "工程编号:", IdIndex, new QLineEdit(this));
    addRow(1067, "工程地点:", IdLocation, new QLineEdit(this));
    addRow(1068, "检测标准:", IdCriteria, new QComboBox(this));
    auto* comment = new QPlainTextEdit(this);
    addRow(1069, "备注:", IdComment, comment);
    comment->setTabChangesFocus(true);
    comment->setMinimumHeight(fontMetrics().lineSpacing() * CommentLines + 16);
    grid->setColumnMinimumWidth(1, fontMetrics().averageCharWidth() * FieldCharacters);
    grid->setColumnStretch(1, 1);

    auto* column = new QVBoxLayout(this);
    column->addLayout(grid, 1);
    column->addLayout(MakeOkCancelRow());
}

void CDlgNewPro::Edit(const _PRO_DATA& project) {
    EditFlag = 1;
    ProjectName = project.ProjectName;
    Comment = project.Comment;
    ProjectIndex = project.ProjectIndex;
    Location = project.Location;
    CriterionIndex = ParseInt(project.StandardIndex);
}

void CDlgNewPro::OnInitDialog() {
    SetCaption(600);
    SetCaptions(
        {{IdOk, 50}, {IdCancel, 51}, {1065, 601}, {1066, 602}, {1067, 603}, {1068, 604}, {1069, 605}});
    SetTip(IdCriteria, 3017);
    FillCriteria();
    Item<QLineEdit>(IdName)->setText(ToQt(ProjectName));
    Item<QLineEdit>(IdIndex)->setText(ToQt(ProjectIndex));
    Item<QLineEdit>(IdLocation)->setText(ToQt(Location));
    Item<QPlainTextEdit>(IdComment)->setPlainText(ToQt(Comment));
    GetDlgItem(IdName)->setFocus();
}

void CDlgNewPro::FillCriteria() {
    const CWaitCursor wait;
    CriterionList.RemoveAll();
    LoadCriterionList(CriterionList, GetCriterionFolder(), CDbPassword);
    auto* box = Item<QComboBox>(IdCriteria);
    for (const _CRITERION_DATA& criterion : CriterionList) {
        box->addItem(ToQt(criterion.Name));
    }
    box->setPlaceholderText(MessageText(CriterionList.IsEmpty() ? 3019 : 3016));
    box->setCurrentIndex(CriterionIndex >= 0 && CriterionIndex < box->count() ? CriterionIndex : -1);
}

void CDlgNewPro::ReadFields() {
    ProjectName = FromQt(Item<QLineEdit>(IdName)->text());
    ProjectIndex = FromQt(Item<QLineEdit>(IdIndex)->text());
    Location = FromQt(Item<QLineEdit>(IdLocation)->text());
    ReadEdited(*Item<QPlainTextEdit>(IdComment), Comment);
}

void CDlgNewPro::OnOK() {
    ReadFields();
    if (ProjectName.empty()) {
        ShowMessage(2164);
        GetDlgItem(IdName)->setFocus();
        return;
    }
    const int chosen = Item<QComboBox>(IdCriteria)->currentIndex();
    CriterionIndex = chosen;
    if (chosen < 0) {
        ShowMessage(2165);
        GetDlgItem(IdCriteria)->setFocus();
        return;
    }
    EndDialog(IdOk);
}
