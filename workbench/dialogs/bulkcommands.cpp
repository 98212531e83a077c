// The review window's command on many rows.
#include "bulk/dialogs/CDlgBulkEdit.h"
#include "reports/CRecExport.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/CRowFilter.h"
#include "workbench/dialogs/reviewcommands.h"

void BulkEditCommand(CDlgProAtrrib& window) {
    if (const CQueryRows* rows = window.Filter().Rows()) {
        CDlgBulkEdit dialog(*window.Session().Database(), *rows, window.Filter().Chosen(), &window);
        (void)dialog.DoModal();
    }
}
