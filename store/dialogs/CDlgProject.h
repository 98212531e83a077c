// The list of projects: choose one to open, make, change and delete them. Every command opens the file that
// it needs and closes it again, so that a project is locked only for that moment.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "shell/dialogs/CSizeDlg.h"
#include "store/records/records.h"

class CProjectList;
class CTestingList;
class QLabel;

class CDlgProject : public CSizeDlg {
public:
    // Mode 1: choose a project. Mode 0 chooses nothing; the sections of a project have their place beside
    // the list then.
    CDlgProject(int mode, QWidget* parent);

    std::string ExcludedPath;  // of the project that is open in the caller and locked; empty if none
    _PRO_DATA ChosenProject;   // after OK
    // Where in it the operator wants to stand; below 0: nowhere special.
    std::int32_t ChosenSection = -1;
    std::int32_t ChosenRecord = -1;

    // Shows a project on the map. True if the operator chose a place there, which is then in section and
    // record. Without it there is no map.
    std::function<bool(const _PRO_DATA& project, std::int32_t& section, std::int32_t& record)> ShowMap;

protected:
    void OnInitDialog() override;
    void OnOK() override;
    void OnTimer(int id) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* MakeSectionPanel();
    void MakeShortcuts();
    void RefreshProjects();
    void ShowUnreadable();
    void UpdateButtons();
    void OnNewProject();
    void OnDeleteProject();
    void OnEditProject();
    void OnMerge();
    void OnMap();

    int m_mode;
    CProjectList* m_projects;
    CTestingList* m_sections = nullptr;
    QLabel* m_warning;
};
