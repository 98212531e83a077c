// The line in which an operator types what he looks for, with buttons for what is asked for most. A button
// puts its condition into the line, so that what is typed and what is pressed are one.
#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "bulk/query.h"

class QLabel;
class QLineEdit;
class QPushButton;

class CFilterBar : public QWidget {
public:
    explicit CFilterBar(QWidget* parent = nullptr);

    QLineEdit& Line() { return *m_line; }
    const std::vector<QPushButton*>& Buttons() const { return m_buttons; }
    // What the line asks for.
    const Query& Asked() const { return m_query; }
    // Beside the line; what it can't understand stands before it.
    void ShowCount(const std::string& text);

    std::function<void()> OnQuery;  // it has changed
    std::function<void(bool back)> OnNext;
    std::function<void()> OnDown;  // into what is left over
    std::function<void()> OnClose;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Read();
    void Toggle(const std::string& term);
    bool TakeKey(int key, Qt::KeyboardModifiers modifiers);

    QLineEdit* m_line;
    QLabel* m_count;
    std::vector<QPushButton*> m_buttons;
    Query m_query;
};
