// The window in which an operator reviews a project: its sections, the video of the section selected, and
// its defects. It owns the open project and keeps lists and player in step; each command is carried out by
// whoever knows it.
//
// Time and distance are independent values of a defect: time comes from the player, distance is typed.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "shell/dialogs/CSizeDlg.h"
#include "store/records/records.h"
#include "workbench/review.h"

class CButtonST;
class CCtrlPic;
class CDefectList;
class CPointView;
class CRecExport;
class CTestingList;
class CWMPPlayer4;
class QSplitter;

class CDlgProAtrrib : public CSizeDlg {
public:
    // `projectPath` is opened when the window comes up; empty for none.
    explicit CDlgProAtrrib(std::string_view projectPath, QWidget* parent = nullptr);
    ~CDlgProAtrrib() override;

    // False, with everything as it was, if the project can't be opened; the message has been shown.
    bool OpenProject(std::string_view path);
    // Reads the sections anew. The selection is lost; whoever wants it kept selects the row again at once.
    void RefreshLists();
    void FillDefects(std::int32_t sectionId);
    void UpdateTitle();

    const std::string& ProjectPath() const { return m_projectPath; }
    const Markers& DefectMarkers() const { return m_markers; }

    bool OnControlMessage(int message, std::intptr_t wParam, std::intptr_t lParam) override;

protected:
    void OnInitDialog() override;
    void OnOK() override {}  // Enter does nothing in this window
    void OnCancel() override;
    void OnTimer(int id) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    struct Command;
    static const std::vector<Command>& Commands();

    void MakeButtons();
    void MakeControls();
    void PlaceControls();
    QWidget* MakeSectionPanel();
    QWidget* MakeReviewPanel();
    QWidget* MakeDefectPanel();
    std::vector<QWidget*> Controls(const std::vector<int>& ids) const;
    void ChooseSize();
    void SplitReview();
    void ShowEmptyTexts();
    void ShowSplash();

    // Deferred reactions to a selection, so that a burst of changes is one action.
    void OnSectionSelected();
    void OnDefectSelected();
    void OnDurationPoll();
    void LoadSectionVideo(const _TESTING_DATA& section);
    void UnloadVideo();
    void SeekToDefect(const _REC_DATA& record);
    void OnRulerClick(std::intptr_t second);
    void ReselectSection(int row);

    // Each shows its message and tells whether the command may go on.
    bool NeedProject() const;
    bool NeedSection() const;
    bool NeedDefect() const;

    void OnOpenProject();
    void OnProjectProperties();
    void OnImportXml();
    void OnExportExcel();
    void OnExportWord();
    void OnSettings();
    void OnAbout();
    void OnNewSections();
    void OnDeleteSection();
    void OnSectionProperties();
    void OnCalculateGps();
    void OnNewDefect();
    void OnNewManholeDefect();
    void OnEditDefect();
    void RefillDefects();
    void OnDeleteDefect();
    void OnSecondPicture();
    void OnSortByWells();
    void OnSectionMenu(const QPoint& at);
    void Renumber();

    std::unique_ptr<CRecExport> m_database;  // null without a project
    std::string m_projectPath;
    std::string m_projectName;
    std::string m_criterionName;
    std::string m_firstProject;
    Markers m_markers;

    CTestingList* m_sections = nullptr;
    CDefectList* m_defects = nullptr;
    CWMPPlayer4* m_player = nullptr;
    CCtrlPic* m_canvas = nullptr;
    CPointView* m_ruler = nullptr;
    QSplitter* m_review = nullptr;
    bool m_split = false;
};
