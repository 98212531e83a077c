// The restore points of a project: what they differ in from now, and what can be taken out of them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "history/restorepoints.h"
#include "shell/dialogs/CSizeDlg.h"

class CDbRec;
class CListCtrl;

class CDlgRestorePoints : public CSizeDlg {
public:
    static constexpr int IdPoints = 5047;
    static constexpr int IdCompare = 5048;
    static constexpr int IdOpen = 5049;
    static constexpr int IdRestore = 5050;

    // The project is open and outlives the window. Without `canChange` nothing is taken back into it.
    CDlgRestorePoints(CDbRec& database, bool canChange, QWidget* parent);

    std::int32_t TakenBack = -1;  // ID of the section that was taken back last
    std::string OpenPoint;        // the point that is to be opened; empty for none

protected:
    void OnInitDialog() override;
    void OnOK() override { Compare(); }

private:
    const RestorePoint* Selected() const;
    void Fill();
    void Compare();
    void Open();
    void Restore();
    void UpdateControls();

    CDbRec& m_database;
    bool m_canChange;
    CListCtrl* m_list;
    std::vector<RestorePoint> m_points;
};
