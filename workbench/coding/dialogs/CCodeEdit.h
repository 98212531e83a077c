// A field that no input method reaches: letters arrive as they are typed.
#pragma once

#include <QLineEdit>

class CCodeEdit : public QLineEdit {
public:
    explicit CCodeEdit(QWidget* parent);

    // The attribute of the widget alone isn't enough: input methods ask this too.
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
};
