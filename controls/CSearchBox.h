// A drop list that is searched by typing any part of an entry. An entry is chosen with the list, the arrow
// keys, or Enter; what has been typed stays without effect until then. Leaving the control, too, chooses what
// fits best, unless a slip may change nothing there: then the former entry comes back. What fits no entry
// stays, and is marked; Esc puts the former entry back.
#pragma once

#include <QComboBox>
#include <functional>

class CSearchBox : public QComboBox {
public:
    explicit CSearchBox(QWidget* parent = nullptr);

    // The operator has chosen an entry.
    std::function<void()> OnChosen;

    // By default leaving the control chooses.
    void SetChoosesOnLeaving(bool chooses) { m_choosesOnLeaving = chooses; }
    // What stands there fits no entry; the entry chosen before counts until something else is chosen.
    bool IsUnknown() const { return m_unknown; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    bool IsTyped() const;  // something that isn't the chosen entry
    int BestMatch(const QString& typed) const;
    void PutBack();
    void Settle(bool choose);
    void Mark(bool unknown);

    bool m_choosesOnLeaving = true;
    bool m_unknown = false;
};
