// The state of a manhole, new or stored. Pictures are added and deleted on the disk at once; the row is
// written with OK.
#pragma once

#include <string>

#include "defects/CRecordPictures.h"
#include "shell/dialogs/CFormDraft.h"
#include "shell/dialogs/CSizeDlg.h"
#include "store/records/records.h"

class CCtrlPic;
class CDbRec;
class QComboBox;
class QLayout;
class QPlainTextEdit;

class CJcjDlg : public CSizeDlg {
public:
    // `id` is that of the section for a new record, of the record otherwise; `folder` is that of the
    // section's first video, with its trailing "\". The database must outlive the window.
    CJcjDlg(CDbRec& database, std::int32_t id, std::string folder, bool add, QWidget* parent = nullptr);

    // What the form opens with. A new one has its picture and video in here, a stored one all it has.
    _REC_DATA Record;
    CRecordPictures Pictures{Record};
    // As in CDlgEdit.
    FormDraft Draft;

protected:
    void OnInitDialog() override;
    void OnOK() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLayout* MakeForm();
    QLayout* MakePictureBar();
    QComboBox* AddBox(int id);
    void ApplyCaptions();
    void BeginDraft();
    void FillPictures();
    void ShowPicture(int index);
    void OnNameChange();
    void SetComment(const std::string& comment);
    void OnAddPicture();
    void OnDeletePicture();
    void BuildRecord();

    CCtrlPic* m_canvas;
    bool m_add;
    CDbRec& m_database;
    std::int32_t m_id;
    std::string m_folder;
    std::unique_ptr<CFormDraft> m_draft;

    // Children.
    QComboBox* m_names = nullptr;
    QComboBox* m_grades = nullptr;
    QComboBox* m_pictures = nullptr;
    QPlainTextEdit* m_comment = nullptr;
};
