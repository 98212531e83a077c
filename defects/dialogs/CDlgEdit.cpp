// The window's controls and how they are laid out; what they do stands in CDlgEditCommands.cpp.
#include "defects/dialogs/CDlgEdit.h"

#include <QAbstractItemView>
#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>

#include "controls/CButtonST.h"
#include "controls/CSearchBox.h"
#include "defects/dialogs/C12Clock.h"
#include "defects/dialogs/CCtrlPic.h"
#include "defects/edittools.h"
#include "defects/manhole.h"
#include "shell/dialogs/qttext.h"
#include "shell/dialogs/theme.h"
#include "shell/language.h"

namespace {

using Id = DefectControl;
using Tool = EditControl;

constexpr int IdCanvas = 1011;
constexpr int IdClock = 1012;
constexpr int IdLevelText = 1007;
constexpr int IdNumberLabel = 1018;
constexpr int IdLengthText = 5001;
constexpr int IdGiveLength = 5002;
constexpr int FormCharacters = 36;  // digits
constexpr int VisibleDefects = 20;
constexpr int GradeKeys = 9;

// Texts of captions without an id.
QString OwnText(int number, const char* builtIn) {
    return HasLanguageTable() ? MessageText(number) : QString::fromUtf8(builtIn);
}

// Large, since a picture is written at the size at which it is seen, but the whole window must fit the
// screen.
QSize CanvasSize(const QWidget& window) {
    const QSize available = window.screen()->availableSize() - QSize(440, 200);
    return QSize(720, 540).boundedTo(available).expandedTo(QSize(400, 300));
}

}  // namespace

CDlgEdit::CDlgEdit(bool add, CDbRec& database, std::int32_t id, float sectionLength, QWidget* parent)
    : CSizeDlg(parent),
      m_add(add),
      m_database(database),
      m_id(id),
      m_sectionLength(sectionLength),
      m_canvas(nullptr) {
    setWindowTitle("缺陷判读");
    // In the order of the Tab key: what every defect needs comes first.
    auto* form = new QVBoxLayout;
    form->addLayout(MakeForm());
    form->addLayout(MakePlaceAndClock());
    form->addLayout(MakeLengthRow());
    form->addStretch();
    form->addLayout(MakeOkCancelRow());
    m_canvas = AddControl(IdCanvas, new CCtrlPic(this));
    m_canvas->setMinimumSize(CanvasSize(*this));
    m_canvas->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_hint = new QLabel(this);
    QPalette quiet = m_hint->palette();
    quiet.setColor(QPalette::WindowText, AccentColour);
    m_hint->setPalette(quiet);
    auto* picture = new QVBoxLayout;
    picture->addLayout(MakePictureBar());
    picture->addLayout(MakeToolBar());
    picture->addWidget(m_canvas, 1);
    picture->addWidget(m_hint);
    auto* window = new QHBoxLayout(this);
    window->addLayout(picture, 1);
    window->addSpacing(6);
    window->addLayout(form);
    MakeManholeControls();
    ApplyCaptions();
    m_canvas->installEventFilter(this);
    // A defect's place is a distance and a position on the clock; its degrees are worked out as a rule.
    setTabOrder(Item<QLineEdit>(Id::EndDistance), m_clock);
    setTabOrder(m_clock, Item<QLineEdit>(Id::Longitude));
    setTabOrder(Item<QLineEdit>(Id::Longitude), Item<QLineEdit>(Id::Latitude));
}

QLayout* CDlgEdit::MakeLengthRow() {
    auto* text = AddControl(IdLengthText, new QLabel(this));
    text->setWordWrap(true);
    QPalette colours = text->palette();
    colours.setColor(QPalette::WindowText, WarningColour);
    text->setPalette(colours);
    auto* button = AddControl(IdGiveLength, new QPushButton(this));
    button->setAutoDefault(false);
    OnCommand(IdGiveLength, [this] { OnGiveLength(); });
    auto* row = new QHBoxLayout;
    row->addWidget(text, 1);
    row->addWidget(button);
    return row;
}

QLayout* CDlgEdit::MakeForm() {
    m_names = AddControl(Id::Name, new CSearchBox(this));
    m_names->setMaxVisibleItems(VisibleDefects);
    m_names->OnChosen = [this] { OnNameChange(); };
    m_grades = AddControl(Id::Grade, new QComboBox(this));
    m_grades->setFocusPolicy(Qt::StrongFocus);
    m_grades->view()->installEventFilter(this);
    m_grades->installEventFilter(this);
    connect(m_grades, &QComboBox::activated, this, [this] { OnGradeChange(); });
    // What a grade means can be read before it is chosen.
    connect(m_grades, &QComboBox::highlighted, this, [this](int row) { ShowLevelText(row); });
    for (int grade = 1; grade <= GradeKeys; ++grade) {
        auto* key = new QShortcut(QKeySequence(Qt::Key_0 + grade), m_grades);
        key->setContext(Qt::WidgetShortcut);
        connect(key, &QShortcut::activated, this, [this, grade] {
            if (grade <= m_grades->count()) {
                m_grades->setCurrentIndex(grade - 1);
                OnGradeChange();
            }
        });
    }

    auto* form = new QGridLayout;
    int row = 0;
    const auto addRow = [&](int label, const char* caption, QWidget* control) {
        auto* text = AddControl(label, new QLabel(caption, this));
        text->setBuddy(control);
        const bool high = dynamic_cast<QPlainTextEdit*>(control) != nullptr;
        form->addWidget(text, row, 0, high ? Qt::AlignTop : Qt::AlignVCenter);
        form->addWidget(control, row++, 1);
    };
    addRow(1003, "缺陷名称:", m_names);
    addRow(1006, "缺陷等级:", m_grades);
    auto* level = AddControl(IdLevelText, new QPlainTextEdit(this));
    level->setReadOnly(true);
    level->setFocusPolicy(Qt::ClickFocus);
    addRow(1009, "等级说明:", level);
    m_comment = AddControl(Id::Comment, new QPlainTextEdit(this));
    m_comment->installEventFilter(this);
    addRow(1010, "备注:", m_comment);
    for (QPlainTextEdit* edit : {level, m_comment}) {
        edit->setTabChangesFocus(true);
        edit->setFixedHeight(edit->fontMetrics().lineSpacing() * 4 + 14);
    }
    form->setColumnMinimumWidth(1, fontMetrics().horizontalAdvance('0') * FormCharacters);
    return form;
}

QLayout* CDlgEdit::MakePlaceAndClock() {
    auto* place = new QGridLayout;
    int row = 0;
    const auto addEdit = [&](int label, const char* caption, int id) {
        auto* text = AddControl(label, new QLabel(caption, this));
        auto* edit = AddControl(id, new QLineEdit(this));
        text->setBuddy(edit);
        place->addWidget(text, row++, 0);
        place->addWidget(edit, row++, 0);
        return edit;
    };
    connect(addEdit(1016, "起始距离(m):", Id::StartDistance), &QLineEdit::textEdited, this,
            [this] { OnStartChange(); });
    addEdit(1026, "结束距离(m):", Id::EndDistance);
    addEdit(1024, "经度:", Id::Longitude);
    addEdit(1025, "纬度:", Id::Latitude);
    place->setRowStretch(row, 1);

    m_hours = new QLabel(this);
    m_clock = AddControl(IdClock, new C12Clock(this));
    m_clock->OnChanged = [this] { ShowHours(); };
    m_hours->setBuddy(m_clock);
    auto* clock = new QVBoxLayout;
    clock->addWidget(m_hours);
    clock->addWidget(m_clock);
    clock->addStretch();
    auto* both = new QHBoxLayout;
    both->addLayout(place, 1);
    both->addSpacing(8);
    both->addLayout(clock);
    return both;
}

CButtonST* CDlgEdit::AddTool(int id, const char* caption, const char* keys, int tip) {
    auto* button = AddControl(id, new CButtonST(CButtonST::Layout::PictureBesideText, this));
    button->setText(caption);
    button->SetTip(MessageText(tip));
    button->SetShortcut(QKeySequence(keys));
    return button;
}

// While a tool is on the buttons of the others rest; their keys end it and go on with the other tool.
void CDlgEdit::AddSwitch(ToolMode tool, const char* keys) {
    if (*keys != '\0') {
        auto* shortcut = new QShortcut(QKeySequence(keys), this);
        shortcut->setEnabled(false);
        connect(shortcut, &QShortcut::activated, this, [this, tool] { OnSwitchTool(tool); });
        m_switches[tool] = shortcut;
    }
}

QLayout* CDlgEdit::MakePictureBar() {
    m_pictures = AddControl(Tool::PictureBox, new QComboBox(this));
    m_pictures->setMinimumContentsLength(3);
    connect(m_pictures, &QComboBox::activated, this, [this] { OnPictureChange(); });
    auto* bar = new QHBoxLayout;
    auto* label = new QLabel(MessageText(3152), this);
    label->setBuddy(m_pictures);
    bar->addWidget(label);
    bar->addWidget(m_pictures);
    bar->addWidget(AddTool(Tool::AddPicture, "添加", "Ctrl+O", 3181));
    bar->addWidget(AddTool(Tool::DeletePicture, "删除", "Ctrl+D", 3180));
    bar->addWidget(AddTool(Tool::ShowFile, "查看", "Ctrl+L", 3182));
    bar->addStretch();
    OnCommand(Tool::AddPicture, [this] { OnAddPicture(); });
    OnCommand(Tool::DeletePicture, [this] { OnDeletePicture(); });
    OnCommand(Tool::ShowFile, [this] { OnShowFile(); });
    return bar;
}

QLayout* CDlgEdit::MakeToolBar() {
    auto* bar = new QHBoxLayout;
    const auto addTool = [&](ToolMode tool, const char* caption, const char* keys, int tip) {
        CButtonST* button = AddTool(ToolButton(tool), caption, keys, tip);
        button->setCheckable(true);
        OnCommand(ToolButton(tool), [this, tool] { OnTool(tool); });
        AddSwitch(tool, keys);
        bar->addWidget(button);
    };
    addTool(ToolMode::Circle, "圆", "Ctrl+1", 3183);
    addTool(ToolMode::Arrow, "箭头", "Ctrl+2", 3183);
    addTool(ToolMode::Text, "文字", "Ctrl+3", 3183);
    bar->addWidget(AddTool(Tool::Colour, "颜色", "Ctrl+4", 3186));
    bar->addSpacing(10);
    addTool(ToolMode::Reference, "标定", "", 3183);
    addTool(ToolMode::Calibration, "标定", "Ctrl+5", 3184);
    addTool(ToolMode::Measuring, "测距", "Ctrl+6", 3185);
    bar->addSpacing(10);
    bar->addWidget(AddTool(Tool::Clear, "清除", "Ctrl+Z", 3187));
    bar->addWidget(AddTool(Tool::Reset, "重置", "Ctrl+R", 3188));
    bar->addStretch();
    OnCommand(Tool::Colour, [this] { OnColour(); });
    OnCommand(Tool::Clear, [this] {
        (void)m_canvas->UndoLast(m_canvas->GetTool());
        m_canvas->ResetRubber();
    });
    OnCommand(Tool::Reset, [this] { OnReset(); });
    return bar;
}

// A defect of a pipe has none of these, and a manhole has its own window; they carry the columns of records
// that open here all the same.
void CDlgEdit::MakeManholeControls() {
    AddControl(IdNumberLabel, new QLabel(MessageText(3195), this))->hide();
    AddControl(ManholeControl::Number, new QLineEdit(this))->hide();
    for (const ManholeList& list : ManholeLists()) {
        AddControl(list.LabelId, new QLabel(MessageText(list.Caption), this))->hide();
        auto* box = AddControl(list.Control, new QComboBox(this));
        for (const char* text : list.Rows) {
            box->addItem(QString::fromUtf8(text));
        }
        box->setCurrentIndex(-1);
        box->hide();
    }
}

void CDlgEdit::ApplyCaptions() {
    SetCaption(200);
    SetCaptions({{IdOk, 50},
                 {IdCancel, 51},
                 {1003, 202},
                 {1006, 204},
                 {1009, 206},
                 {1010, 207},
                 {1016, 208},
                 {1024, 209},
                 {1025, 210},
                 {1026, 212},
                 {Tool::DeletePicture, 251},
                 {Tool::ShowFile, 252},
                 {Tool::Reference, 253},
                 {Tool::Calibrate, 253},
                 {Tool::AddPicture, 3172},
                 {Tool::Circle, 3173},
                 {Tool::Arrow, 3174},
                 {Tool::Text, 3175},
                 {Tool::Colour, 3176},
                 {Tool::Clear, 3177},
                 {Tool::Reset, 3178},
                 {Tool::Measure, 3179}});
    GetDlgItem(Tool::Reference)->setVisible(!HasLanguageTable());
    m_names->lineEdit()->setPlaceholderText(MessageText(3190));
    m_names->setToolTip(MessageText(3190));
    m_clock->setToolTip(MessageText(3192));
    m_clock->setAccessibleName(OwnText(3191, "环向位置:"));
    m_pictures->setAccessibleName(MessageText(3152));
    m_pictures->setToolTip(MessageText(3152));
    ShowHours();
}

void CDlgEdit::ShowHours() {
    m_hours->setText(OwnText(3191, "环向位置:") + ' ' + QString::number(m_clock->GetStartHour()) + " - " +
                     QString::number(m_clock->GetEndHour()));
}

void CDlgEdit::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && IsToolOn(m_canvas->GetTool())) {
        OnTool(m_canvas->GetTool());
    } else {
        CSizeDlg::keyPressEvent(event);
    }
}

// With the focus on the picture what is typed is meant for the form, and nothing is stored by it.
bool CDlgEdit::TakePictureKey(const QKeyEvent& key) {
    if (m_canvas->Annotations().HasCapture() || IsToolOn(m_canvas->GetTool())) {
        return false;
    }
    const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    const bool typed = !key.text().isEmpty() && key.text().at(0).isPrint() &&
                       (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
    if (!enter && !typed) {
        return false;
    }
    m_names->setFocus();
    m_names->lineEdit()->selectAll();
    if (typed) {
        m_names->lineEdit()->insert(key.text());
    }
    return true;
}

bool CDlgEdit::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_canvas && event->type() == QEvent::KeyPress &&
        TakePictureKey(*static_cast<QKeyEvent*>(event))) {
        return true;
    }
    if (watched == m_grades && event->type() == QEvent::Wheel) {
        return true;  // turned over it by chance, the wheel would replace the comment
    }
    if (watched == m_grades->view() && event->type() == QEvent::Hide) {
        ShowLevelText(m_grades->currentIndex());
    }
    if (watched == m_comment && event->type() == QEvent::KeyPress) {
        // Enter stores from here as from everywhere else; Shift+Enter breaks the line.
        const auto* key = static_cast<QKeyEvent*>(event);
        if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) &&
            (key->modifiers() & Qt::ShiftModifier) == 0) {
            Item<QPushButton>(IdOk)->click();
            return true;
        }
    }
    return CSizeDlg::eventFilter(watched, event);
}
