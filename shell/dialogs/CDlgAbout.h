// What the program is called, its version, and whose libraries it is built on.
#pragma once

#include "shell/dialogs/CSizeDlg.h"

class CDlgAbout : public CSizeDlg {
public:
    explicit CDlgAbout(QWidget* parent = nullptr);
};
