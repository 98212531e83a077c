// Makes the Word report of a project: which sections, and the parameters of region and soil that its standard
// scores with. The standard decides the lists offered, and whether the report is written here or by the
// generator of documents. A project of an unknown standard closes the window before it comes up.
//
// What is made blocks the window; its status line tells where the work stands.
#pragma once

#include <string>
#include <vector>

#include "assessment/standards.h"
#include "shell/dialogs/CSizeDlg.h"
#include "store/records/records.h"

class CErrorNote;
class CRecExport;
class CTestingList;
class CTickAllBox;
class QComboBox;
class QGridLayout;
class QLabel;
class CReportRun;

class CDlgExport : public CSizeDlg {
public:
    // The project is open and outlives the window.
    explicit CDlgExport(CRecExport& project, QWidget* parent = nullptr);

    // After Cancel: the operator wants to see what the check found first.
    bool ErrorsWanted = false;

protected:
    void OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class CRunning;

    QComboBox* AddParameter(QGridLayout& grid, int labelId, const char* label, int id);
    void FillParameters();
    void OfferChoice(ScoringRoute route);
    void FillSections();
    void ShowStatus(const std::string& text);
    // Each tells whether the window may close.
    bool Export();
    bool WriteReport(const CReportRun& run);
    bool RunGenerator(CReportRun& run);
    static bool AskToReplace(const std::string& path);

    CRecExport& m_project;
    _PRO_DATA m_attributes;
    bool m_useGenerator = false;
    bool m_running = false;

    CTestingList* m_sections;
    CTickAllBox* m_all;
    QComboBox* m_region = nullptr;
    QComboBox* m_soil = nullptr;
    QComboBox* m_load = nullptr;  // no standard has rows for it
    QLabel* m_status;
    CErrorNote* m_errors;
};
