// The review window's commands on what it shows.
#include <QLineEdit>

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
