// Why a finding is left as it is.
#pragma once

#include <cstddef>
#include <string>

#include "shell/dialogs/CSizeDlg.h"

class QLineEdit;

class CDlgReason : public CSizeDlg {
public:
    static constexpr int IdReason = 5079;
    static constexpr int IdLabel = 5080;

    CDlgReason(std::size_t findings, QWidget* parent);

    std::string Reason;  // after OK, never empty

protected:
    void OnOK() override;

private:
    QLineEdit* m_reason;
};
