// All keys of the review window on one sheet, from the tables by which they work.
#pragma once

#include "shell/dialogs/CSizeDlg.h"

class CDlgKeys : public CSizeDlg {
public:
    explicit CDlgKeys(QWidget* parent = nullptr);
};
