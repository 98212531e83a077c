// What has changed in a project since one of its restore points, section by section, and the way back for
// single sections.
#pragma once

#include <cstdint>
#include <string>

#include "shell/dialogs/CSizeDlg.h"

class CDbRec;
class QLabel;
class QTreeWidget;

class CDlgCompare : public CSizeDlg {
public:
    static constexpr int IdTree = 5051;
    static constexpr int IdTakeBack = 5052;
    static constexpr int IdNone = 5053;

    // The project is open and outlives the window.
    CDlgCompare(CDbRec& database, std::string pointPath, bool canChange, QWidget* parent);

    std::int32_t TakenBack = -1;  // ID of the section that was taken back last

protected:
    void OnInitDialog() override;

private:
    void Fill();
    void TakeBack();
    std::int32_t SelectedSection() const;  // -1 for none
    void UpdateControls();

    CDbRec& m_database;
    std::string m_pointPath;
    bool m_canChange;
    QTreeWidget* m_tree;
    QLabel* m_none;
};
