#include "bulk/dialogs/CDlgBulkEdit.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <algorithm>
#include <set>
#include <utility>

#include "bulk/CQueryRows.h"
#include "bulk/dialogs/CBulkList.h"
#include "check/rules.h"
#include "lists/CTickAllBox.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "store/CDbRec.h"
#include "store/records/fields.h"
#include "store/recordtexts.h"

namespace {

constexpr int MessageTitle = 3960;
constexpr int MessageSections = 3961;
constexpr int MessageRecords = 3962;
constexpr int MessageField = 3963;
constexpr int MessageValue = 3964;
constexpr int MessageMore = 3965;
constexpr int MessageAll = 3966;
constexpr int MessageChanging = 3971;
constexpr int MessageRefusedToo = 3973;
constexpr int MessageChange = 3974;
constexpr int MessageChoose = 3976;

constexpr QSize FirstSize(900, 600);
constexpr std::size_t MostOffered = 100;

std::string CountText(int message, std::size_t count) {
    return FillText(LoadMessage(message), {FormatInt(static_cast<std::int64_t>(count))});
}

// What all fields that change say, before or after.
template <class Row>
std::string Joined(const PlannedEdit<Row>& edit, std::string PlannedField::*side) {
    std::string text;
    for (const PlannedField& field : edit.Fields) {
        text += text.empty() ? "" : "; ";
        text += edit.Fields.size() > 1 ? FieldName(field.Column) + ": " + field.*side : field.*side;
    }
    return text;
}

template <class Row>
std::string CellText(const PlannedEdit<Row>& edit, int column) {
    switch (column) {
        case CBulkList::Now:
            return Joined(edit, &PlannedField::Before);
        case CBulkList::Then:
            return Joined(edit, &PlannedField::After);
        default:
            return edit.Refused;
    }
}

}  // namespace

CDlgBulkEdit::CDlgBulkEdit(CDbRec& database, const CQueryRows& rows, const Choice& choice, QWidget* parent)
    : CSizeDlg(parent), m_database(database) {
    setWindowTitle(MessageText(MessageTitle));
    for (const std::int32_t id : choice.Sections) {
        if (const _TESTING_DATA* section = rows.FindSection(id)) {
            m_sections.push_back(section);
        }
    }
    for (const std::int32_t id : choice.Records) {
        const _REC_DATA* record = rows.FindRecord(id);
        const _TESTING_DATA* section = record == nullptr ? nullptr : rows.FindSection(record->TestingID);
        if (section != nullptr) {
            m_records.push_back(record);
            m_recordLabels.push_back(section->Label() + "  " + record->DefectCode + "  " +
                                     FormatNumber(static_cast<double>(record->DistanceStart), 2) + " m");
        }
    }
    MakeControls();
    (choice.RecordsFirst ? m_ofRecords : m_ofSections)->setChecked(true);
    AddField();
    ShowRows(choice.Ticked);
    connect(m_ofRecords, &QRadioButton::toggled, this, [this] {
        for (FieldLine& line : m_fields) {
            OfferFields(line);
        }
        std::vector<std::int32_t> all;
        for (const _TESTING_DATA* section : m_sections) {
            all.push_back(section->ID);
        }
        if (IsOfRecords()) {
            all.clear();
            for (const _REC_DATA* record : m_records) {
                all.push_back(record->ID);
            }
        }
        ShowRows(all);
    });
    connect(new QShortcut(QKeySequence("Ctrl+A"), m_list), &QShortcut::activated, m_all,
            [this] { m_all->click(); });
    resize(FirstSize);
    m_fields[0].Field->setFocus();
}

void CDlgBulkEdit::MakeControls() {
    m_ofSections =
        AddControl(IdSections, new QRadioButton(ToQt(CountText(MessageSections, m_sections.size())), this));
    m_ofRecords =
        AddControl(IdRecords, new QRadioButton(ToQt(CountText(MessageRecords, m_records.size())), this));
    m_list = AddControl(IdList, new CBulkList(this));
    m_list->TextOf = [this](int row, int column) -> std::string {
        const auto at = static_cast<std::size_t>(row);
        if (column == CBulkList::Label) {
            return IsOfRecords() ? m_recordLabels[at] : m_sections[at]->Label();
        }
        if (IsOfRecords()) {
            return at < m_recordEdits.size() ? CellText(m_recordEdits[at], column) : std::string();
        }
        return at < m_sectionEdits.size() ? CellText(m_sectionEdits[at], column) : std::string();
    };
    m_all = AddControl(IdTickAll, new CTickAllBox(*m_list, this));
    m_all->setToolTip(MessageText(MessageAll));
    // The box follows the list; so does what would be done.
    m_list->OnItemChanged = [this, follow = m_list->OnItemChanged] {
        follow();
        ShowState();
    };
    m_state = AddControl(IdState, new QLabel(this));
    m_state->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_state->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    auto* more = AddControl(IdMore, new QPushButton(MessageText(MessageMore), this));
    more->setAutoDefault(false);
    OnCommand(IdMore, [this] { AddField(); });

    auto* kinds = new QHBoxLayout;
    kinds->addWidget(m_ofSections);
    kinds->addWidget(m_ofRecords);
    kinds->addStretch();
    m_grid = new QGridLayout;
    m_grid->addWidget(new QLabel(MessageText(MessageField), this), 0, 0);
    m_grid->addWidget(new QLabel(MessageText(MessageValue), this), 0, 1);
    m_grid->addWidget(more, 1, 2);
    m_grid->setColumnStretch(1, 1);
    auto* ticks = new QHBoxLayout;
    ticks->addWidget(m_all);
    ticks->addWidget(m_state, 1);
    auto* column = new QVBoxLayout(this);
    column->addLayout(kinds);
    column->addLayout(m_grid);
    column->addLayout(ticks);
    column->addWidget(m_list, 1);
    column->addLayout(MakeOkCancelRow());
    Item<QPushButton>(IdOk)->setText(MessageText(MessageChange));
}

bool CDlgBulkEdit::IsOfRecords() const {
    return m_ofRecords->isChecked();
}

void CDlgBulkEdit::AddField() {
    const auto at = static_cast<int>(m_fields.size());
    if (at == MostFields) {
        return;
    }
    FieldLine line;
    line.Field = AddControl(IdField + at, new QComboBox(this));
    line.Value = AddControl(IdValue + at, new QComboBox(this));
    line.Field->setAccessibleName(MessageText(MessageField));
    line.Value->setAccessibleName(MessageText(MessageValue));
    line.Value->setEditable(true);
    line.Value->setInsertPolicy(QComboBox::NoInsert);
    m_grid->addWidget(line.Field, at + 1, 0);
    m_grid->addWidget(line.Value, at + 1, 1);
    m_fields.push_back(line);
    OfferFields(m_fields.back());
    connect(line.Field, &QComboBox::currentIndexChanged, this, [this, at] {
        OfferValues(m_fields[static_cast<std::size_t>(at)]);
        Plan();
    });
    connect(line.Value, &QComboBox::editTextChanged, this, [this] { Plan(); });
    // Down from what is typed leads to the rows.
    line.Value->lineEdit()->installEventFilter(this);
    EnableControl(IdMore, at + 1 < MostFields);
    line.Field->setFocus();
}

void CDlgBulkEdit::OfferFields(FieldLine& line) {
    const QSignalBlocker quiet(line.Field);
    line.Field->clear();
    line.Field->addItem(MessageText(MessageChoose), QString());
    for (const char* column : IsOfRecords() ? BulkRecordColumns() : BulkSectionColumns()) {
        line.Field->addItem(ToQt(FieldName(column)), QString(column));
    }
    OfferValues(line);
}

// Those that the rows have already, so that a name that was typed well once is only chosen.
void CDlgBulkEdit::OfferValues(FieldLine& line) {
    const QSignalBlocker quiet(line.Value);
    const QString text = line.Value->currentText();
    line.Value->clear();
    std::set<std::string> values;
    const std::string column = FromQt(line.Field->currentData().toString());
    if (!IsOfRecords()) {
        for (const _TESTING_DATA* section : m_sections) {
            if (values.size() < MostOffered && !column.empty()) {
                values.insert(FieldText(*section, column));
            }
        }
    }
    values.erase(std::string());
    for (const std::string& value : values) {
        line.Value->addItem(ToQt(value));
    }
    line.Value->setEditText(text);
}

void CDlgBulkEdit::ShowRows(const std::vector<std::int32_t>& ticked) {
    std::vector<std::int32_t> ids;
    if (IsOfRecords()) {
        for (const _REC_DATA* record : m_records) {
            ids.push_back(record->ID);
        }
    } else {
        for (const _TESTING_DATA* section : m_sections) {
            ids.push_back(section->ID);
        }
    }
    const auto changed = std::exchange(m_list->OnItemChanged, nullptr);  // once, not for each row
    m_list->Show(ids);
    const std::set<std::int32_t> wanted(ticked.begin(), ticked.end());
    if (wanted.size() >= ids.size()) {
        m_list->CheckAll(true);
    } else {
        for (std::size_t i = 0; i < ids.size(); ++i) {
            m_list->SetChecked(static_cast<int>(i), wanted.contains(ids[i]));
        }
    }
    m_list->OnItemChanged = changed;
    m_all->ShowTicked();
    Plan();
}

std::vector<FieldChange> CDlgBulkEdit::Changes() const {
    std::vector<FieldChange> changes;
    for (const FieldLine& line : m_fields) {
        if (const QString column = line.Field->currentData().toString(); !column.isEmpty()) {
            changes.push_back({FromQt(column), FromQt(line.Value->currentText())});
        }
    }
    return changes;
}

void CDlgBulkEdit::Plan() {
    const std::vector<FieldChange> changes = Changes();
    m_sectionEdits.clear();
    m_recordEdits.clear();
    m_refused.clear();
    if (!changes.empty() && IsOfRecords()) {
        m_recordEdits = PlanRecordEdits(m_database, m_records, changes);
    } else if (!changes.empty()) {
        SectionPlan plan = PlanSectionEdits(m_sections, changes);
        m_sectionEdits = std::move(plan.Edits);
        m_refused = std::move(plan.Refused);
    }
    m_list->viewport()->update();
    ShowState();
}

namespace {

template <class Row>
void Count(const std::vector<PlannedEdit<Row>>& edits, const CBulkList& list, int& changing, int& refused) {
    for (std::size_t i = 0; i < edits.size(); ++i) {
        if (list.IsChecked(static_cast<int>(i))) {
            refused += edits[i].Refused.empty() ? 0 : 1;
            changing += edits[i].Refused.empty() && !edits[i].Fields.empty() ? 1 : 0;
        }
    }
}

template <class Row>
std::vector<PlannedEdit<Row>> Ticked(const std::vector<PlannedEdit<Row>>& edits, const CBulkList& list) {
    std::vector<PlannedEdit<Row>> ticked;
    for (std::size_t i = 0; i < edits.size(); ++i) {
        if (list.IsChecked(static_cast<int>(i)) && edits[i].Refused.empty() && !edits[i].Fields.empty()) {
            ticked.push_back(edits[i]);
        }
    }
    return ticked;
}

}  // namespace

void CDlgBulkEdit::ShowState() {
    int changing = 0;
    int refused = 0;
    Count(m_sectionEdits, *m_list, changing, refused);
    Count(m_recordEdits, *m_list, changing, refused);
    std::string text = m_refused;
    if (text.empty()) {
        text = refused == 0
                   ? FillText(LoadMessage(MessageChanging), {FormatInt(changing)})
                   : FillText(LoadMessage(MessageRefusedToo), {FormatInt(changing), FormatInt(refused)});
    }
    m_state->setText(ToQt(text));
    EnableControl(IdOk, changing > 0);
}

void CDlgBulkEdit::OnOK() {
    if (!GetDlgItem(IdOk)->isEnabled()) {
        return;
    }
    const CWaitCursor wait;
    const bool done = IsOfRecords() ? ApplyEdits(m_database, Ticked(m_recordEdits, *m_list))
                                    : ApplyEdits(m_database, Ticked(m_sectionEdits, *m_list));
    if (done) {
        EndDialog(IdOk);
    }
}

bool CDlgBulkEdit::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && dynamic_cast<QKeyEvent*>(event)->key() == Qt::Key_Down &&
        dynamic_cast<QKeyEvent*>(event)->modifiers() == Qt::NoModifier &&
        qobject_cast<QLineEdit*>(watched) != nullptr) {
        m_list->setFocus();
        return true;
    }
    return CSizeDlg::eventFilter(watched, event);
}
