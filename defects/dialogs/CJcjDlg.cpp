#include "defects/dialogs/CJcjDlg.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>

#include "controls/CButtonST.h"
#include "defects/dialogs/CCtrlPic.h"
#include "defects/dialogs/draftpictures.h"
#include "defects/manhole.h"
#include "defects/picturesteps.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/seams.h"
#include "store/CDbRec.h"
#include "store/stepnames.h"

namespace {

constexpr int IdName = 1000;
constexpr int IdGrade = 1002;
constexpr int IdComment = 1005;
constexpr int IdPictures = 1008;
constexpr int IdCanvas = 1011;
constexpr int IdNumberLabel = 1018;
constexpr int IdAddPicture = 1033;
constexpr int IdDeletePicture = 1036;
constexpr int MostPictures = 2;
constexpr int NoNumber = 0;  // of texts that are the same in every language

}  // namespace

CJcjDlg::CJcjDlg(CDbRec& database, std::int32_t id, std::string folder, bool add, QWidget* parent)
    : CSizeDlg(parent),
      m_canvas(AddControl(IdCanvas, new CCtrlPic(this))),
      m_add(add),
      m_database(database),
      m_id(id),
      m_folder(std::move(folder)) {
    setWindowTitle("添加检查井缺陷");
    const QSize available = screen()->availableSize() - QSize(440, 160);
    m_canvas->setMinimumSize(QSize(560, 420).boundedTo(available).expandedTo(QSize(320, 240)));
    m_canvas->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    auto* form = new QVBoxLayout;
    form->addLayout(MakeForm());
    form->addStretch();
    form->addLayout(MakeOkCancelRow());
    auto* picture = new QVBoxLayout;
    picture->addLayout(MakePictureBar());
    picture->addWidget(m_canvas, 1);
    auto* window = new QHBoxLayout(this);
    window->addLayout(picture, 1);
    window->addSpacing(6);
    window->addLayout(form);
    ApplyCaptions();
}

QComboBox* CJcjDlg::AddBox(int id) {
    auto* box = AddControl(id, new QComboBox(this));
    box->setMaxVisibleItems(12);
    box->setFocusPolicy(Qt::StrongFocus);
    box->installEventFilter(this);
    return box;
}

QLayout* CJcjDlg::MakeForm() {
    m_names = AddBox(IdName);
    for (const ManholeCode& code : ManholeCodes()) {
        m_names->addItem(QString::fromUtf8(code.Label));
    }
    connect(m_names, &QComboBox::activated, this, [this] { OnNameChange(); });
    m_grades = AddBox(IdGrade);
    for (int grade = 1; grade <= ManholeGrades; ++grade) {
        m_grades->addItem("Level " + QString::number(grade));
    }

    auto* form = new QFormLayout;
    const auto addRow = [&](int label, const char* caption, QWidget* control) {
        form->addRow(AddControl(label, new QLabel(caption, this)), control);
    };
    addRow(1003, "缺陷名称:", m_names);
    addRow(1006, "缺陷等级:", m_grades);
    m_comment = AddControl(IdComment, new QPlainTextEdit(this));
    m_comment->setTabChangesFocus(true);
    m_comment->setFixedHeight(m_comment->fontMetrics().lineSpacing() * 4 + 14);
    m_comment->installEventFilter(this);
    addRow(1010, "备注:", m_comment);
    addRow(IdNumberLabel, "井号:", AddControl(ManholeControl::Number, new QLineEdit(this)));
    for (const ManholeList& list : ManholeLists()) {
        QComboBox* box = AddBox(list.Control);
        for (const char* text : list.Rows) {
            box->addItem(QString::fromUtf8(text));
        }
        addRow(list.LabelId, "", box);
    }
    return form;
}

QLayout* CJcjDlg::MakePictureBar() {
    m_pictures = AddBox(IdPictures);
    m_pictures->setMinimumContentsLength(3);
    connect(m_pictures, &QComboBox::activated, this, [this](int index) { ShowPicture(index); });
    auto* bar = new QHBoxLayout;
    auto* label = new QLabel(MessageText(3152), this);
    label->setBuddy(m_pictures);
    bar->addWidget(label);
    bar->addWidget(m_pictures);
    const auto addButton = [&](int id, const char* caption, const char* keys) {
        auto* button = AddControl(id, new CButtonST(CButtonST::Layout::PictureBesideText, this));
        button->setText(caption);
        button->SetShortcut(QKeySequence(keys));
        bar->addWidget(button);
        return button;
    };
    addButton(IdAddPicture, "添加", "Ctrl+O")->SetTip(MessageText(3172));
    addButton(IdDeletePicture, "删除", "Ctrl+D")->SetTip(MessageText(3180));
    bar->addStretch();
    OnCommand(IdAddPicture, [this] { OnAddPicture(); });
    OnCommand(IdDeletePicture, [this] { OnDeletePicture(); });
    return bar;
}

void CJcjDlg::ApplyCaptions() {
    SetCaption(m_add ? 3193 : 3194);
    SetCaptions({{IdOk, 50},
                 {IdCancel, 51},
                 {1003, 202},
                 {1006, 204},
                 {1010, 207},
                 {IdNumberLabel, 3195},
                 {IdAddPicture, 3172},
                 {IdDeletePicture, 251}});
    for (const ManholeList& list : ManholeLists()) {
        SetCaptions({{list.LabelId, list.Caption}});
    }
    m_pictures->setAccessibleName(MessageText(3152));
}

void CJcjDlg::OnInitDialog() {
    const int code = FindManholeCode(Record.DefectCode);
    m_names->setCurrentIndex(code < 0 ? 0 : code);
    for (const ManholeList& list : ManholeLists()) {
        auto* box = Item<QComboBox>(list.Control);
        const int row = Record.*list.Member;
        box->setCurrentIndex(row < box->count() ? row : -1);
    }
    const int grade = Record.DefectLevel - 1;
    m_grades->setCurrentIndex(grade < 0 || grade >= m_grades->count() ? 0 : grade);
    if (m_add) {
        OnNameChange();
    } else {
        SetComment(Record.Comment);
    }
    FillPictures();
    ShowPicture(0);
    Item<QLineEdit>(ManholeControl::Number)->setText(ToQt(Record.JcjNo));
    BeginDraft();
    m_names->setFocus();
}

void CJcjDlg::BeginDraft() {
    if (Draft.Kind.empty()) {
        return;
    }
    m_draft = std::make_unique<CFormDraft>(*this, std::move(Draft));
    for (const int id : {IdName, IdGrade, IdComment, ManholeControl::Number}) {
        m_draft->KeepControl(id);
    }
    for (const ManholeList& list : ManholeLists()) {
        m_draft->KeepControl(list.Control);
    }
    KeepPictures(*m_draft, Record, Pictures);
    m_draft->Begin();
}

void CJcjDlg::OnNameChange() {
    const int index = m_names->currentIndex();
    if (index >= 0) {
        SetComment(ManholeCodes()[static_cast<std::size_t>(index)].Comment);
    }
}

// Until the operator changes it, the record's text is the one to store: the edit's lacks what it can't hold.
void CJcjDlg::SetComment(const std::string& comment) {
    Record.Comment = comment;
    m_comment->setPlainText(ToQt(Record.Comment));
}

void CJcjDlg::FillPictures() {
    m_pictures->clear();
    const int count = Record.Pictures.GetSize();
    for (int i = 1; i <= count; ++i) {
        m_pictures->addItem(QString::number(i));
    }
    EnableControl(IdDeletePicture, count > 0);
    EnableControl(IdAddPicture, count < MostPictures);
}

void CJcjDlg::ShowPicture(int index) {
    if (index >= 0 && index < Record.Pictures.GetSize()) {
        m_pictures->setCurrentIndex(index);
        (void)m_canvas->ShowPicture(Record.Pictures[index].Picture);
    } else {
        m_canvas->ClearPicture();
    }
}

void CJcjDlg::OnAddPicture() {
    if (Pictures.AddManholeFile(m_folder)) {
        FillPictures();
        ShowPicture(Record.Pictures.GetUpperBound());
    }
}

void CJcjDlg::OnDeletePicture() {
    const int index = m_pictures->currentIndex();
    if (index < 0 || index >= Record.Pictures.GetSize()) {
        return;
    }
    if (!m_add && !KeepAsStep(m_database, StepDeletePicture, PictureFate::Deleted,
                              Record.Pictures[index].Picture, Record.TestingID, Record.ID)) {
        return;
    }
    Pictures.RemoveManholeFile(index);
    FillPictures();
    ShowPicture(0);
}

void CJcjDlg::BuildRecord() {
    Record.ID = m_id;
    Record.TestingID = m_id;
    if (const int index = m_names->currentIndex(); index >= 0) {
        Record.DefectCode = ManholeCodes()[static_cast<std::size_t>(index)].Code;
    }
    Record.JcjNo = FromQt(Item<QLineEdit>(ManholeControl::Number)->text());
    for (const ManholeList& list : ManholeLists()) {
        Record.*list.Member = Item<QComboBox>(list.Control)->currentIndex();
    }
    Record.DefectType = m_database.GetDefectType(Record.DefectCode);
    Record.DefectLevel = static_cast<std::uint8_t>(m_grades->currentIndex() + 1);
    ReadEdited(*m_comment, Record.Comment);
}

void CJcjDlg::OnOK() {
    BuildRecord();
    NoteMadeForUndo(m_database, Pictures.Made());
    if (!(m_add ? m_database.AddRecord(Record) : m_database.UpdateRecord(Record))) {
        DropKept(m_database);
        Prompts().ShowMessage(NoNumber, m_add ? "添加记录失败！" : "修改记录失败！");
        return;
    }
    EndDialog(IdOk);
}

bool CJcjDlg::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Wheel && dynamic_cast<QComboBox*>(watched) != nullptr) {
        return true;  // turned over a list by chance
    }
    if (watched == m_comment && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) &&
            (key->modifiers() & Qt::ShiftModifier) == 0) {
            Item<QPushButton>(IdOk)->click();
            return true;
        }
    }
    return CSizeDlg::eventFilter(watched, event);
}
