// Ticks and clears all rows of a list, and tells how many are ticked; in between while only some are.
#pragma once

#include <QCheckBox>

class CListCtrl;

class CTickAllBox : public QCheckBox {
public:
    // Of a list with check boxes, which outlives this. Takes its OnItemChanged.
    CTickAllBox(CListCtrl& list, QWidget* parent);

    // Once the list has been filled; afterwards it follows by itself.
    void ShowTicked();

private:
    int TickedRows() const;

    CListCtrl& m_list;
};
