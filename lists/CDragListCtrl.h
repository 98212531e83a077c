// A list whose rows are dragged into another order: with the mouse, or with Alt and the arrow keys. The rows
// move and the array beside them doesn't; the window is told by WM_LIST_REORDERED, stores the new order and
// fills the list again.
//
// While a row is dragged a line shows where it would come. The drop row sticks to the last row that was
// under the mouse, so letting go outside the list drops there. Esc calls it off.
#pragma once

#include <QBasicTimer>
#include <QPoint>

#include "lists/CListCtrl.h"

class QLabel;

// To the window that holds the list; both parameters 0.
inline constexpr int WM_LIST_REORDERED = 0x8D2;

class CDragListCtrl : public CListCtrl {
public:
    explicit CDragListCtrl(QWidget* parent = nullptr);

    // Rows stay where they are: for windows that only choose among them. So they do while the list is
    // filtered or sorted by a heading; whoever tries is told why.
    void FixOrder() { m_fixed = true; }
    // Empty while the order can be changed.
    QString WhyHeld() const;
    // Afterwards the row stands at `to`, selected and visible, and the window has been told.
    void MoveRow(int from, int to);
    bool IsDragging() const { return m_dragging; }

protected:
    bool event(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    // Tells why, if the order is held only for now.
    bool IsHeld();
    void BeginDrag();
    void DragTo(const QPoint& at);
    void EndDrag();
    void ShowImage();
    int ScrollDirection() const;

    int m_dropRow = -1;
    int m_dragRow = -1;
    bool m_dragging = false;
    bool m_fixed = false;
    QPoint m_pressedAt;  // all points are in the viewport
    QPoint m_mouseAt;
    QPoint m_hotSpot;           // from the image's corner to the press
    QLabel* m_image = nullptr;  // owned by the viewport
    QBasicTimer m_scroll;
};
