#include "live/dialogs/CDrovaneDlg.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>

#include "defects/dialogs/C12Clock.h"
#include "defects/dialogs/CCtrlPic.h"
#include "lists/CDefectList.h"
#include "live/dialogs/CDlgGps.h"
#include "shell/CHostFiles.h"
#include "shell/CLiveChannel.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CDlgAbout.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/bringtofront.h"
#include "shell/dialogs/qttext.h"
#include "shell/failures.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/dialogs/CDlgNewTesting.h"
#include "store/dialogs/CDlgProject.h"

namespace {

constexpr int IdName = 1000;
constexpr int IdGrade = 1002;
constexpr int IdComment = 1005;
constexpr int IdLevelText = 1007;
constexpr int IdCanvas = 1011;
constexpr int IdClock = 1012;
constexpr int IdStart = 1013;
constexpr int IdLongitude = 1014;
constexpr int IdLatitude = 1015;
constexpr int IdEnd = 1018;
constexpr int IdProject = 1022;
constexpr int IdChoose = 1023;
constexpr int IdDefects = 1032;
constexpr int IdCriterion = 1046;
constexpr int IdGps = 1057;
constexpr int IdNext = 5030;
constexpr int IdAbout = 5031;
constexpr int IdHint = 5032;

constexpr int MessageOrder = 2417;
constexpr int MessageNext = 3445;
constexpr int MessageNotListed = 3446;
constexpr int MessageNothing = 3449;

constexpr int Decimals = 12;
constexpr int CanvasWidth = 480;  // pixels
constexpr int CanvasHeight = 384;

// The controls of a defect, which are of use only with a project and a picture.
constexpr int OfDefect[] = {IdName,      IdGrade,    IdClock,   IdCanvas,    IdStart, IdEnd,
                            IdLongitude, IdLatitude, IdComment, IdLevelText, 1003,    1006,
                            1009,        1010,       1016,      1024,        1025,    1017};

template <class Number>
void ReadNumber(const QString& text, Number& number) {
    if (const std::optional<double> value = ParseWholeDouble(FromQt(text))) {
        number = static_cast<Number>(*value);
    }
}

}  // namespace

CDrovaneDlg::CDrovaneDlg(CLiveChannel& channel, QWidget* parent)
    : CSizeDlg(parent),
      m_channel(channel),
      m_session(channel),
      m_gps(std::make_unique<CDlgGps>(this)),
      m_defects(AddControl(IdDefects, new CDefectList(this))),
      m_canvas(AddControl(IdCanvas, new CCtrlPic(this))),
      m_clock(AddControl(IdClock, new C12Clock(this))),
      m_names(AddControl(IdName, new QComboBox(this))),
      m_grades(AddControl(IdGrade, new QComboBox(this))),
      m_comment(AddControl(IdComment, new QPlainTextEdit(this))),
      m_levelText(AddControl(IdLevelText, new QPlainTextEdit(this))) {
    setWindowTitle("缺陷判读");
    m_canvas->setMinimumSize(CanvasWidth, CanvasHeight);
    m_levelText->setReadOnly(true);
    m_levelText->setFocusPolicy(Qt::ClickFocus);
    for (QPlainTextEdit* edit : {m_levelText, m_comment}) {
        edit->setTabChangesFocus(true);
        edit->setFixedHeight(edit->fontMetrics().lineSpacing() * 3 + 14);
    }
    auto* left = new QVBoxLayout;
    left->addWidget(m_canvas, 3);
    left->addWidget(m_defects, 1);
    auto* right = new QVBoxLayout;
    right->addLayout(MakeForm());
    right->addStretch();
    right->addWidget(MakeButtons());
    auto* whole = new QHBoxLayout(this);
    whole->addLayout(left, 1);
    whole->addLayout(right);

    connect(m_names, &QComboBox::activated, this, [this] { OnNameChange(); });
    connect(m_grades, &QComboBox::activated, this, [this] { OnGradeChange(); });
    connect(Item<QLineEdit>(IdStart), &QLineEdit::textEdited, this, [this] { OnStartChange(); });
    m_channel.OnRaise = [this] { BringToFront(*this); };
    m_channel.OnRecord = [this](std::string_view block, LiveSender sender) {
        return TakeRecord(block, sender);
    };
}

CDrovaneDlg::~CDrovaneDlg() {
    m_channel.OnRaise = nullptr;
    m_channel.OnRecord = nullptr;
}

QGridLayout* CDrovaneDlg::MakeForm() {
    auto* form = new QGridLayout;
    int row = 0;
    const auto add = [&](int label, const char* caption, QWidget* control) {
        auto* text = AddControl(label, new QLabel(caption, this));
        text->setBuddy(control);
        const bool high = dynamic_cast<QPlainTextEdit*>(control) != nullptr;
        form->addWidget(text, row, 0, high ? Qt::AlignTop : Qt::AlignVCenter);
        form->addWidget(control, row++, 1);
    };
    const auto edit = [&](int id, bool readOnly) {
        auto* line = AddControl(id, new QLineEdit(this));
        line->setReadOnly(readOnly);
        return line;
    };
    auto* criterion = edit(IdCriterion, true);
    add(1008, "工程及标准:", edit(IdProject, true));
    form->addWidget(criterion, row++, 1);
    add(1003, "缺陷名称:", m_names);
    add(1006, "缺陷等级:", m_grades);
    add(1009, "等级说明:", m_levelText);
    add(1010, "备注:", m_comment);
    add(1016, "起始距离(m):", edit(IdStart, false));
    add(1017, "结束距离(m):", edit(IdEnd, false));
    add(1024, "经度:", edit(IdLongitude, false));
    add(1025, "纬度:", edit(IdLatitude, false));
    form->addWidget(m_clock, row, 0, 1, 2, Qt::AlignCenter);
    form->setColumnMinimumWidth(1, fontMetrics().horizontalAdvance('0') * 34);
    return form;
}

QWidget* CDrovaneDlg::MakeButtons() {
    auto* panel = new QWidget(this);
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    const auto button = [&](QBoxLayout* row, int id, const char* caption, bool isDefault = false) {
        auto* made = AddControl(id, new QPushButton(caption, panel));
        made->setAutoDefault(isDefault);
        made->setDefault(isDefault);
        row->addWidget(made);
        return made;
    };
    auto* hint = AddControl(IdHint, new QLabel(MessageText(MessageNothing), panel));
    hint->setWordWrap(true);
    column->addWidget(hint);
    m_next = button(column, IdNext, "");
    m_next->hide();
    auto* row = new QHBoxLayout;
    column->addLayout(row);
    button(row, IdGps, "GPS");
    button(row, IdAbout, "关于");
    row->addStretch();
    button(row, IdChoose, "选择工程");
    button(row, IdOk, "添加缺陷", true);
    button(row, IdCancel, "退出");
    OnCommand(IdChoose, [this] { ChooseProject(); });
    OnCommand(IdGps, [this] { m_gps->setVisible(!m_gps->isVisible()); });
    OnCommand(IdAbout, [this] { (void)CDlgAbout(this).DoModal(); });
    OnCommand(IdNext, [this] { TakeUpNext(); });
    connect(new QShortcut(Qt::Key_F8, this), &QShortcut::activated, this, [this] { TakeUpNext(); });
    return panel;
}

void CDrovaneDlg::OnInitDialog() {
    SetCaption(800);
    SetCaptions({{IdCancel, 51},
                 {1003, 802},
                 {1006, 804},
                 {1008, 805},
                 {1009, 806},
                 {1010, 807},
                 {1016, 808},
                 {1024, 809},
                 {1025, 810},
                 {1017, 811},
                 {IdGps, 850},
                 {IdOk, 851},
                 {IdChoose, 852},
                 {IdAbout, 959}});
    (void)m_clock->SetImages("ui\\clock0.png", "ui\\clock1.png");
    m_defects->CreateColumns(false, false);
    m_gps->Create();
    m_gps->adjustSize();
    m_gps->move(screen()->availableGeometry().center() - m_gps->rect().center());
    UpdateControls();
    // What a former run left waits for its operator.
    if (m_session.TakeUpNext()) {
        ShowRecord();
    }
    ShowWaiting();
}

void CDrovaneDlg::UpdateControls() {
    const bool open = m_session.IsOpen();
    const bool picture = m_canvas->HasPicture();
    GetDlgItem(IdHint)->setVisible(!m_session.HasRecord());
    GetDlgItem(IdOk)->setVisible(open);
    GetDlgItem(IdChoose)->setVisible(!open);
    EnableControl(IdOk, picture);
    for (const int id : OfDefect) {
        EnableControl(id, open && picture);
    }
    m_canvas->update();
    m_clock->update();
}

bool CDrovaneDlg::TakeRecord(std::string_view block, LiveSender sender) {
    const GpsFix fix = m_gps->Gps().Fix();
    if (!m_session.Take(block, sender, fix.Longitude, fix.Latitude)) {
        Item<QLineEdit>(IdProject)->setToolTip(MessageText(MessageNotListed));
        m_next->setText(MessageText(MessageNotListed));
        m_next->setToolTip(ToQt(FailureText(HostFiles().LastError())));
        m_next->show();
        return false;
    }
    ShowRecord();
    ShowWaiting();
    return true;
}

void CDrovaneDlg::ShowRecord() {
    const LiveRecord& record = m_session.Record();
    m_start = record.Start;
    m_end = record.End;
    m_longitude = m_session.Longitude();
    m_latitude = m_session.Latitude();
    Item<QLineEdit>(IdStart)->setText(ToQt(FormatNumber(static_cast<double>(m_start), 3)));
    Item<QLineEdit>(IdEnd)->setText(ToQt(FormatNumber(static_cast<double>(m_end), 3)));
    Item<QLineEdit>(IdLongitude)->setText(ToQt(FormatNumber(m_longitude, Decimals)));
    Item<QLineEdit>(IdLatitude)->setText(ToQt(FormatNumber(m_latitude, Decimals)));
    if (!m_canvas->ShowPicture(record.Picture)) {
        m_canvas->setToolTip(ToQt(record.Picture));
    }
    UpdateControls();
}

void CDrovaneDlg::ShowWaiting() {
    const int waiting = m_session.WaitingCount();
    m_next->setText(ToQt(FillText(LoadMessage(MessageNext), {FormatInt(waiting)})));
    m_next->setToolTip({});
    m_next->setVisible(waiting > 0);
}

void CDrovaneDlg::TakeUpNext() {
    if (m_session.TakeUpNext()) {
        ShowRecord();
    }
    ShowWaiting();
}

void CDrovaneDlg::ReadFields() {
    ReadNumber(Item<QLineEdit>(IdStart)->text(), m_start);
    ReadNumber(Item<QLineEdit>(IdEnd)->text(), m_end);
    ReadNumber(Item<QLineEdit>(IdLongitude)->text(), m_longitude);
    ReadNumber(Item<QLineEdit>(IdLatitude)->text(), m_latitude);
}

void CDrovaneDlg::OnStartChange() {
    ReadFields();
    if (m_start > m_end) {
        m_end = m_start;
        Item<QLineEdit>(IdEnd)->setText(ToQt(FormatNumber(static_cast<double>(m_end), 3)));
    }
}

void CDrovaneDlg::ChooseProject() {
    ReadFields();
    if (m_session.IsOpen()) {
        return;  // chosen once
    }
    CDlgProject dialog(1, this);
    if (dialog.DoModal() != IdOk) {
        UpdateControls();
        return;
    }
    const bool opened =
        m_session.OpenProject(dialog.ChosenProject.ProjectPath, [this](_TESTING_DATA& section) {
            CDlgNewTesting form(this);
            form.Sections = {section};
            if (form.DoModal() != IdOk || form.Sections.empty()) {
                return false;
            }
            section = form.Sections.front();
            return true;
        });
    if (opened) {
        for (const auto& [id, text] : {std::pair(IdProject, m_session.Project().ProjectName),
                                       std::pair(IdCriterion, m_session.Project().CriterionName)}) {
            Item<QLineEdit>(id)->setText(ToQt(text));
            Item<QLineEdit>(id)->setToolTip(ToQt(text));
            Item<QLineEdit>(id)->setCursorPosition(0);
        }
        m_names->clear();
        for (const std::string& name : m_session.Database().DefectLabels) {
            m_names->addItem(ToQt(name));
        }
        (void)m_defects->Fill(m_session.Database(), m_session.SectionId());
        m_names->setCurrentIndex(m_names->count() > 0 ? 0 : -1);
        OnNameChange();
        m_names->setFocus();
    }
    UpdateControls();
}

void CDrovaneDlg::OnNameChange() {
    ReadFields();
    const int index = m_names->currentIndex();
    if (!m_session.IsOpen() || index < 0) {
        return;
    }
    m_levels.clear();
    m_grades->clear();
    const std::string& code = m_session.Database().DefectCodes[static_cast<std::size_t>(index)];
    if (!m_session.Database().LoadDefectLevels(code, &m_levels, nullptr)) {
        return;
    }
    for (std::size_t grade = 1; grade <= m_levels.size(); ++grade) {
        m_grades->addItem("Level " + QString::number(grade));
    }
    m_grades->setCurrentIndex(m_levels.empty() ? -1 : 0);
    OnGradeChange();
}

void CDrovaneDlg::OnGradeChange() {
    ReadFields();
    const int grade = m_grades->currentIndex();
    if (m_session.IsOpen() && grade >= 0 && static_cast<std::size_t>(grade) < m_levels.size()) {
        const QString text = ToQt(m_levels[static_cast<std::size_t>(grade)]);
        m_levelText->setPlainText(text);
        m_comment->setPlainText(text);
    }
}

void CDrovaneDlg::OnOK() {
    // As they stood when something was read last: an end that was typed just now doesn't count here.
    if (!CLiveSession::AreInOrder(m_start, m_end)) {
        ShowMessage(MessageOrder);
        return;
    }
    if (!m_session.IsOpen() || !m_canvas->HasPicture() || m_names->currentIndex() < 0) {
        return;
    }
    ReadFields();
    const LiveRecord& live = m_session.Record();
    const auto name = static_cast<std::size_t>(m_names->currentIndex());
    _REC_DATA record;
    record.DefectCode = m_session.Database().DefectCodes[name];
    record.DefectLevel = static_cast<std::uint8_t>(m_grades->currentIndex() + 1);
    record.DistanceStart = m_start;
    record.DistanceEnd = m_end;
    record.DirectionStart = static_cast<std::uint8_t>(m_clock->GetStartHour());
    record.DirectionEnd = static_cast<std::uint8_t>(m_clock->GetEndHour());
    record.Video = live.Video;
    record.AddPicture(live.Picture, live.PictureTime);
    record.GpsX = m_longitude;
    record.GpsY = m_latitude;
    record.Comment = FromQt(m_comment->toPlainText());
    bool stored = false;
    {
        const CWaitCursor wait;
        stored = m_session.Store(std::move(record), m_session.Database().DefectNames[name]);
    }
    if (!stored) {
        return;
    }
    (void)m_defects->Fill(m_session.Database(), m_session.SectionId());
    // A box on the way may have let a further record in, which is in hand now.
    if (m_session.HasRecord()) {
        ShowRecord();
    } else {
        ClearRecord();
        showMinimized();
    }
    ShowWaiting();
}

void CDrovaneDlg::ClearRecord() {
    m_canvas->ClearPicture();
    m_levels.clear();
    m_names->setCurrentIndex(m_names->count() > 0 ? 0 : -1);
    OnNameChange();
    m_clock->SetStartHour(12);
    m_clock->SetEndHour(12);
    m_start = m_end = 0;
    m_longitude = m_latitude = 0;
    for (const int id : {IdStart, IdEnd, IdLongitude, IdLatitude}) {
        Item<QLineEdit>(id)->setText("0");
    }
    m_comment->clear();
    UpdateControls();
}

void CDrovaneDlg::OnCancel() {
    m_session.Close();
    CSizeDlg::OnCancel();
}
