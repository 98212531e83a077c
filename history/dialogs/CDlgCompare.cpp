#include "history/dialogs/CDlgCompare.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

#include "history/comparison.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/qttext.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"

namespace {

constexpr int MessageTitle = 3438;
constexpr int MessageTakeBack = 3439;
constexpr int MessageAdded = 3458;
constexpr int MessageRemoved = 3459;
constexpr int MessageChanged = 3460;
constexpr int MessageAskTakeBack = 3461;
constexpr int MessageNone = 3462;
constexpr int MessageClose = 3470;
constexpr int MessageProject = 3471;
constexpr int MessageUnreadable = 3472;

constexpr int SectionRole = Qt::UserRole;
constexpr int LongestText = 200;  // characters of a field
constexpr QSize FirstSize(860, 520);

QString ChangeText(RowChange change) {
    switch (change) {
        case RowChange::Added:
            return MessageText(MessageAdded);
        case RowChange::Removed:
            return MessageText(MessageRemoved);
        case RowChange::Changed:
            break;
    }
    return MessageText(MessageChanged);
}

QString FieldText(const std::string& text) {
    return ToQt(text).left(LongestText).simplified();
}

void AddRow(QTreeWidgetItem& section, const RowDifference& row) {
    QTreeWidgetItem* item = &section;
    if (row.Record >= 0) {
        item = new QTreeWidgetItem(&section, {ToQt(row.Label), ChangeText(row.Change)});
        item->setData(0, SectionRole, section.data(0, SectionRole));
    } else {
        item->setText(1, ChangeText(row.Change));
    }
    for (const FieldDifference& field : row.Fields) {
        auto* child = new QTreeWidgetItem(
            item, {ToQt(field.Name), QString(), FieldText(field.Then), FieldText(field.Now)});
        child->setData(0, SectionRole, section.data(0, SectionRole));
    }
}

}  // namespace

CDlgCompare::CDlgCompare(CDbRec& database, std::string pointPath, bool canChange, QWidget* parent)
    : CSizeDlg(parent),
      m_database(database),
      m_pointPath(std::move(pointPath)),
      m_canChange(canChange),
      m_tree(AddControl(IdTree, new QTreeWidget(this))),
      m_none(AddControl(IdNone, new QLabel(MessageText(MessageNone), this))) {
    setWindowTitle(MessageText(MessageTitle));
    auto* takeBack = AddControl(IdTakeBack, new QPushButton(MessageText(MessageTakeBack), this));
    auto* close = AddControl(IdCancel, new QPushButton(MessageText(MessageClose), this));
    takeBack->setAutoDefault(false);
    close->setDefault(true);
    m_none->setAlignment(Qt::AlignCenter);
    auto* row = new QHBoxLayout;
    row->addWidget(takeBack);
    row->addStretch();
    row->addWidget(close);
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_tree, 1);
    column->addWidget(m_none, 1);
    column->addLayout(row);

    m_tree->setHeaderLabels({MessageText(3454), MessageText(3455), MessageText(3456), MessageText(3457)});
    m_tree->setAccessibleName(MessageText(MessageTitle));
    m_tree->setUniformRowHeights(true);
    m_tree->header()->setStretchLastSection(true);
    m_tree->setColumnWidth(0, 300);
    m_tree->setColumnWidth(2, 220);
    connect(m_tree, &QTreeWidget::currentItemChanged, this, [this] { UpdateControls(); });
    OnCommand(IdTakeBack, [this] { TakeBack(); });
    resize(FirstSize);
}

void CDlgCompare::OnInitDialog() {
    Fill();
    m_tree->setFocus();
}

void CDlgCompare::Fill() {
    m_tree->clear();
    try {
        const CWaitCursor wait;
        for (const SectionDifference& difference : CompareWithPoint(m_database, m_pointPath)) {
            QString label = ToQt(difference.Label);
            if (difference.Section < 0) {
                label = MessageText(MessageProject);
            } else if (label.isEmpty()) {
                label = QString::number(difference.Section);
            }
            auto* section = new QTreeWidgetItem(m_tree, {label});
            section->setData(0, SectionRole, difference.Section);
            for (const RowDifference& row : difference.Rows) {
                AddRow(*section, row);
            }
        }
    } catch (const CDbError& error) {
        ShowMessage(MessageUnreadable, "\r\n" + m_pointPath + FailureLine(error));
        EndDialog(IdCancel);
        return;
    }
    const int sections = m_tree->topLevelItemCount();
    constexpr int few = 20;
    if (sections <= few) {
        m_tree->expandAll();
    }
    m_tree->setVisible(sections > 0);
    m_none->setVisible(sections == 0);
    if (sections > 0) {
        m_tree->setCurrentItem(m_tree->topLevelItem(0));
    }
    UpdateControls();
}

std::int32_t CDlgCompare::SelectedSection() const {
    const QTreeWidgetItem* item = m_tree->currentItem();
    return item == nullptr ? -1 : item->data(0, SectionRole).toInt();
}

void CDlgCompare::UpdateControls() {
    EnableControl(IdTakeBack, m_canChange && SelectedSection() >= 0);
}

void CDlgCompare::TakeBack() {
    const std::int32_t section = SelectedSection();
    if (section < 0 || !AskBeforeLoss(MessageAskTakeBack)) {
        return;
    }
    const bool done = [&] {
        const CWaitCursor wait;
        return TakeBackSection(m_database, m_pointPath, section);
    }();
    if (done) {
        TakenBack = section;
        Fill();
    }
}
