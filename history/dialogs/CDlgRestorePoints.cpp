#include "history/dialogs/CDlgRestorePoints.h"

#include <QBoxLayout>
#include <QPushButton>

#include "history/dialogs/CDlgCompare.h"
#include "history/journaltables.h"
#include "lists/CListCtrl.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/catalogue.h"

namespace {

constexpr int MessageTitle = 3401;
constexpr int MessageCompare = 3405;
constexpr int MessageOpen = 3406;
constexpr int MessageRestore = 3407;
constexpr int MessageEmpty = 3408;
constexpr int MessageRestored = 3409;
constexpr int MessagePictures = 3463;
constexpr int MessageSaveRestored = 3464;
constexpr int MessageNotRestored = 3465;
constexpr int MessageClose = 3470;

constexpr QSize FirstSize(640, 400);

std::string Megabytes(std::int64_t bytes) {
    return FormatNumber(static_cast<double>(bytes) / (1 << 20), 1) + " MB";
}

}  // namespace

CDlgRestorePoints::CDlgRestorePoints(CDbRec& database, bool canChange, QWidget* parent)
    : CSizeDlg(parent),
      m_database(database),
      m_canChange(canChange),
      m_list(AddControl(IdPoints, new CListCtrl(this))) {
    setWindowTitle(MessageText(MessageTitle));
    auto* compare = AddControl(IdCompare, new QPushButton(MessageText(MessageCompare), this));
    auto* open = AddControl(IdOpen, new QPushButton(MessageText(MessageOpen), this));
    auto* restore = AddControl(IdRestore, new QPushButton(MessageText(MessageRestore), this));
    auto* close = AddControl(IdCancel, new QPushButton(MessageText(MessageClose), this));
    compare->setDefault(true);
    open->setAutoDefault(false);
    restore->setAutoDefault(false);
    auto* row = new QHBoxLayout;
    row->addWidget(compare);
    row->addWidget(open);
    row->addWidget(restore);
    row->addStretch();
    row->addWidget(close);
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_list, 1);
    column->addLayout(row);

    m_list->InsertColumn(MessageText(3402), 170);
    m_list->InsertColumn(MessageText(3403), 260);
    m_list->InsertColumn(MessageText(3404), 90, true);
    m_list->setAccessibleName(MessageText(MessageTitle));
    m_list->SetEmptyText(MessageText(MessageEmpty));
    m_list->OnItemChanged = [this] { UpdateControls(); };
    m_list->OnDoubleClick = [this](int) { Compare(); };
    OnCommand(IdCompare, [this] { Compare(); });
    OnCommand(IdOpen, [this] { Open(); });
    OnCommand(IdRestore, [this] { Restore(); });
    resize(FirstSize);
}

void CDlgRestorePoints::OnInitDialog() {
    Fill();
    m_list->SelectRow(0);
    m_list->setFocus();
    UpdateControls();
}

void CDlgRestorePoints::Fill() {
    std::string journal;
    try {
        journal = JournalOf(m_database);
    } catch (const CDbError&) {
        // Then those that are found by the file.
    }
    m_points = ListRestorePoints(m_database.Path(), journal);
    m_list->DeleteAllRows();
    for (const RestorePoint& point : m_points) {
        m_list->AddRow({point.Time, LoadMessage(point.Reason), Megabytes(point.Bytes)});
    }
}

const RestorePoint* CDlgRestorePoints::Selected() const {
    const int row = m_list->SelectedRow();
    return row >= 0 && static_cast<std::size_t>(row) < m_points.size()
               ? &m_points[static_cast<std::size_t>(row)]
               : nullptr;
}

void CDlgRestorePoints::UpdateControls() {
    for (const int id : {IdCompare, IdOpen, IdRestore}) {
        EnableControl(id, Selected() != nullptr);
    }
}

void CDlgRestorePoints::Compare() {
    if (Selected() == nullptr) {
        return;
    }
    const std::string path = Selected()->Path;
    CDlgCompare dialog(m_database, path, m_canChange, this);
    (void)dialog.DoModal();
    if (dialog.TakenBack >= 0) {
        TakenBack = dialog.TakenBack;
        Fill();  // with the point that was made before
        m_list->SelectRow(0);
    }
}

void CDlgRestorePoints::Open() {
    if (Selected() != nullptr) {
        OpenPoint = Selected()->Path;
        EndDialog(IdCancel);
    }
}

void CDlgRestorePoints::Restore() {
    if (Selected() == nullptr) {
        return;
    }
    const RestorePoint point = *Selected();
    const std::string path = Prompts().PickSaveFile(LoadMessage(MessageSaveRestored), FreeProjectPath(),
                                                    "mdb", {{"Drovane (*.mdb)", {"*.mdb"}}});
    if (path.empty()) {
        return;
    }
    try {
        const RestoredPictures pictures = [&] {
            const CWaitCursor wait;
            return RestoreProject(point, m_database, path);
        }();
        std::string text = "\r\n" + path;
        if (pictures.BroughtBack > 0 || pictures.Missing > 0) {
            text += "\r\n" + FillText(LoadMessage(MessagePictures),
                                      {FormatInt(pictures.BroughtBack), FormatInt(pictures.Missing)});
        }
        ShowMessage(MessageRestored, text);
    } catch (const CDbError& error) {
        ShowMessage(MessageNotRestored, "\r\n" + path + FailureLine(error));
    }
}
