#include "controls/CSearchBox.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>

CSearchBox::CSearchBox(QWidget* parent) : QComboBox(parent) {
    setEditable(true);
    setInsertPolicy(NoInsert);
    setFocusPolicy(Qt::StrongFocus);
    completer()->setCompletionMode(QCompleter::PopupCompletion);
    completer()->setFilterMode(Qt::MatchContains);
    completer()->setCaseSensitivity(Qt::CaseInsensitive);
    completer()->setMaxVisibleItems(maxVisibleItems());
    lineEdit()->installEventFilter(this);
    connect(this, &QComboBox::activated, this, [this] {
        if (OnChosen) {
            OnChosen();
        }
    });
    connect(lineEdit(), &QLineEdit::editingFinished, this, [this] { Settle(m_choosesOnLeaving); });
    connect(lineEdit(), &QLineEdit::textChanged, this, [this] { Mark(false); });
}

bool CSearchBox::IsTyped() const {
    return lineEdit()->text() != itemText(currentIndex());
}

// A code is better than a word that happens to hold it: what stands between signs counts first.
int CSearchBox::BestMatch(const QString& typed) const {
    int inside = -1;
    int whole = -1;
    for (int i = 0; i < count() && !typed.isEmpty(); ++i) {
        const QString entry = itemText(i);
        const qsizetype at = entry.indexOf(typed, 0, Qt::CaseInsensitive);
        if (entry.size() == typed.size() && at == 0) {
            return i;
        }
        if (at < 0) {
            continue;
        }
        inside = inside < 0 ? i : inside;
        const qsizetype end = at + typed.size();
        const bool begins = at == 0 || !entry[at - 1].isLetterOrNumber();
        const bool ends = end == entry.size() || !entry[end].isLetterOrNumber();
        whole = whole < 0 && begins && ends ? i : whole;
    }
    return whole < 0 ? inside : whole;
}

void CSearchBox::PutBack() {
    setEditText(itemText(currentIndex()));
    lineEdit()->selectAll();
}

void CSearchBox::Mark(bool unknown) {
    if (m_unknown != unknown) {
        m_unknown = unknown;
        QPalette colours = palette();
        if (unknown) {
            colours.setColor(QPalette::Base, QColor(0xFF, 0xDD, 0xDD));
            colours.setColor(QPalette::Text, QColor(0xA0, 0x00, 0x00));
        }
        lineEdit()->setPalette(colours);
    }
}

void CSearchBox::Settle(bool choose) {
    const QAbstractItemView* popup = completer()->popup();
    if (!IsTyped() || (popup->isVisible() && popup->currentIndex().isValid())) {
        return;  // the list tells which entry in a moment
    }
    const QString typed = currentText().trimmed();
    const int match = BestMatch(typed);
    if (match < 0 && !typed.isEmpty()) {
        Mark(true);
        return;
    }
    if (match < 0 || match == currentIndex() || !choose) {
        PutBack();
        return;
    }
    setCurrentIndex(match);
    lineEdit()->selectAll();
    if (OnChosen) {
        OnChosen();
    }
}

bool CSearchBox::eventFilter(QObject* watched, QEvent* event) {
    if (watched == lineEdit() && event->type() == QEvent::KeyPress && IsTyped()) {
        // The window's default button and its Esc wait until this is settled.
        switch (static_cast<QKeyEvent*>(event)->key()) {
            case Qt::Key_Return:
            case Qt::Key_Enter:
                Settle(true);
                return true;
            case Qt::Key_Escape:
                PutBack();
                return true;
            default:
                break;
        }
    }
    return QComboBox::eventFilter(watched, event);
}

// Turned over it by chance, the wheel would choose something else.
void CSearchBox::wheelEvent(QWheelEvent* event) {
    event->ignore();
}
