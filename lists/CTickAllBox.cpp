#include "lists/CTickAllBox.h"

#include <QTimer>

#include "lists/CListCtrl.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/numbers.h"

namespace {

constexpr int MessageAll = 3231;

}  // namespace

CTickAllBox::CTickAllBox(CListCtrl& list, QWidget* parent) : QCheckBox(parent), m_list(list) {
    auto* later = new QTimer(this);  // thousands of rows that change at once are counted once
    later->setSingleShot(true);
    connect(later, &QTimer::timeout, this, [this] { ShowTicked(); });
    list.OnItemChanged = [later] { later->start(0); };
    connect(this, &QCheckBox::clicked, this, [this] {
        m_list.CheckAll(TickedRows() < m_list.RowCount());
        ShowTicked();
    });
}

int CTickAllBox::TickedRows() const {
    int ticked = 0;
    for (int row = 0; row < m_list.RowCount(); ++row) {
        ticked += m_list.IsChecked(row) ? 1 : 0;
    }
    return ticked;
}

void CTickAllBox::ShowTicked() {
    const int ticked = TickedRows();
    const int rows = m_list.RowCount();
    setCheckState(ticked == 0 ? Qt::Unchecked : ticked == rows ? Qt::Checked : Qt::PartiallyChecked);
    setVisible(rows > 0);
    setText(ToQt(FillText(LoadMessage(MessageAll), {FormatInt(ticked), FormatInt(rows)})));
}
