// The commands of the review window.
#include <QAction>
#include <QKeySequence>
#include <QMenu>

#include "controls/CButtonST.h"
#include "controls/CWMPPlayer4.h"
#include "defects/dialogs/CCtrlPic.h"
#include "defects/dialogs/defectcommands.h"
#include "defects/recordchanges.h"
#include "fieldimport/acquisitionimport.h"
#include "reports/CRecExport.h"
#include "reports/dialogs/CDlgExport.h"
#include "reports/excel/excelexport.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CDlgAbout.h"
#include "shell/dialogs/CDlgSet.h"
#include "shell/dialogs/CProgressDlg.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/qttext.h"
#include "shell/seams.h"
#include "store/catalogue.h"
#include "store/dialogs/CDlgNewPro.h"
#include "store/dialogs/CDlgNewTesting.h"
#include "store/dialogs/CDlgProject.h"
#include "store/newsections.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommandtable.h"
#include "lists/CDefectList.h"
#include "lists/CTestingList.h"
#include "lists/listtexts.h"

struct CDlgProAtrrib::Command {
    int Id;
    void (CDlgProAtrrib::*Handler)();  // null while the command isn't built
};

const std::vector<CDlgProAtrrib::Command>& CDlgProAtrrib::Commands() {
    static const std::vector<Command> commands = {
        {1038, &CDlgProAtrrib::OnOpenProject},
        {1024, &CDlgProAtrrib::OnProjectProperties},
        {1082, &CDlgProAtrrib::OnImportXml},
        {1027, nullptr},
        {1025, &CDlgProAtrrib::OnExportExcel},
        {1026, &CDlgProAtrrib::OnExportWord},
        {1018, nullptr},
        {1019, nullptr},
        {1081, &CDlgProAtrrib::OnSettings},
        {1080, &CDlgProAtrrib::OnAbout},
        {IdCancel, &CDlgProAtrrib::OnCancel},
        {1021, &CDlgProAtrrib::OnNewSections},
        {1023, &CDlgProAtrrib::OnDeleteSection},
        {1028, &CDlgProAtrrib::OnSectionProperties},
        {1079, &CDlgProAtrrib::OnCalculateGps},
        {1035, &CDlgProAtrrib::OnNewDefect},
        {1037, &CDlgProAtrrib::OnNewManholeDefect},
        {1030, &CDlgProAtrrib::OnDeleteDefect},
        {1029, &CDlgProAtrrib::OnEditDefect},
        {1033, &CDlgProAtrrib::OnSecondPicture},
    };
    return commands;
}

void CDlgProAtrrib::MakeButtons() {
    for (const Command& command : Commands()) {
        const ReviewButton& look = ButtonOf(command.Id);
        auto* button =
            AddControl(command.Id, new CButtonST(look.Size > 24 ? CButtonST::Layout::PictureOverText
                                                                : CButtonST::Layout::PictureBesideText,
                                                 this));
        button->SetBitmap(look.Bitmap, look.Size);
        button->setText(ToQt(look.Caption));
        SetCaptions({{command.Id, look.Text}});
        button->SetTip(MessageText(look.Text + TipOffset));
        if (command.Handler != nullptr) {
            button->SetShortcut(QKeySequence(look.Shortcut));
            OnCommand(command.Id, [this, handler = command.Handler] { (this->*handler)(); });
        } else {
            button->setEnabled(false);
            button->SetTip(MessageText(look.Text + TipOffset) + "\n" + MessageText(MessageNotBuilt));
        }
    }
}

bool CDlgProAtrrib::NeedProject() const {
    if (!m_database) {
        ShowMessage(2185);
    }
    return m_database != nullptr;
}

bool CDlgProAtrrib::NeedSection() const {
    const bool selected = m_database && m_sections->SelectedSection() != nullptr;
    if (!selected) {
        ShowMessage(2191);
    }
    return selected;
}

bool CDlgProAtrrib::NeedDefect() const {
    const bool selected = m_database && m_defects->SelectedRecord() != nullptr;
    if (!selected) {
        ShowMessage(2196);
    }
    return selected;
}

void CDlgProAtrrib::OnOpenProject() {
    CDlgProject dialog(1, this);
    dialog.ExcludedPath = m_projectPath;
    if (dialog.DoModal() == IdOk) {
        const CWaitCursor wait;
        (void)OpenProject(dialog.ChosenProject.ProjectPath);
    }
}

void CDlgProAtrrib::OnProjectProperties() {
    _PRO_DATA project;
    if (!NeedProject() || !m_database->ReadAttrib(project)) {
        return;
    }
    CDlgNewPro dialog(this);
    dialog.Edit(project);
    do {
        if (dialog.DoModal() != IdOk || dialog.ProjectName.empty() || dialog.CriterionIndex < 0) {
            return;
        }
        project.ProjectName = dialog.ProjectName;
        project.Comment = dialog.Comment;
        project.ProjectIndex = dialog.ProjectIndex;
        project.Location = dialog.Location;
    } while (!m_database->WriteAttrib(project, false));
    m_projectName = project.ProjectName;
    m_criterionName = project.CriterionName;
    UpdateTitle();
    RefreshLists();
}

void CDlgProAtrrib::OnImportXml() {
    if (!NeedProject()) {
        return;
    }
    const std::string path = Prompts().PickOpenFile(
        FromQt(MessageText(MessageImportXml)), {{"XML File(*.xml)", {"*.xml"}}, {"All Files(*.*)", {"*.*"}}});
    if (path.empty()) {
        return;
    }
    if (IsSonarDescription(path)) {
        ShowMessage(MessageSonarNotBuilt);
        return;
    }
    bool imported = false;
    {
        const CWaitCursor wait;
        // What is wrong with a description goes to nobody: a window has no standard output.
        imported = ImportAcquisition(*m_database, path, [](const std::string&) {});
    }
    if (imported) {
        RefreshLists();
        UpdateTitle();
    }
}

void CDlgProAtrrib::OnExportExcel() {
    if (!NeedProject() || !AskOkCancel(2188)) {
        return;
    }
    std::string path;
    {
        const CWaitCursor wait;
        path = ExportInspectionTable(*m_database);
    }
    if (!path.empty()) {
        OpenInspectionTable(path);
    }
}

void CDlgProAtrrib::OnExportWord() {
    if (HasSonarData(m_projectPath)) {
        ShowMessage(MessageNoSonarReport);
    } else if (NeedProject()) {
        (void)CDlgExport(*m_database, this).DoModal();
    }
}

void CDlgProAtrrib::OnSettings() {
    (void)CDlgSet(this).DoModal();
}

void CDlgProAtrrib::OnAbout() {
    (void)CDlgAbout(this).DoModal();
}

void CDlgProAtrrib::OnNewSections() {
    if (!NeedProject()) {
        return;
    }
    CDlgNewTesting dialog(this);
    dialog.NewFlag = 1;
    if (dialog.DoModal() != IdOk) {
        return;
    }
    (void)AddNewSections(*m_database, dialog.Sections, [this](const std::string& video) {
        return std::make_unique<CProgressDlg>(this, MessageText(MessageCopying) + "\n" + ToQt(video));
    });
    // A command that stopped half way leaves the sections that it has made.
    RefreshLists();
    UpdateTitle();
}

void CDlgProAtrrib::OnDeleteSection() {
    if (!NeedSection() || !AskOkCancel(2192)) {
        return;
    }
    const _TESTING_DATA section = *m_sections->SelectedSection();
    m_player->Controls().Stop();
    m_player->SetURL("");
    (void)m_database->DeleteTesting(section);
    RefreshLists();
}

void CDlgProAtrrib::OnSectionProperties() {
    if (!NeedSection()) {
        return;
    }
    const int row = m_sections->SelectedRow();
    CDlgNewTesting dialog(this);
    dialog.Sections = {*m_sections->SelectedSection()};
    if (dialog.DoModal() == IdOk && !dialog.Sections.empty()) {
        (void)m_database->UpdateTesting(dialog.Sections.front());
        RefreshLists();
        ReselectSection(row);
    }
}

void CDlgProAtrrib::OnCalculateGps() {
    if (!NeedSection() || !AskOkCancel(2193)) {
        return;
    }
    const int row = m_sections->SelectedRow();
    if (m_database->RecalcRecordGps(m_sections->SelectedSection()->ID)) {
        RefreshLists();
        ReselectSection(row);
    }
}

void CDlgProAtrrib::OnNewDefect() {
    if (!NeedSection()) {
        return;
    }
    if (m_player->URL().empty()) {
        ShowMessage(2194);
        return;
    }
    const _TESTING_DATA section = *m_sections->SelectedSection();
    m_player->Controls().Pause();
    if (NewDefect(*m_database, section, m_player->URL(), m_player->Controls().CurrentPosition(), this)) {
        RefillDefects();
    }
}

void CDlgProAtrrib::OnNewManholeDefect() {
    if (!m_database || m_sections->SelectedSection() == nullptr) {
        return;
    }
    const _TESTING_DATA section = *m_sections->SelectedSection();
    m_player->Controls().Pause();
    if (NewManholeDefect(*m_database, section, m_player->URL(), m_player->Controls().CurrentPosition(),
                         this)) {
        RefreshLists();
    }
}

void CDlgProAtrrib::OnEditDefect() {
    if (!NeedDefect() || m_sections->SelectedSection() == nullptr) {
        return;
    }
    const int row = m_defects->SelectedRow();
    const auto record = StoredRecord(*m_database, *m_defects->SelectedRecord());
    if (record && EditDefect(*m_database, *m_sections->SelectedSection(), *record, this)) {
        RefillDefects();
        m_defects->SelectRow(std::min(row, m_defects->RowCount() - 1));
    }
}

// Of the section that is selected now.
void CDlgProAtrrib::RefillDefects() {
    if (const _TESTING_DATA* section = m_sections->SelectedSection()) {
        FillDefects(section->ID);
    } else {
        m_defects->Clear();
    }
}

void CDlgProAtrrib::OnDeleteDefect() {
    if (!NeedDefect() || !AskOkCancel(2197)) {
        return;
    }
    const int row = m_defects->SelectedRow();
    const auto record = StoredRecord(*m_database, *m_defects->SelectedRecord());
    if (record && DeleteDefect(*m_database, *record)) {
        m_canvas->ClearPicture();
        m_defects->DeleteRow(row);
    }
}

void CDlgProAtrrib::OnSecondPicture() {
    if (!NeedDefect()) {
        return;
    }
    if (m_player->URL().empty()) {
        ShowMessage(2198);
        return;
    }
    m_player->Controls().Pause();
    const double seconds = m_player->Controls().CurrentPosition();
    const auto record = StoredRecord(*m_database, *m_defects->SelectedRecord());
    if (record && AddSecondPicture(*m_database, *record, DefectName(*m_database, record->DefectCode),
                                   m_player->URL(), seconds)) {
        FillDefects(record->TestingID);
    }
}

void CDlgProAtrrib::OnSectionMenu(const QPoint& at) {
    QMenu menu(this);
    menu.setTitle("管道列表");
    QAction* sort = menu.addAction(MessageText(MessageSortByWells));
    if (menu.exec(at) == sort) {
        OnSortByWells();
    }
}

void CDlgProAtrrib::OnSortByWells() {
    m_sections->SortByWells();
    Renumber();
}

void CDlgProAtrrib::Renumber() {
    std::vector<std::int32_t> ids;
    for (int row = 0; row < m_sections->RowCount(); ++row) {
        ids.push_back(static_cast<std::int32_t>(m_sections->ItemData(row)));
    }
    if (ids.empty() || !m_database) {
        return;
    }
    (void)RenumberSections(*m_database, ids);
    const int selected = m_sections->SelectedRow();
    RefreshLists();
    ReselectSection(selected);
}
