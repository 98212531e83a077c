// One line in which a defect is coded, below the picture: the line itself, in which input methods are off so
// that "PL3" reaches it, its comment, in which they are on, and what was understood so far. It stores nothing
// itself.
#pragma once

#include <QWidget>
#include <array>
#include <functional>
#include <span>
#include <string>

#include "workbench/coding/codingmeaning.h"
#include "workbench/coding/favourites.h"

class CCommentEdit;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

class CCodingLine : public QWidget {
public:
    explicit CCodingLine(QWidget* parent);

    // Comes up with `begin` typed.
    void Open(const std::string& begin);
    // Goes, and forgets what was typed.
    void Close();
    QLineEdit& Line() { return *m_line; }
    QLineEdit& Comment();

    // What stands in it, as it is to be understood now.
    CodingLine Typed() const;
    const CodingMeaning& Meaning() const { return m_meaning; }
    // Understands anew, as after the section has changed.
    void Refresh();
    // Why Enter doesn't store.
    void ShowProblem();

    struct Key {
        const char* Keys;               // portable key text
        int Text;                       // message that tells what it does
        void (*Do)(CCodingLine& line);  // null where the toolkit does it
    };
    static std::span<const Key> Keys();

    void ShowFavourites(const CFavourites& favourites);

    std::function<CodingMeaning(const CodingLine&)> Understand;
    std::function<void()> OnEnter;               // store, or open what the code needs
    std::function<void()> OnForm;                // Shift+Enter
    std::function<void()> OnLeave;               // Esc
    std::function<void()> OnGiveLength;          // the section has none
    std::function<void(int place)> OnFavourite;  // from 0
    std::function<void(int place)> OnFixFavourite;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool TakeKey(const QObject* watched, const QKeyEvent& event);
    void MakeFavourites(QLayout* row);
    QString MeaningText() const;

    QLineEdit* m_line;
    CCommentEdit* m_comment;
    QLabel* m_text;
    QPushButton* m_length;
    std::array<QToolButton*, CFavourites::Places> m_favourites{};
    CodingMeaning m_meaning;
};
