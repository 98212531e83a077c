// The steps of a project by time, newest first, and the way back to any of them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "history/steps.h"
#include "shell/dialogs/CSizeDlg.h"

class CDbRec;
class CListCtrl;
class QLabel;

class CDlgHistory : public CSizeDlg {
public:
    static constexpr int IdSteps = 5043;
    static constexpr int IdGoTo = 5044;
    static constexpr int IdPoints = 5045;
    static constexpr int IdNote = 5046;

    // The project is open and outlives the window. Without `canChange` it is only looked at.
    CDlgHistory(CDbRec& database, bool canChange, QWidget* parent);

    // Where the last step that was taken here happened; numbers below 0 if none was.
    std::int32_t Section = -1;
    std::int32_t Record = -1;
    // A restore point that is to be opened instead of the project; empty for none.
    std::string OpenPoint;

protected:
    void OnInitDialog() override;
    void OnOK() override { GoTo(); }

private:
    void Fill();
    void GoTo();
    void ShowPoints();
    void UpdateControls();

    CDbRec& m_database;
    bool m_canChange;
    CListCtrl* m_steps;
    QLabel* m_note;
    std::vector<HistoryStep> m_history;
};
