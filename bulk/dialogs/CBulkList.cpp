#include "bulk/dialogs/CBulkList.h"

#include "lists/listtexts.h"
#include "shell/dialogs/qttext.h"

CBulkList::CBulkList(QWidget* parent) : CListCtrl(parent) {
    ShowCheckBoxes();
    AllowSeveral();
    InsertColumn(ListColumn{3967, 220});
    InsertColumn(ListColumn{3968, 200});
    InsertColumn(ListColumn{3969, 200});
    InsertColumn(ListColumn{3970, 180});
    SetEmptyText(MessageText(3975));
    setAccessibleName(MessageText(3960));
}
