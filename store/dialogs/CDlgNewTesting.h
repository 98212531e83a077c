// The form of a pipe section. New: the operator picks videos, and each becomes a section with the values of
// the form, which opens with those of the last new section. Edit: the first section is shown and comes back
// changed, its video apart. The database isn't touched: the caller stores what comes back.
#pragma once

#include <memory>
#include <vector>

#include "shell/dialogs/CFormDraft.h"
#include "shell/dialogs/CSizeDlg.h"
#include "store/records/records.h"
#include "store/sectionform.h"

class QFormLayout;
class QGroupBox;
class QHBoxLayout;
class QLineEdit;
class QListWidget;

class CDlgNewTesting : public CSizeDlg {
public:
    explicit CDlgNewTesting(QWidget* parent = nullptr);

    // In and out; Cancel leaves them as they are.
    std::vector<_TESTING_DATA> Sections;
    int NewFlag = 0;  // 1: new sections
    // Where what is typed is kept until the window ends; with values, what a crash left.
    FormDraft Draft;

protected:
    void OnInitDialog() override;
    void OnOK() override;

private:
    QGroupBox* MakeTaskGroup();
    QGroupBox* MakePipeGroup();
    QGroupBox* MakeVideoGroup();
    void AddEdit(QFormLayout* form, int label, const char* caption, int id);
    void AddBox(QFormLayout* form, int label, const char* caption, int id, bool editable);
    QHBoxLayout* MakePosition(int longitude, int latitude, int longitudeName, int latitudeName);
    void MakeShortcuts();
    void ApplyCaptions();

    void BeginDraft();
    void OnAddVideos();
    void OnRemoveVideo();
    void OnSelectVideo();
    void OnCalculate();

    SectionTexts TextsShown() const;
    void ShowTexts(const SectionTexts& texts);
    void ReadForm();  // tells of the first number that can't be read
    void ShowForm();  // leaves alone what the last ReadForm couldn't read
    void KeepTypedWells();
    void ShowWells(const WellPair& wells);
    void ShowVideos();
    void ShowProblem(const SectionProblem& problem);
    void EnableControls();

    SectionForm m_form;
    int m_unread = 0;  // the control that the last reading stopped at
    QListWidget* m_videos = nullptr;
    std::unique_ptr<CFormDraft> m_draft;
};
