// The window in which an operator reviews a project: its sections, the video of the section selected, and
// its defects. It shows a review session and gives it the operator's hands; the commands are rows of a table
// (reviewcommands.h), which one dispatcher runs.
#pragma once

#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shell/dialogs/CFormDraft.h"
#include "shell/dialogs/CSizeDlg.h"
#include "workbench/CReviewScreen.h"
#include "workbench/CReviewSession.h"
#include "workbench/dialogs/CLevelFiller.h"
#include "workbench/dialogs/reviewplace.h"

class CAllDefects;
class CCodingLine;
class CCodingDesk;
class CCtrlPic;
class CDlgCheck;
class CDlgImport;
class CDefectList;
class CFilterBar;
class CPicturePanel;
class CPipeStrip;
class CPointView;
class CRowFilter;
class CTestingList;
class CWMPPlayer4;
class QSplitter;
struct ReviewCommand;

class CDlgProAtrrib : public CSizeDlg, private CReviewScreen {
public:
    // `projectPath` is opened when the window comes up; empty for none.
    explicit CDlgProAtrrib(std::string_view projectPath, QWidget* parent = nullptr);
    ~CDlgProAtrrib() override;

    // False, with everything as it was, if the project can't be opened; the message has been shown. The
    // section on which its review stood last is selected.
    bool OpenProject(std::string_view path);
    // Reads the sections anew. The selection is lost; whoever wants it kept selects the row again at once.
    void RefreshLists() { m_session.RefreshLists(); }
    void FillDefects(std::int32_t sectionId) { m_session.FillDefects(sectionId); }
    void UpdateTitle();

    CReviewSession& Session() { return m_session; }
    CTestingList& SectionList() { return *m_sections; }
    CDefectList& DefectList() { return *m_defects; }
    CWMPPlayer4& Player() { return *m_player; }
    const std::string& ProjectPath() const { return m_session.ProjectPath(); }
    const Markers& DefectMarkers() const { return m_session.DefectMarkers(); }

    // Carries a command out, by its id: pending selections first, then what it needs and asks. Afterwards the
    // lists are fresh, and the operator stands where he stood or on what was made, with the focus there.
    void Run(int id);
    void Close();
    // What a window beside this one asks for, to be run as a command.
    std::function<void()> Asked;
    // The control that the next form begins with; 0: its first.
    int FormField = 0;
    // Made when they are first asked for.
    CDlgCheck& CheckWindow();
    CDlgImport& ImportWindow();
    CRowFilter& Filter() { return *m_filter; }
    // What a command leaves the focus to; else it is where it was.
    QPointer<QWidget> FocusAfter;
    // Which of the parts that can be switched on are.
    void ShowPanels();
    // The list of all defects, as they are now and as the filter leaves them.
    void ShowAllDefects();
    CAllDefects& AllDefects() { return *m_all; }
    CPicturePanel& Pictures() { return *m_pictures; }
    CCodingDesk& Coding() { return *m_coding; }
    // What was typed in windows that ended with a crash: asks for each (3474) whether to go on with it; a
    // draft that isn't wanted goes.
    void OfferDrafts();
    // The draft that is gone on with.
    FormDraft Resuming;

    bool OnControlMessage(int message, std::intptr_t wParam, std::intptr_t lParam) override;

protected:
    void OnInitDialog() override;
    void OnOK() override {}  // Enter does nothing in this window
    void OnCancel() override;
    void OnTimer(int id) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    // As CReviewScreen.
    void FillSections(CDbRec& database) override;
    void FillDefects(CDbRec& database, std::int32_t sectionId) override;
    void ClearDefects() override;
    const CTestingDataArray& Sections() const override;
    const CRecDataArray& Records() const override;
    const _TESTING_DATA* SelectedSection() const override;
    const _REC_DATA* SelectedRecord() const override;
    bool SelectSection(std::int32_t id) override;
    bool SelectRecord(std::int32_t id) override;
    void LoadVideo(std::string_view pathText) override;
    std::string Video() const override;
    double Duration() const override;
    void Seek(double seconds) override;
    void ShowPicture(std::string_view pathText) override;
    void ShowMarkers(const Markers& markers) override;
    void ShowState() override;
    void StartTimer(Timer timer) override;
    void StopTimer(Timer timer) override;

    void MakeButtons();
    void MakeControls();
    void AddShortcut(const char* keys, int id);
    void PlaceControls();
    QWidget* MakeSectionPanel();
    QWidget* MakeReviewPanel();
    QWidget* MakeDefectPanel();
    std::vector<QWidget*> Controls(std::span<const int> ids) const;
    int ButtonWidth() const;
    void ChooseSize();
    void SplitReview();
    // Sizes, splits, columns and panels, in the user's settings for screens of this size.
    void KeepLayout() const;
    void RestoreLayout();
    bool RestoreSplits();  // false if none are known
    void StandOn(const ReviewPlace& place);
    void ShowSplash();
    void ShowCommands();
    void ShowSteps();
    // The line below the sections: the grade of the one selected; and, if they are shown, the levels of all.
    void ShowGrade();
    void ShowCheck();
    void RememberPlace();
    bool TakeKey(const QWidget* focused, const QKeyEvent& event);
    void OnSectionMenu(const QPoint& at);

    CReviewSession m_session{*this};
    std::string m_firstProject;
    bool m_running = false;  // a command
    std::unique_ptr<CRowFilter> m_filter;

    CTestingList* m_sections = nullptr;
    CDefectList* m_defects = nullptr;
    CWMPPlayer4* m_player = nullptr;
    CCtrlPic* m_canvas = nullptr;
    CPointView* m_ruler = nullptr;
    CAllDefects* m_all = nullptr;
    CPicturePanel* m_pictures = nullptr;
    CCodingLine* m_codingLine = nullptr;
    CPipeStrip* m_strip = nullptr;
    std::unique_ptr<CCodingDesk> m_coding;
    std::pair<std::string, std::int64_t> m_allOf;  // project and state that the list of all shows
    CFilterBar* m_filterBar = nullptr;
    CLevelFiller* m_levels = nullptr;
    CDlgCheck* m_check = nullptr;
    CDlgImport* m_import = nullptr;
    std::pair<std::string, std::int64_t> m_levelsOf;  // project and state whose levels are shown
    QSplitter* m_panels = nullptr;
    QSplitter* m_review = nullptr;
    QSplitter* m_parts = nullptr;  // lists of defects, and pictures
    QTimer m_rememberPlace;
    std::pair<std::string, ReviewPlace> m_remembered;
    bool m_split = false;
};
