// The time ruler: marks the seconds of a video in which a defect lies. It tells its window of clicks and of
// the mouse over a mark (rulermessages.h).
#pragma once

#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <cstdint>
#include <vector>

#include "defects/timeruler.h"

class CPointView : public QWidget {
public:
    explicit CPointView(QWidget* parent = nullptr);

    // One entry a whole second, 1 where there is a mark.
    void UpdateMarkers(const std::vector<std::uint8_t>& flags);
    void ClearMarkers() { UpdateMarkers({}); }
    const std::vector<std::uint8_t>& Flags() const { return m_flags; }
    const std::vector<MarkRect>& Marks() const { return m_marks; }
    // Pixels left free at each end.
    void SetMargin(int margin);
    // What lies behind the ruler; none by default.
    void SetBackground(const QPixmap& background);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    void LayOut();
    void LeaveMarks();

    std::vector<std::uint8_t> m_flags;
    std::vector<MarkRect> m_marks;
    QPixmap m_background;
    QTimer m_leaveTimer;
    int m_margin = 0;
    int m_hovered = -1;
};
