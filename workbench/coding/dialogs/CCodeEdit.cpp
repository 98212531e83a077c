#include "workbench/coding/dialogs/CCodeEdit.h"

CCodeEdit::CCodeEdit(QWidget* parent) : QLineEdit(parent) {
    setAttribute(Qt::WA_InputMethodEnabled, false);
    setInputMethodHints(Qt::ImhLatinOnly | Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
}

QVariant CCodeEdit::inputMethodQuery(Qt::InputMethodQuery query) const {
    return query == Qt::ImEnabled ? QVariant(false) : QLineEdit::inputMethodQuery(query);
}
