#include "reports/dialogs/CDlgExport.h"

#include <QApplication>
#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScreen>

#include "assessment/explain/dialogs/gradechoice.h"
#include "assessment/standards.h"
#include "check/dialogs/CErrorNote.h"
#include "lists/CTestingList.h"
#include "lists/CTickAllBox.h"
#include "reports/CRecExport.h"
#include "reports/word/generator.h"
#include "reports/word/wordreport.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/qttext.h"
#include "shell/documents.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"

namespace {

constexpr int IdSections = 1031;
constexpr int IdAll = 1032;
constexpr int IdStatus = 1048;
constexpr int IdRegionLabel = 1054;
constexpr int IdSoilLabel = 1056;
constexpr int IdHeading = 1057;
constexpr int IdLoadLabel = 1058;
constexpr int IdRegion = 1063;
constexpr int IdSoil = 1064;
constexpr int IdLoad = 1065;
constexpr int IdAsReviewed = 5069;
constexpr int IdErrors = 5085;

constexpr int MessageNoSections = 3232;
constexpr int MessageReplace = 3233;
constexpr int MessageAsReviewed = 3570;

constexpr int ListHeight = 320;  // pixels
constexpr int ScreenMargin = 80;
constexpr const char* Ending = ".docx";

}  // namespace

// While it lives the window takes nothing from its operator. What he typed or clicked meanwhile comes only
// afterwards, so it is taken out before the window is usable again: a second click on OK mustn't make a
// second report.
class CDlgExport::CRunning {
public:
    explicit CRunning(CDlgExport& dialog) : m_dialog(dialog), m_focus(dialog.focusWidget()) {
        m_dialog.m_running = true;
        Enable(false);
    }
    ~CRunning() {
        QApplication::processEvents();
        Enable(true);
        m_dialog.m_running = false;
        if (m_focus) {
            m_focus->setFocus();
        }
    }
    CRunning(const CRunning&) = delete;
    CRunning& operator=(const CRunning&) = delete;

private:
    void Enable(bool enable) {
        for (const int id :
             {IdSections, IdAll, IdRegion, IdSoil, IdLoad, IdAsReviewed, IdErrors, IdOk, IdCancel}) {
            m_dialog.EnableControl(id, enable);
        }
    }

    CDlgExport& m_dialog;
    QPointer<QWidget> m_focus;
};

CDlgExport::CDlgExport(CRecExport& project, QWidget* parent)
    : CSizeDlg(parent),
      m_project(project),
      m_sections(AddControl(IdSections, new CTestingList(this))),
      m_all(AddControl(IdAll, new CTickAllBox(*m_sections, this))),
      m_status(AddControl(IdStatus, new QLabel(this))),
      m_errors(AddControl(IdErrors, new CErrorNote(this))) {
    setWindowTitle("导出Word报告");
    auto* heading = AddControl(IdHeading, new QLabel("请选择需要到处的管段", this));
    heading->setBuddy(m_sections);
    m_sections->FixOrder();
    m_sections->AllowSeveral();
    m_sections->setMinimumHeight(ListHeight);
    m_status->setTextFormat(Qt::PlainText);
    m_status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);  // a long text widens nothing

    auto* head = new QHBoxLayout;
    head->addWidget(heading, 1);
    head->addWidget(m_all);
    auto* grid = new QGridLayout;
    m_region = AddParameter(*grid, IdRegionLabel, "地区重要性参数(K)", IdRegion);
    m_soil = AddParameter(*grid, IdSoilLabel, "土质影响参数(T)", IdSoil);
    m_load = AddParameter(*grid, IdLoadLabel, "负荷(F)", IdLoad);
    grid->addWidget(AddControl(IdAsReviewed, new QPushButton(this)), 1, 2, Qt::AlignLeft | Qt::AlignVCenter);
    Item<QPushButton>(IdAsReviewed)->setAutoDefault(false);
    grid->setColumnStretch(2, 1);
    QBoxLayout* buttons = MakeOkCancelRow();
    buttons->insertWidget(0, m_status, 1);

    auto* column = new QVBoxLayout(this);
    column->addLayout(head);
    column->addWidget(m_sections, 1);
    column->addLayout(grid);
    column->addWidget(m_errors);
    column->addSpacing(6);
    column->addLayout(buttons);
}

QComboBox* CDlgExport::AddParameter(QGridLayout& grid, int labelId, const char* label, int id) {
    auto* box = AddControl(id, new QComboBox(this));
    box->setMaxVisibleItems(12);
    box->setFocusPolicy(Qt::StrongFocus);
    box->installEventFilter(this);
    auto* text = AddControl(labelId, new QLabel(label, this));
    text->setBuddy(box);
    const int row = grid.rowCount();
    grid.addWidget(text, row, 0, Qt::AlignRight);
    grid.addWidget(box, row, 1);
    return box;
}

void CDlgExport::OnInitDialog() {
    SetCaption(300);
    SetCaptions({{IdOk, 50},
                 {IdCancel, 51},
                 {IdRegionLabel, 301},
                 {IdSoilLabel, 302},
                 {IdLoadLabel, 303},
                 {IdHeading, 304}});
    if (!m_project.ReadAttrib(m_attributes)) {
        EndDialog(IdCancel);
        return;
    }
    if (FindScoringRoute(m_attributes.CriterionName) == ScoringRoute::None) {
        ShowMessage(2153, m_attributes.CriterionName);
        EndDialog(IdCancel);
        return;
    }
    m_useGenerator = UsesGenerator(m_attributes.CriterionName);
    FillParameters();
    FillSections();
    m_errors->OnLink = [this] {
        ErrorsWanted = true;
        OnCancel();
    };
    m_errors->Start(m_project);
}

void CDlgExport::FillParameters() {
    const ScoringRoute route = FindScoringRoute(m_attributes.CriterionName);
    FillParameterBox(*m_region, ParametersK(route));
    FillParameterBox(*m_soil, ParametersT(route));
    for (const auto& [label, id] : {std::pair(IdRegionLabel, IdRegion), std::pair(IdSoilLabel, IdSoil),
                                    std::pair(IdLoadLabel, IdLoad)}) {
        const bool filled = Item<QComboBox>(id)->count() > 0;
        GetDlgItem(label)->setVisible(filled);
        GetDlgItem(id)->setVisible(filled);
    }
    OfferChoice(route);
}

// The lists open on their first rows, as a report always has; what was chosen in the review is one click
// away.
void CDlgExport::OfferChoice(ScoringRoute route) {
    const GradeChoice choice = KeptGradeChoice(m_project.Path(), route);
    GetDlgItem(IdAsReviewed)->setVisible(choice.RowK != 0 || choice.RowT != 0);
    Item<QPushButton>(IdAsReviewed)
        ->setText(
            ToQt(FillText(LoadMessage(MessageAsReviewed), {FormatNumber(static_cast<double>(choice.K), 1),
                                                           FormatNumber(static_cast<double>(choice.T), 1)})));
    OnCommand(IdAsReviewed, [this, choice] {
        m_region->setCurrentIndex(choice.RowK);
        m_soil->setCurrentIndex(choice.RowT);
    });
}

void CDlgExport::FillSections() {
    m_sections->CreateColumns(true);
    m_sections->SetEmptyText(MessageText(MessageNoSections));
    const CWaitCursor wait;
    (void)m_sections->Fill(m_project);  // has told its message
    m_sections->RebuildHasDefects();
    m_sections->CheckAll(true);
    m_all->ShowTicked();
    const int widest = screen()->availableSize().width() - ScreenMargin;
    m_sections->setMinimumWidth(std::min(m_sections->FullWidth(), widest));
    m_sections->setFocus();
}

void CDlgExport::ShowStatus(const std::string& text) {
    const QString whole = ToQt(text);
    m_status->setText(m_status->fontMetrics().elidedText(whole, Qt::ElideMiddle, m_status->width()));
    m_status->setToolTip(whole);
    // The window also answers the desktop, which would take it for dead.
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void CDlgExport::OnOK() {
    if (m_running) {
        return;
    }
    bool close = false;
    {
        const CRunning running(*this);
        close = Export();
    }
    if (close) {
        CSizeDlg::OnOK();
    }
}

void CDlgExport::OnCancel() {
    if (!m_running) {
        CSizeDlg::OnCancel();
    }
}

bool CDlgExport::Export() {
    ReportOrder order;
    order.Sections = m_sections->CheckedSections();
    order.K = m_region->currentData().toFloat();
    order.T = m_soil->currentData().toFloat();
    order.Status = [this](const std::string& text) { ShowStatus(text); };
    CReportRun run;
    {
        const CWaitCursor wait;
        if (!CollectWordReport(m_project, m_attributes.CriterionName, order, run)) {
            ShowStatus("");
            return false;
        }
    }
    return m_useGenerator ? RunGenerator(run) : WriteReport(run);
}

bool CDlgExport::WriteReport(const CReportRun& run) {
    const CWaitCursor wait;
    const WordReport report = WriteWordReport(run, m_attributes.CriterionName, m_attributes.ProjectName,
                                              [this](const std::string& text) { ShowStatus(text); });
    if (report.Path.empty()) {
        ShowStatus("");
        return false;
    }
    const std::string plan = run.PlanMissing ? "    " + LoadMessage(MessageNoPlan) : std::string();
    ShowStatus(HostFiles().HostPath(report.Path) + plan);
    OpenWordReport(report.Path);
    return report.Complete;
}

// The chooser has asked for the name that was chosen, which isn't the document's.
bool CDlgExport::AskToReplace(const std::string& path) {
    return Prompts().AskOkCancel(MessageReplace,
                                 LoadMessage(MessageReplace) + "\n" + HostFiles().HostPath(path));
}

bool CDlgExport::RunGenerator(CReportRun& run) {
    std::string chosen;
    std::string path;
    do {
        chosen = Prompts().PickSaveFile(LoadMessage(300), MakeDocumentName(m_attributes.ProjectName, Ending),
                                        std::string(Ending + 1), {{"Word Files(*.docx)", {"*.docx"}}});
        if (chosen.empty()) {
            return true;
        }
        path = WithExtension(chosen, Ending);
    } while (path != chosen && HostFiles().Exists(path) && !AskToReplace(path));
    const CWaitCursor wait;
    ShowStatus(LoadMessage(2159));
    if (!StartGenerator(m_project, run, path)) {
        ShowStatus("");
        return false;
    }
    return true;
}

bool CDlgExport::eventFilter(QObject* watched, QEvent* event) {
    // Turned over a list by chance it would change all scores.
    return event->type() == QEvent::Wheel || CSizeDlg::eventFilter(watched, event);
}
