// What became of each file of an import, beside the review window until the operator closes it. Each line
// leads to the section or record that was made, or to the folder of what wasn't.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bulk/jobimport.h"
#include "shell/dialogs/CSizeDlg.h"

class CListCtrl;
class QCheckBox;
class QLabel;

class CDlgImport : public CSizeDlg {
public:
    static constexpr int IdList = 5100;
    static constexpr int IdOnlyOdd = 5101;
    static constexpr int IdCopy = 5102;
    static constexpr int IdGoTo = 5103;
    static constexpr int IdState = 5104;

    explicit CDlgImport(QWidget* parent);

    // The operator chose a line with a section; his place in the project is the caller's concern.
    std::function<void(const ImportLine&)> OnGoTo;

    // The project that is open; empty for none. What was told of another one goes, with the window.
    void Follow(const std::string& project);
    // Below what is there already, with the first of them selected, and brings the window up.
    void Tell(const ImportJobResult& result);

protected:
    void OnOK() override { GoTo(); }
    void OnCancel() override;

private:
    void MakeControls();
    void Fill();
    const ImportLine* Chosen() const;
    void UpdateControls();
    void GoTo();
    void Copy() const;

    std::string m_project;
    ImportJobResult m_result;  // of all imports since the window was opened
    CListCtrl* m_list = nullptr;
    QCheckBox* m_onlyOdd = nullptr;
    QLabel* m_state = nullptr;
};
