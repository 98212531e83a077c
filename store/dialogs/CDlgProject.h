// The list of projects: choose one to open, make, change and delete them. Every command opens the file that
// it needs and closes it again, so that a project is locked only for that moment.
#pragma once

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

protected:
    void OnInitDialog() override;
    void OnOK() override;
    void OnTimer(int id) override;

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

    int m_mode;
    CProjectList* m_projects;
    CTestingList* m_sections = nullptr;
    QLabel* m_warning;
};
