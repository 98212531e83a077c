#include "workbench/coding/dialogs/CCommentEdit.h"

#include <QInputMethodEvent>
#include <QTimer>

// Some input methods hand the key on after the word: the composition counts until what is queued behind its
// end has been handled.
void CCommentEdit::inputMethodEvent(QInputMethodEvent* event) {
    const bool composing = !event->preeditString().isEmpty();
    QLineEdit::inputMethodEvent(event);
    if (composing) {
        m_composing = true;
    } else if (m_composing) {
        QTimer::singleShot(0, this, [this] { m_composing = false; });
    }
}

void CCommentEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    m_composing = false;
}
