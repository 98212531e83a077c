#include "bulk/dialogs/CDlgImport.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>

#include "lists/CListCtrl.h"
#include "lists/listtexts.h"
#include "shell/CDesktop.h"
#include "shell/CHostFiles.h"
#include "shell/dialogs/bringtofront.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"

namespace {

constexpr int MessageTitle = 3911;
constexpr int MessageFile = 3912;
constexpr int MessageKind = 3913;
constexpr int MessageReason = 3914;
constexpr int MessageOnlyOdd = 3915;
constexpr int MessageCopy = 3916;
constexpr int MessageCounts = 3917;
constexpr int MessageStopped = 3918;
constexpr int MessageGoTo = 3849;
constexpr int MessageClose = 3470;
constexpr int MessageListName = 3924;

constexpr QSize FirstSize(900, 440);

bool IsOdd(const ImportLine& line) {
    return line.What != ImportLine::Kind::Taken && line.What != ImportLine::Kind::Known;
}

}  // namespace

CDlgImport::CDlgImport(QWidget* parent) : CSizeDlg(parent) {
    setModal(false);
    setWindowTitle(MessageText(MessageTitle));
    MakeControls();
    connect(m_onlyOdd, &QCheckBox::toggled, this, [this] { Fill(); });
    m_list->OnItemChanged = [this] { UpdateControls(); };
    m_list->OnDoubleClick = [this](int) { GoTo(); };
    OnCommand(IdGoTo, [this] { GoTo(); });
    OnCommand(IdCopy, [this] { Copy(); });
    resize(FirstSize);
    UpdateControls();
}

void CDlgImport::MakeControls() {
    m_list = AddControl(IdList, new CListCtrl(this));
    m_list->InsertColumn(ListColumn{.Heading = MessageFile, .Width = 280, .ShowsEnd = true});
    m_list->InsertColumn(ListColumn{.Heading = MessageKind, .Width = 90});
    m_list->InsertColumn(ListColumn{.Heading = MessageReason, .Width = 460});
    m_list->setAccessibleName(MessageText(MessageListName));
    m_onlyOdd = AddControl(IdOnlyOdd, new QCheckBox(MessageText(MessageOnlyOdd), this));
    m_state = AddControl(IdState, new QLabel(this));
    const auto button = [this](int id, int message) {
        auto* made = AddControl(id, new QPushButton(MessageText(message), this));
        made->setAutoDefault(false);
        return made;
    };
    auto* top = new QHBoxLayout;
    top->addWidget(m_state, 1);
    top->addWidget(m_onlyOdd);
    auto* row = new QHBoxLayout;
    row->addWidget(button(IdCopy, MessageCopy));
    row->addStretch();
    row->addWidget(button(IdGoTo, MessageGoTo));
    row->addWidget(button(IdCancel, MessageClose));
    Item<QPushButton>(IdGoTo)->setDefault(true);
    auto* column = new QVBoxLayout(this);
    column->addLayout(top);
    column->addWidget(m_list, 1);
    column->addLayout(row);
    setTabOrder(m_list, m_onlyOdd);
}

void CDlgImport::Follow(const std::string& project) {
    if (project != m_project) {
        m_project = project;
        OnCancel();
    }
}

void CDlgImport::Tell(const ImportJobResult& result) {
    const std::size_t first = m_result.Lines.size();
    m_result.Lines.insert(m_result.Lines.end(), result.Lines.begin(), result.Lines.end());
    m_result.Taken += result.Taken;
    m_result.Known += result.Known;
    m_result.Refused += result.Refused;
    m_result.Stopped = result.Stopped;
    Fill();
    if (!m_list->SelectRowOf(static_cast<std::int32_t>(first))) {
        m_list->SelectRow(0);
    }
    show();
    BringToFront(*this);
    m_list->setFocus();
}

void CDlgImport::Fill() {
    const std::int32_t selected = m_list->ItemData(m_list->SelectedRow());
    m_list->DeleteAllRows();
    for (std::size_t i = 0; i < m_result.Lines.size(); ++i) {
        const ImportLine& line = m_result.Lines[i];
        if (IsOdd(line) || !m_onlyOdd->isChecked()) {
            m_list->AddRow({line.File, ImportKindText(line.What), line.Text}, static_cast<std::int32_t>(i));
        }
    }
    (void)m_list->SelectRowOf(selected);
    std::string text =
        FillText(LoadMessage(MessageCounts),
                 {FormatInt(m_result.Taken), FormatInt(m_result.Known), FormatInt(m_result.Refused)});
    if (m_result.Stopped) {
        text += "    " + LoadMessage(MessageStopped);
    }
    m_state->setText(ToQt(text));
    UpdateControls();
}

const ImportLine* CDlgImport::Chosen() const {
    const int row = m_list->SelectedRow();
    return row < 0 ? nullptr : &m_result.Lines[static_cast<std::size_t>(m_list->ItemData(row))];
}

void CDlgImport::UpdateControls() {
    EnableControl(IdGoTo, Chosen() != nullptr);
    EnableControl(IdCopy, m_list->RowCount() > 0);
}

void CDlgImport::GoTo() {
    const ImportLine* chosen = Chosen();
    if (chosen == nullptr) {
        return;
    }
    const ImportLine line = *chosen;
    if (line.Section >= 0 && OnGoTo) {
        OnGoTo(line);
    } else if (!Desktop().ShowInFolder(line.File)) {
        (void)Desktop().OpenFile(GetParentFolder(line.File));
    }
}

void CDlgImport::Copy() const {
    std::vector<ImportLine> lines;
    for (int row = 0; row < m_list->RowCount(); ++row) {
        lines.push_back(m_result.Lines[static_cast<std::size_t>(m_list->ItemData(row))]);
    }
    QGuiApplication::clipboard()->setText(ToQt(ImportLinesText(lines)));
}

void CDlgImport::OnCancel() {
    m_result = {};
    Fill();
    hide();
}
