// Where a defect of a section is named, graded, placed and drawn on, new or stored. Pictures are changed on
// the disk at once; the row is written with OK, and when a picture of a stored defect is deleted.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "defects/CRecordPictures.h"
#include "defects/defectform.h"
#include "defects/tools.h"
#include "shell/dialogs/CFormDraft.h"
#include "shell/dialogs/CSizeDlg.h"
#include "store/records/records.h"

class C12Clock;
class CButtonST;
class CCtrlPic;
class CDbRec;
class CSearchBox;
class QComboBox;
class QLabel;
class QLayout;
class QPlainTextEdit;
class QPushButton;
class QShortcut;

class CDlgEdit : public CSizeDlg {
public:
    // `id` is that of the section for a new defect, of the record otherwise; the length is the section's in
    // metres. The database must outlive the window.
    CDlgEdit(bool add, CDbRec& database, std::int32_t id, float sectionLength, QWidget* parent = nullptr);

    // What the form opens with. A new defect has its picture, video and position in here, a stored one all it
    // has.
    _REC_DATA Record;
    CRecordPictures Pictures{Record};
    // What gives a section without a length one, in metres; nothing if it can't. The window offers it then.
    std::function<std::optional<float>()> GiveLength;
    // Where what is typed is kept until the window ends; with values, what a crash left.
    FormDraft Draft;

protected:
    void OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLayout* MakeForm();
    QLayout* MakePlaceAndClock();
    QLayout* MakePictureBar();
    QLayout* MakeToolBar();
    void MakeManholeControls();
    QLayout* MakeLengthRow();
    void AddSwitch(ToolMode tool, const char* keys);
    bool TakePictureKey(const QKeyEvent& key);
    CButtonST* AddTool(int id, const char* caption, const char* keys, int tip);
    void ApplyCaptions();

    void FillPictures();
    void SelectDefect();
    void BeginDraft();
    void ShowHours();

    void OnNameChange();
    void OnGradeChange();
    void OnPictureChange();
    void OnStartChange();
    void OnAddPicture();
    void OnDeletePicture();
    void OnShowFile();
    void OnTool(ToolMode tool);
    void BeginTool(ToolMode tool);
    void EndTool(ToolMode tool);
    bool KeepPicture(int step, const std::string& picture);
    void OnColour();
    void OnReset();
    void OnSwitchTool(ToolMode tool);
    void OnGiveLength();
    void ShowLength();

    int NameIndex() const;
    int GradeIndex() const;
    void ShowLevelText(int grade);
    void SetComment(const std::string& comment);
    void EnableManhole(bool enable);
    DefectNumbers TypedNumbers() const;
    bool ReadFields();  // false if a number can't be read, which has been told
    void ShowProblem(const DefectProblem& problem);
    _REC_DATA BuildRecord() const;
    bool IsBusy() const;  // a tool is on
    void UpdateControls();

    const bool m_add;
    CDbRec& m_database;
    const std::int32_t m_id;
    float m_sectionLength;
    std::vector<DefectChoice> m_choices;  // rows of the name box
    std::vector<std::string> m_levels;    // rows of the grade box
    double m_firstTime = -1.0;            // of the first picture that was deleted last; -1: none was
    bool m_anyPicture = false;
    bool m_choosingColour = false;
    std::unique_ptr<CFormDraft> m_draft;

    // Children.
    CCtrlPic* m_canvas;
    CSearchBox* m_names = nullptr;
    QComboBox* m_grades = nullptr;
    QPlainTextEdit* m_comment = nullptr;
    C12Clock* m_clock = nullptr;
    QComboBox* m_pictures = nullptr;
    QLabel* m_hours = nullptr;
    QLabel* m_hint = nullptr;
    std::map<ToolMode, QShortcut*> m_switches;
};
