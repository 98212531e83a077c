// The review window's commands on what it shows.
#include <QLineEdit>

#include "bulk/dialogs/CAllDefects.h"
#include "defects/dialogs/CPicturePanel.h"
#include "lists/CDefectList.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/CRowFilter.h"
#include "workbench/dialogs/reviewcommands.h"

// Asked for while the operator types in its line, it ends.
void FindCommand(CDlgProAtrrib& window) {
    CRowFilter& filter = window.Filter();
    if (filter.IsOpen() && qobject_cast<QLineEdit*>(window.focusWidget()) != nullptr) {
        filter.Close();
    } else {
        filter.Open();
    }
}

void AllDefectsCommand(CDlgProAtrrib& window) {
    CAllDefects& list = window.AllDefects();
    if (!list.isHidden()) {
        list.hide();
        return;
    }
    list.show();
    window.ShowAllDefects();
    if (const _REC_DATA* record = window.DefectList().SelectedRecord()) {
        (void)list.SelectRowOf(record->ID);
    }
    window.FocusAfter = &list;
}

void PicturesCommand(CDlgProAtrrib& window) {
    window.Pictures().setVisible(window.Pictures().isHidden());
}
