// Asks for the text of a box that has been drawn on a picture.
#pragma once

#include <string>

#include "shell/dialogs/CSizeDlg.h"

class QLineEdit;

class CNewDefectNameDlg : public CSizeDlg {
public:
    CNewDefectNameDlg(const std::string& preset, QWidget* parent);

    // As entered.
    std::string Text() const;

private:
    QLineEdit* m_edit;  // a child
};
