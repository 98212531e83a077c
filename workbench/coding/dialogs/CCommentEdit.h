// The field of a coding line's comment. The Enter that ends a word of an input method ends nothing else.
#pragma once

#include <QLineEdit>

class CCommentEdit : public QLineEdit {
public:
    using QLineEdit::QLineEdit;

    bool IsComposing() const { return m_composing; }

protected:
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool m_composing = false;
};
