// What the controls of the defect window do.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>

#include "controls/CButtonST.h"
#include "controls/CSearchBox.h"
#include "defects/CRecordPictures.h"
#include "defects/dialogs/C12Clock.h"
#include "defects/dialogs/CCtrlPic.h"
#include "defects/dialogs/CDlgEdit.h"
#include "defects/dialogs/draftpictures.h"
#include "defects/edittools.h"
#include "defects/manhole.h"
#include "defects/picturesteps.h"
#include "defects/recordchanges.h"
#include "shell/CDesktop.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "store/CDbRec.h"
#include "store/stepnames.h"

namespace {

using Id = DefectControl;
using Tool = EditControl;

constexpr int IdLevelText = 1007;
constexpr int IdLengthText = 5001;
constexpr int IdGiveLength = 5002;
constexpr int MessageUnknownDefect = 3309;
constexpr int MessageNoEnd = 3310;
constexpr int MessageGiveEnd = 3311;
constexpr int MessageNoLength = 3312;
constexpr std::string_view ManholePrefix = "JCJ_";

std::size_t At(int index) {
    return static_cast<std::size_t>(index);
}

}  // namespace

void CDlgEdit::OnInitDialog() {
    (void)m_clock->SetImages(GetAppFolder() + "ui\\clock0.png", GetAppFolder() + "ui\\clock1.png");
    m_clock->SetStartHour(Record.DirectionStart);
    m_clock->SetEndHour(Record.DirectionEnd);
    const DefectNumbers numbers = ShowNumbers(Record);
    Item<QLineEdit>(Id::StartDistance)->setText(ToQt(numbers.StartDistance));
    Item<QLineEdit>(Id::Longitude)->setText(ToQt(numbers.Longitude));
    Item<QLineEdit>(Id::Latitude)->setText(ToQt(numbers.Latitude));
    Item<QLineEdit>(Id::EndDistance)->setText(ToQt(numbers.EndDistance));
    Item<QLineEdit>(ManholeControl::Number)->setText(ToQt(Record.JcjNo));

    ShowLength();

    m_choices = DefectChoices(m_database);
    m_names->SetChoosesOnLeaving(m_add);  // in a stored defect a slip changes nothing
    for (const DefectChoice& choice : m_choices) {
        m_names->addItem(ToQt(choice.Label));
    }
    SelectDefect();
    FillPictures();
    m_pictures->setCurrentIndex(m_pictures->count() > 0 ? 0 : -1);
    OnPictureChange();
    SetCaption(m_add ? 2100 : 2101);
    BeginDraft();
    m_names->setFocus();
    m_names->lineEdit()->selectAll();
}

void CDlgEdit::BeginDraft() {
    if (Draft.Kind.empty()) {
        return;
    }
    m_draft = std::make_unique<CFormDraft>(*this, std::move(Draft));
    m_draft->Keep(
        "code", [this] { return NameIndex() < 0 ? std::string() : m_choices[At(NameIndex())].Code; },
        [this](const std::string& code) {
            if (const int index = FindChoice(m_choices, code); index >= 0 && index != NameIndex()) {
                m_names->setCurrentIndex(index);
                OnNameChange();
            }
        });
    m_draft->Keep(
        "grade", [this] { return FormatInt(GradeIndex()); },
        [this](const std::string& grade) {
            const auto index = static_cast<int>(ParseInt(grade));
            m_grades->setCurrentIndex(index < m_grades->count() ? index : -1);
            ShowLevelText(m_grades->currentIndex());
        });
    m_draft->Keep(
        "clock",
        [this] { return FormatInt(m_clock->GetStartHour()) + " " + FormatInt(m_clock->GetEndHour()); },
        [this](const std::string& hours) {
            m_clock->SetStartHour(static_cast<int>(ParseInt(hours)));
            m_clock->SetEndHour(
                static_cast<int>(ParseInt(std::string_view(hours).substr(hours.find(' ') + 1))));
            ShowHours();
        });
    for (const int id : {Id::Comment, Id::StartDistance, Id::EndDistance, Id::Longitude, Id::Latitude,
                         ManholeControl::Number}) {
        m_draft->KeepControl(id);
    }
    for (const ManholeList& list : ManholeLists()) {
        m_draft->KeepControl(list.Control);
    }
    KeepPictures(*m_draft, Record, Pictures);
    m_draft->Begin();
}

void CDlgEdit::SelectDefect() {
    const std::string comment = Record.Comment;  // replaced with the name
    const int known = FindChoice(m_choices, Record.DefectCode);
    const bool chosen = !m_add || known >= 0;
    m_names->setCurrentIndex(chosen ? known : m_choices.empty() ? -1 : 0);
    OnNameChange();
    if (!chosen || (m_add && Record.DefectLevel == 0)) {
        return;
    }
    if (known < 0) {
        m_names->lineEdit()->setPlaceholderText(ToQt(Record.DefectCode));
    }
    const int grade = Record.DefectLevel - 1;
    m_grades->setCurrentIndex(grade < m_grades->count() ? grade : -1);
    ShowLevelText(m_grades->currentIndex());
    SetComment(comment);
    if (Record.DefectCode.starts_with(ManholePrefix)) {
        for (const ManholeList& list : ManholeLists()) {
            const int row = Record.*list.Member;
            auto* box = Item<QComboBox>(list.Control);
            box->setCurrentIndex(row < box->count() ? row : -1);
        }
    }
}

int CDlgEdit::NameIndex() const {
    return m_names->currentIndex();
}

int CDlgEdit::GradeIndex() const {
    return m_grades->currentIndex();
}

void CDlgEdit::OnNameChange() {
    const int index = NameIndex();
    if (!m_database.IsOpen() || index < 0) {
        return;
    }
    m_levels.clear();
    m_grades->clear();
    ShowLevelText(-1);
    const std::string& code = m_choices[At(index)].Code;
    if (m_database.LoadDefectLevels(code, &m_levels, nullptr)) {
        for (std::size_t grade = 1; grade <= m_levels.size(); ++grade) {
            m_grades->addItem("Level " + QString::number(grade));
            m_grades->setItemData(static_cast<int>(grade) - 1, ToQt(m_levels[grade - 1]), Qt::ToolTipRole);
        }
        m_grades->setCurrentIndex(m_levels.empty() ? -1 : 0);
        OnGradeChange();
    }
    EnableManhole(code.starts_with(ManholePrefix));
}

void CDlgEdit::EnableManhole(bool enable) {
    EnableControl(ManholeControl::Number, enable);
    if (!enable) {
        Item<QLineEdit>(ManholeControl::Number)->clear();
    }
    for (const ManholeList& list : ManholeLists()) {
        EnableControl(list.Control, enable);
        if (!enable) {
            Item<QComboBox>(list.Control)->setCurrentIndex(-1);
        }
    }
}

void CDlgEdit::OnGradeChange() {
    const int grade = GradeIndex();
    if (!m_database.IsOpen() || grade < 0) {
        return;
    }
    ShowLevelText(grade);
    SetComment(m_levels[At(grade)]);
}

// Until the operator changes it, the record's text is the one to store: the edit's lacks what it can't hold.
void CDlgEdit::SetComment(const std::string& comment) {
    Record.Comment = comment;
    m_comment->setPlainText(ToQt(comment));
}

void CDlgEdit::ShowLevelText(int grade) {
    const bool known = grade >= 0 && At(grade) < m_levels.size();
    Item<QPlainTextEdit>(IdLevelText)->setPlainText(known ? ToQt(m_levels[At(grade)]) : QString());
}

void CDlgEdit::OnStartChange() {
    // Half a number may stand there while it is being typed: nothing is told about it, and it isn't touched.
    if (const auto end = DraggedEnd(TypedNumbers(), Record.DistanceEnd)) {
        Item<QLineEdit>(Id::EndDistance)->setText(ToQt(*end));
    }
}

DefectNumbers CDlgEdit::TypedNumbers() const {
    const auto text = [this](int id) { return FromQt(Item<QLineEdit>(id)->text()); };
    return {text(Id::StartDistance), text(Id::Longitude), text(Id::Latitude), text(Id::EndDistance)};
}

bool CDlgEdit::ReadFields() {
    if (const auto problem = ReadNumbers(TypedNumbers(), Record)) {
        ShowProblem(*problem);
        return false;
    }
    return true;
}

void CDlgEdit::ShowProblem(const DefectProblem& problem) {
    Prompts().ShowMessage(problem.Message, problem.Text);
    QWidget* control = GetDlgItem(problem.Control);
    control->setFocus();
    if (auto* edit = dynamic_cast<QLineEdit*>(control)) {
        edit->selectAll();
    }
}

// A code or grade that the standard doesn't know stays until another one is chosen.
_REC_DATA CDlgEdit::BuildRecord() const {
    _REC_DATA record = Record;
    if (NameIndex() >= 0) {
        record.DefectCode = m_choices[At(NameIndex())].Code;
    }
    if (GradeIndex() >= 0) {
        record.DefectLevel = static_cast<std::uint8_t>(GradeIndex() + 1);
    }
    record.DirectionStart = static_cast<std::uint8_t>(m_clock->GetStartHour());
    record.DirectionEnd = static_cast<std::uint8_t>(m_clock->GetEndHour());
    ReadEdited(*m_comment, record.Comment);
    record.JcjNo = FromQt(Item<QLineEdit>(ManholeControl::Number)->text());
    for (const ManholeList& list : ManholeLists()) {
        record.*list.Member = Item<QComboBox>(list.Control)->currentIndex();
    }
    CompleteRecord(m_database, m_id, record);
    return record;
}

void CDlgEdit::ShowLength() {
    const bool none = !(m_sectionLength > 0.0F);
    const auto shown = [this](int id, bool visible, int text) {
        GetDlgItem(id)->setVisible(visible);
        if (auto* label = Item<QLabel>(id)) {
            label->setText(MessageText(text));
        } else {
            Item<QPushButton>(id)->setText(MessageText(text));
        }
    };
    shown(IdLengthText, none, GiveLength ? MessageNoEnd : MessageNoLength);
    shown(IdGiveLength, none && GiveLength, MessageGiveEnd);
}

void CDlgEdit::OnGiveLength() {
    if (const std::optional<float> length = GiveLength()) {
        m_sectionLength = *length;
        ShowLength();
        Item<QLineEdit>(Id::StartDistance)->setFocus();
        Item<QLineEdit>(Id::StartDistance)->selectAll();
    }
}

void CDlgEdit::OnOK() {
    if (IsBusy()) {
        return;
    }
    if (m_names->IsUnknown()) {
        ShowProblem({MessageUnknownDefect,
                     FillText(LoadMessage(MessageUnknownDefect), {FromQt(m_names->currentText())}),
                     Id::Name});
        m_names->lineEdit()->selectAll();
        return;
    }
    if (!ReadFields()) {
        return;
    }
    if (const auto problem = CheckDefect(NameIndex(), GradeIndex(), Record, m_sectionLength)) {
        ShowProblem(*problem);
        return;
    }
    if (StoreRecord(m_database, BuildRecord(), Pictures, m_add ? Storing::New : Storing::Changed)) {
        EndDialog(IdOk);
    }
}

void CDlgEdit::OnCancel() {
    if (!IsBusy()) {
        EndDialog(IdCancel);
    }
}

void CDlgEdit::FillPictures() {
    m_pictures->clear();
    for (int i = 1; i <= Record.Pictures.GetSize(); ++i) {
        m_pictures->addItem(QString::number(i));
    }
    m_anyPicture = false;
    UpdateControls();
}

void CDlgEdit::OnPictureChange() {
    const int index = m_pictures->currentIndex();
    if (index >= 0 && index < Record.Pictures.GetSize()) {
        (void)m_canvas->ShowPicture(Record.Pictures[index].Picture);
    } else {
        m_canvas->ClearPicture();  // or else a tool could write a picture that has been deleted
    }
    m_canvas->ClearObjects();
    m_canvas->ResetRubber();
    m_canvas->SetTool(ToolMode::None);
    UpdateControls();
}

void CDlgEdit::OnAddPicture() {
    (void)Pictures.AddFile(m_firstTime);
}

void CDlgEdit::OnDeletePicture() {
    const int index = m_pictures->currentIndex();
    if (!AskOkCancel(2102) || index < 0 || !ReadFields()) {
        return;
    }
    const CPicDataArray former = Record.Pictures;
    const std::string path = former[index].Picture;
    // A new defect has no row yet.
    const CDbStep step(m_database, StepDeletePicture);
    if (!m_add && !KeepForUndo(m_database, {path})) {
        return;
    }
    Record.Pictures.RemoveAt(index);
    if (m_add || m_database.UpdateRecord(BuildRecord())) {
        if (index == 0) {
            m_firstTime = former[0].PicTimeInVideo;
        }
        DeletePictureFiles(path);
        FillPictures();
    } else {
        DropKept(m_database);
        Record.Pictures = former;
    }
    m_pictures->setCurrentIndex(std::min(index, m_pictures->count() - 1));
    OnPictureChange();
}

void CDlgEdit::OnShowFile() {
    if (m_canvas->HasPicture()) {
        (void)Desktop().ShowInFolder(m_canvas->Path());
    }
}

bool CDlgEdit::IsBusy() const {
    return m_choosingColour || IsToolOn(m_canvas->GetTool());
}

void CDlgEdit::OnTool(ToolMode tool) {
    if (m_canvas->GetTool() == tool && tool != ToolMode::Reference) {
        EndTool(tool);
    } else {
        BeginTool(tool);
    }
    UpdateControls();
}

void CDlgEdit::OnSwitchTool(ToolMode tool) {
    EndTool(m_canvas->GetTool());
    BeginTool(tool);
    UpdateControls();
}

void CDlgEdit::BeginTool(ToolMode tool) {
    // Measuring may begin while points of a calibration stand.
    m_canvas->Annotations().RenewScale();
    m_canvas->ClearCalibration();
    m_canvas->ResetRubber();
    if (tool == ToolMode::Text) {
        m_canvas->SetDefaultText(FromQt(m_names->itemText(NameIndex())));
    }
    m_canvas->SetTool(tool);
}

void CDlgEdit::EndTool(ToolMode tool) {
    if (tool == ToolMode::Calibration) {
        m_canvas->Annotations().RenewScale();
        Calibrated = m_canvas->Annotations().CalibrationPoints().size() == 2;
        m_canvas->ClearCalibration();
        m_canvas->ResetRubber();
    } else if (!m_canvas->HasPicture() ||
               (KeepOriginal(m_canvas->Path()) && KeepPicture(StepDrawPicture, m_canvas->Path()))) {
        m_canvas->BakeToFile();
    }
    m_anyPicture = tool == ToolMode::Calibration || tool == ToolMode::Measuring;
    m_canvas->SetTool(ToolMode::None);
}

// What is drawn on the picture of a new defect is no step before the defect is one.
bool CDlgEdit::KeepPicture(int step, const std::string& picture) {
    return m_add || KeepAsStep(m_database, step, PictureFate::Replaced, picture, Record.TestingID, Record.ID);
}

void CDlgEdit::OnColour() {
    OnPictureChange();
    m_choosingColour = true;
    UpdateControls();
    if (const auto colour = Prompts().PickColour(m_canvas->GetColour())) {
        m_canvas->SetColour(*colour);
    }
    m_choosingColour = false;
    m_anyPicture = false;
    UpdateControls();
}

void CDlgEdit::OnReset() {
    const int index = m_pictures->currentIndex();
    if (!AskOkCancel(2108) || index < 0) {
        return;
    }
    const std::string picture = Record.Pictures[index].Picture;
    if (!HostFiles().Exists(MakeOriginalPath(picture)) || KeepPicture(StepResetPicture, picture)) {
        (void)ResetPicture(picture);  // has told why not
    }
    OnPictureChange();
}

void CDlgEdit::UpdateControls() {
    EditState state;
    state.Tool = m_canvas->GetTool();
    state.ChoosingColour = m_choosingColour;
    state.Scaled = Calibrated;
    state.Pictures = Record.Pictures.GetSize();
    state.AnyPicture = m_anyPicture;
    for (const int id : RuledControls()) {
        EnableControl(id, CanUse(id, state));
    }
    const int on = ToolButton(state.Tool);
    QString hint;
    QString wait;
    for (const ToolMode tool : {ToolMode::Reference, ToolMode::Circle, ToolMode::Arrow, ToolMode::Text,
                                ToolMode::Calibration, ToolMode::Measuring}) {
        auto* button = Item<CButtonST>(ToolButton(tool));
        button->setChecked(ToolButton(tool) == on);
        if (ToolButton(tool) == on) {
            hint = button->toolTip();
            wait = IsToolOn(tool) ? ToQt(FillText(LoadMessage(3189), {FromQt(button->text())})) : QString();
        }
    }
    for (const auto& [tool, shortcut] : m_switches) {
        shortcut->setEnabled(IsToolOn(state.Tool) && tool != state.Tool &&
                             (tool != ToolMode::Measuring || Calibrated) &&
                             !GetDlgItem(ToolButton(tool))->isEnabled());
    }
    m_hint->setText(hint);
    for (const int id : {IdOk, IdCancel}) {
        GetDlgItem(id)->setToolTip(wait);
    }
}
