// The face of the program beside a running acquisition: a defect comes in with its picture, the operator
// names and grades it, the row is stored, the acquisition program gets its answer. A record that comes in
// takes the place of the one that is being graded, which then waits on the list.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "live/CLiveSession.h"
#include "shell/dialogs/CSizeDlg.h"

class C12Clock;
class CCtrlPic;
class CDefectList;
class CDlgGps;
class QComboBox;
class QGridLayout;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

class CDrovaneDlg : public CSizeDlg {
public:
    // The channel outlives the window, and is this window's as long as it is there.
    explicit CDrovaneDlg(CLiveChannel& channel, QWidget* parent = nullptr);
    ~CDrovaneDlg() override;

    CLiveSession& Session() { return m_session; }
    CDlgGps& Gps() { return *m_gps; }

protected:
    void OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;

private:
    QGridLayout* MakeForm();
    QWidget* MakeButtons();
    void UpdateControls();
    bool TakeRecord(std::string_view block, LiveSender sender);
    void ShowRecord();
    void ShowWaiting();
    void ClearRecord();
    void ChooseProject();
    void TakeUpNext();
    void OnNameChange();
    void OnGradeChange();
    void OnStartChange();
    // What stands in the window; a number that can't be read keeps its former value.
    void ReadFields();

    CLiveChannel& m_channel;
    CLiveSession m_session;
    std::unique_ptr<CDlgGps> m_gps;
    std::vector<std::string> m_levels;
    CDefectList* m_defects;
    CCtrlPic* m_canvas;
    C12Clock* m_clock;
    QComboBox* m_names;
    QComboBox* m_grades;
    QPlainTextEdit* m_comment;
    QPlainTextEdit* m_levelText;
    QPushButton* m_next;
    float m_start = 0;
    float m_end = 0;
    double m_longitude = 0;
    double m_latitude = 0;
};
