#include "store/dialogs/CDlgProject.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>

#include "controls/icons.h"
#include "lists/CTestingList.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/projectsettings.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/paths.h"
#include "store/CDbRec.h"
#include "store/catalogue.h"
#include "store/dialogs/CDlgNewPro.h"
#include "store/dialogs/CProjectList.h"
#include "store/merge.h"

namespace {

constexpr int IdProjects = 1014;
constexpr int IdSections = 1015;
constexpr int IdMap = 1018;
constexpr int IdNew = 1019;
constexpr int IdDelete = 1020;
constexpr int IdNewSection = 1021;
constexpr int IdDeleteSection = 1023;
constexpr int IdEdit = 1024;
constexpr int IdExcel = 1025;
constexpr int IdWord = 1026;
constexpr int IdGps = 1027;
constexpr int IdEditSection = 1028;
constexpr int IdMerge = 1029;
constexpr int IdCalcGps = 1079;
constexpr int IdSetAside = 5003;

constexpr int TimerSelection = 1;
constexpr int AfterClick = 50;  // milliseconds
constexpr int AfterRefresh = 10;
constexpr int ListHeight = 320;  // pixels

}  // namespace

CDlgProject::CDlgProject(int mode, QWidget* parent)
    : CSizeDlg(parent),
      m_mode(mode),
      m_projects(AddControl(IdProjects, new CProjectList(this))),
      m_warning(new QLabel(this)) {
    setWindowTitle("工程列表");
    m_projects->setMinimumHeight(ListHeight);
    m_projects->AllowSeveral();
    m_projects->OnItemChanged = [this] { SetTimer(TimerSelection, AfterClick); };
    m_projects->OnDoubleClick = [this](int) { OnOK(); };
    m_warning->setWordWrap(true);
    m_warning->setTextFormat(Qt::PlainText);
    m_warning->hide();

    auto* buttons = new QVBoxLayout;
    const auto addButton = [&](int id, const char* text, const char* picture) {
        auto* button = AddControl(id, new QPushButton(text, this));
        if (picture != nullptr) {
            button->setIcon(LoadIcon(picture));
        }
        buttons->addWidget(button);
    };
    addButton(IdNew, "新建工程", "ui\\small\\new.bmp");
    addButton(IdEdit, "工程属性", "ui\\small\\attrib.bmp");
    addButton(IdDelete, "删除工程", "ui\\small\\del.bmp");
    addButton(IdMerge, "工程合并", nullptr);
    addButton(IdMap, "地图", nullptr);
    buttons->addStretch();

    auto* upper = new QHBoxLayout;
    upper->addWidget(m_projects, 1);
    upper->addLayout(buttons);
    upper->addWidget(MakeSectionPanel(), 1);
    auto* column = new QVBoxLayout(this);
    column->addLayout(upper, 1);
    auto* warning = new QHBoxLayout;
    warning->addWidget(m_warning, 1);
    auto* aside = AddControl(IdSetAside, new QPushButton(MessageText(3415), this));
    aside->setToolTip(MessageText(3416));
    aside->setAutoDefault(false);
    aside->hide();
    warning->addWidget(aside);
    column->addLayout(warning);
    column->addLayout(MakeOkCancelRow());

    OnCommand(IdNew, [this] { OnNewProject(); });
    OnCommand(IdEdit, [this] { OnEditProject(); });
    OnCommand(IdDelete, [this] { OnDeleteProject(); });
    OnCommand(IdMap, [this] { OnMap(); });
    OnCommand(IdMerge, [this] { OnMerge(); });
    OnCommand(IdSetAside, [this] {
        (void)SetAside(m_projects->Unreadable());
        RefreshProjects();
        UpdateButtons();
        m_projects->setFocus();
    });
    MakeShortcuts();
}

QWidget* CDlgProject::MakeSectionPanel() {
    auto* panel = new QWidget(this);
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    m_sections = AddControl(IdSections, new CTestingList(panel));
    m_sections->OnItemChanged = [this] { UpdateButtons(); };
    m_sections->OnDoubleClick = [this](int) {
        if (m_mode == 1) {
            OnOK();
        }
    };
    column->addWidget(m_sections, 1);
    auto* row = new QHBoxLayout;
    const auto addButton = [&](int id, const char* text) {
        row->addWidget(AddControl(id, new QPushButton(text, panel)));
    };
    addButton(IdNewSection, "新建管段");
    addButton(IdDeleteSection, "删除管段");
    addButton(IdEditSection, "管段属性");
    addButton(IdExcel, "导出Excel");
    addButton(IdWord, "导出Word");
    addButton(IdGps, "导入GPS");
    addButton(IdCalcGps, "计算Gps");
    column->addLayout(row);
    panel->setVisible(m_mode != 1);
    for (const int id : {IdMap, IdExcel, IdWord, IdGps}) {
        GetDlgItem(id)->hide();
    }
    return panel;
}

void CDlgProject::MakeShortcuts() {
    const std::pair<Qt::Key, int> keys[] = {
        {Qt::Key_Insert, IdNew}, {Qt::Key_F2, IdEdit}, {Qt::Key_Delete, IdDelete}};
    for (const auto& [key, id] : keys) {
        auto* button = Item<QPushButton>(id);
        connect(new QShortcut(QKeySequence(key), this), &QShortcut::activated, button,
                [button] { button->click(); });
    }
}

// The map's button is hidden.
void CDlgProject::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_M || event->modifiers() != Qt::ControlModifier) {
        CSizeDlg::keyPressEvent(event);
    } else {
        OnMap();
    }
}

void CDlgProject::OnInitDialog() {
    SetCaption(1000);
    SetCaptions(
        {{IdOk, 1053}, {IdCancel, 51}, {IdNew, 1050}, {IdDelete, 1051}, {IdEdit, 1052}, {IdMerge, 1060}});
    SetTip(IdOk, 3014);
    SetTip(IdNew, 3011);
    SetTip(IdEdit, 3013);
    SetTip(IdDelete, 3012);
    SetTip(IdMerge, 3015);
    m_projects->CreateColumns();
    m_projects->SetEmptyText(MessageText(3010));
    m_projects->setMinimumWidth(m_projects->FullWidth());
    m_sections->CreateColumns(false);
    RefreshProjects();
    m_projects->SelectRow(0);
    m_projects->SelectProject(FromQt(UserSetting(LastProjectKey).toString()));
    UpdateButtons();
    m_projects->setFocus();
}

void CDlgProject::RefreshProjects() {
    const int selected = m_projects->SelectedRow();
    {
        const CWaitCursor wait;
        m_projects->FillProjects(GetDbFolder(), ExcludedPath);
    }
    m_projects->SelectRow(selected);
    ShowUnreadable();
    SetTimer(TimerSelection, AfterRefresh);
}

void CDlgProject::ShowUnreadable() {
    const std::string unreadable = m_projects->UnreadableFile();
    m_warning->setText(ToQt(FillText(LoadMessage(3018), {unreadable})));
    m_warning->setVisible(!unreadable.empty());
    GetDlgItem(IdSetAside)->setVisible(!unreadable.empty());
}

void CDlgProject::OnTimer(int id) {
    if (id != TimerSelection) {
        return;
    }
    KillTimer(id);
    m_sections->DeleteAllRows();
    UpdateButtons();
}

void CDlgProject::UpdateButtons() {
    const bool project = m_projects->SelectedRow() >= 0;
    const bool section = m_sections->SelectedRow() >= 0;
    for (const int id : {IdOk, IdDelete, IdNewSection}) {
        EnableControl(id, project);
    }
    EnableControl(IdMap, project && ShowMap);
    EnableControl(IdMerge, m_projects->RowCount() > 0);
    for (const int id : {IdDeleteSection, IdEditSection, IdCalcGps}) {
        EnableControl(id, section);
    }
}

void CDlgProject::OnOK() {
    const _PRO_DATA* selected = m_projects->SelectedProject();
    if (selected != nullptr && m_mode != 0) {
        ChosenProject = *selected;
        EndDialog(IdOk);
    }
}

void CDlgProject::OnNewProject() {
    CDlgNewPro properties(this);
    std::string created;
    while (created.empty()) {
        if (properties.DoModal() != IdOk ||
            !CanSaveProject(properties.Properties(), properties.CriterionIndex, properties.CriterionList)) {
            return;
        }
        const CWaitCursor wait;
        created = CreateProject(properties.Properties(), properties.CriterionIndex, properties.CriterionList);
    }
    RefreshProjects();
    m_projects->SelectProject(created);
    UpdateButtons();
}

void CDlgProject::OnDeleteProject() {
    const int row = m_projects->SelectedRow();
    const _PRO_DATA* selected = m_projects->ProjectAt(row);
    if (selected == nullptr) {
        return;
    }
    const std::string path = selected->ProjectPath;
    const CWaitCursor wait;
    if (DeleteProject(path, m_projects->RowAt(row))) {
        m_projects->DeleteRow(row);
        ShowUnreadable();
        SetTimer(TimerSelection, AfterRefresh);
    }
    UpdateButtons();
}

void CDlgProject::OnMap() {
    const _PRO_DATA* selected = m_projects->SelectedProject();
    if (selected == nullptr || !ShowMap) {
        return;
    }
    const _PRO_DATA project = *selected;
    if (ShowMap(project, ChosenSection, ChosenRecord) && m_mode != 0) {
        ChosenProject = project;
        EndDialog(IdOk);
    }
}

void CDlgProject::OnMerge() {
    std::vector<_PRO_DATA> chosen;
    for (const int row : m_projects->SelectedRows()) {
        if (const _PRO_DATA* project = m_projects->ProjectAt(row)) {
            chosen.push_back(*project);
        }
    }
    if (chosen.size() != 2) {
        ShowMessage(1061);
        return;
    }
    MergeResult result;
    bool merged = false;
    {
        const CWaitCursor wait;
        merged = MergeProjects(chosen[0], chosen[1], result);
    }
    if (result.Path.empty()) {
        return;
    }
    RefreshProjects();
    m_projects->SelectProject(result.Path);
    UpdateButtons();
    if (merged) {
        ShowMergeResult(result);
    }
}

void CDlgProject::OnEditProject() {
    const _PRO_DATA* selected = m_projects->SelectedProject();
    if (selected == nullptr) {
        return;
    }
    const std::string path = selected->ProjectPath;
    _PRO_DATA stored;
    {
        CDbRec database;
        if (!database.OpenDatabase(path, CDbPassword) || !database.ReadAttrib(stored)) {
            return;
        }
    }
    CDlgNewPro properties(this);
    properties.Edit(stored);
    bool written = false;
    while (!written) {
        if (properties.DoModal() != IdOk ||
            !CanSaveProject(properties.Properties(), properties.CriterionIndex, properties.CriterionList)) {
            return;
        }
        // A project keeps the standard that it was made from, whatever was chosen.
        written = WriteNewAttrib(path, properties.Properties(), stored.StandardIndex);
    }
    RefreshProjects();
    UpdateButtons();
}
