#include "bulk/dialogs/CFilterBar.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/textcodec.h"

namespace {

constexpr int MessageHint = 3927;
constexpr int MessageUnclear = 3940;
constexpr int MessageClose = 3943;
constexpr int MessageColumns = 3944;
constexpr int LeastLine = 180;  // pixels
constexpr int LeastCount = 150;

struct QuickTerm {
    const char* Term;
    int Text;
};
constexpr QuickTerm QuickTerms[] = {
    {"grade>=3", 3928}, {"no video", 3929}, {"no picture", 3930}, {"no records", 3931}, {"finding", 3932}};

QString ColumnsTip() {
    QString names;
    for (const QueryName& name : FieldNames()) {
        names += (names.isEmpty() ? "" : ", ") + QString(name.Name);
    }
    return Qt::convertFromPlainText(MessageText(MessageHint) + "\n\n" + MessageText(MessageColumns) + " " +
                                    names);
}

}  // namespace

CFilterBar::CFilterBar(QWidget* parent)
    : QWidget(parent), m_line(new QLineEdit(this)), m_count(new QLabel(this)) {
    m_line->setPlaceholderText(MessageText(MessageHint));
    m_line->setAccessibleName(MessageText(MessageHint));
    m_line->setToolTip(ColumnsTip());
    m_line->setClearButtonEnabled(true);
    m_line->setMinimumWidth(LeastLine);
    m_line->installEventFilter(this);
    m_count->setMinimumWidth(LeastCount);
    m_count->setTextFormat(Qt::PlainText);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    row->addWidget(m_line, 1);
    for (const QuickTerm& quick : QuickTerms) {
        auto* button = new QPushButton(MessageText(quick.Text), this);
        button->setCheckable(true);
        button->setAutoDefault(false);
        button->setToolTip(quick.Term);
        connect(button, &QPushButton::clicked, this, [this, term = std::string(quick.Term)] {
            Toggle(term);
            m_line->setFocus();
        });
        row->addWidget(button);
        m_buttons.push_back(button);
    }
    row->addSpacing(8);
    row->addWidget(m_count);
    auto* close = new QToolButton(this);
    close->setText("×");
    close->setAutoRaise(true);
    close->setToolTip(MessageText(MessageClose));
    close->setAccessibleName(MessageText(MessageClose));
    close->setFocusPolicy(Qt::TabFocus);
    connect(close, &QToolButton::clicked, this, [this] { OnClose(); });
    row->addWidget(close);
    connect(m_line, &QLineEdit::textChanged, this, [this] { Read(); });
}

void CFilterBar::Read() {
    m_query = ParseQuery(FromQt(m_line->text()));
    const std::string text = ' ' + LowerCase(FromQt(m_line->text())) + ' ';
    for (std::size_t i = 0; i < m_buttons.size(); ++i) {
        m_buttons[i]->setChecked(text.find(' ' + std::string(QuickTerms[i].Term) + ' ') != std::string::npos);
    }
    OnQuery();
}

void CFilterBar::Toggle(const std::string& term) {
    std::string text = ' ' + FromQt(m_line->text()) + ' ';
    if (const std::size_t at = LowerCase(text).find(' ' + term + ' '); at != std::string::npos) {
        text.erase(at, term.size() + 1);
    } else {
        text += term;
    }
    m_line->setText(ToQt(text).simplified());
}

void CFilterBar::ShowCount(const std::string& text) {
    const bool clear = m_query.Unclear.empty();
    m_count->setText(ToQt(clear ? text : FillText(LoadMessage(MessageUnclear), {m_query.Unclear.front()})));
}

bool CFilterBar::TakeKey(int key, Qt::KeyboardModifiers modifiers) {
    switch (key) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            OnNext((modifiers & Qt::ShiftModifier) != 0);
            return true;
        case Qt::Key_Escape:
            OnClose();
            return true;
        case Qt::Key_Down:
            OnDown();
            return true;
        default:
            return false;
    }
}

bool CFilterBar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto* key = dynamic_cast<QKeyEvent*>(event);
        if (TakeKey(key->key(), key->modifiers())) {
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
