// The base of all windows: controls by id, captions from the language table, timers by id, and edges that
// follow the window's size.
//
// A window is built in its constructor: controls, layouts, handlers. OnInitDialog runs once, right before
// the window is first shown, when its caller has set what it wants shown; if it calls EndDialog there, the
// window never comes up. The layouts give the first placement, so that every language and font fits; if the
// window has anchor rows, these rule from then on and the layouts rest. The window never gets smaller than it
// was when it opened.
#pragma once

#include <QDialog>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <utility>
#include <vector>

#include "shell/anchors.h"

class QBoxLayout;
class QTimer;

class CSizeDlg : public QDialog {
public:
    // Ids that mean the same in every window.
    static constexpr int IdOk = 1;
    static constexpr int IdCancel = 2;

    explicit CSizeDlg(QWidget* parent = nullptr);

    // Null if there is no such control. Its object name is its id.
    QWidget* GetDlgItem(int id) const;
    template <class Control>
    Control* Item(int id) const {
        return dynamic_cast<Control*>(GetDlgItem(id));
    }

    // The control that has the focus when the window comes up, with its text selected; 0: its first.
    int FirstFocus = 0;

    // Runs the window until it closes; the result is IdOk or IdCancel.
    int DoModal();

    // What a control tells its window: SendToDialog calls it. True if it was taken.
    virtual bool OnControlMessage(int message, std::intptr_t wParam, std::intptr_t lParam);

    void setVisible(bool visible) override;
    void accept() override { OnOK(); }
    void reject() override { OnCancel(); }  // the close box and Esc come here

protected:
    virtual void OnInitDialog() {}
    virtual void OnOK() { EndDialog(IdOk); }
    virtual void OnCancel() { EndDialog(IdCancel); }
    virtual void OnTimer(int /*id*/) {}
    void EndDialog(int result);

    // The window's layouts take the control over. Buttons 1 and 2 run OnOK and OnCancel.
    template <class Control>
    Control* AddControl(int id, Control* control) {
        Register(id, control);
        return control;
    }
    // `handler` runs when the button is pressed.
    void OnCommand(int id, std::function<void()> handler);
    void EnableControl(int id, bool enable);

    // Replaces texts of labels and buttons, and the title, once there is a language table: until then the
    // texts that the controls were made with stand.
    void SetCaptions(std::initializer_list<std::pair<int, int>> idsAndNumbers);
    void SetCaption(int number);
    void SetTip(int id, int number);

    // A row with the buttons OK and Cancel at its right end; OK is the default button.
    QBoxLayout* MakeOkCancelRow();

    // In the order in which they are to be moved.
    void AddAnchor(int id, bool left, bool top, bool right, bool bottom, bool repaint = false);

    // Repeats every `milliseconds` until KillTimer; setting a running timer starts it anew.
    void SetTimer(int id, int milliseconds);
    void KillTimer(int id);
    bool IsTimerRunning(int id) const;

    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void Initialize();
    void Register(int id, QWidget* control);
    void MoveAnchored(int dx, int dy);

    std::map<int, QWidget*> m_controls;
    std::map<int, QTimer*> m_timers;
    std::vector<FITSIZE> m_anchors;
    QSize m_clientSize;
    bool m_initialized = false;
    bool m_initializing = false;
    bool m_endedEarly = false;
    bool m_shown = false;
};

// Tells the window that holds the control. False if none takes it.
bool SendToDialog(const QWidget* control, int message, std::intptr_t wParam, std::intptr_t lParam);
