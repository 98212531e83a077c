// A drop list that is searched by typing any part of an entry. An entry is chosen with the list, the arrow
// keys, or Enter; what has been typed stays without effect until then. Leaving the control, too, chooses what
// fits best, or puts the former entry back if nothing does. Esc puts it back.
#pragma once

#include <QComboBox>
#include <functional>

class CSearchBox : public QComboBox {
public:
    explicit CSearchBox(QWidget* parent = nullptr);

    // The operator has chosen an entry.
    std::function<void()> OnChosen;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    bool IsTyped() const;  // something that isn't the chosen entry
    int BestMatch(const QString& typed) const;
    void PutBack();
    void Settle();
};
