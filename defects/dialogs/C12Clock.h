// The clock face on which an operator sets where a defect lies on the pipe's circumference: the left button
// sets where it starts, the right button where it ends, clockwise. By key: digits and arrows set the start,
// with Shift the end; 0 stands for 10, "-" for 11, "=" for 12.
#pragma once

#include <QPixmap>
#include <QWidget>
#include <functional>
#include <string_view>

class C12Clock : public QWidget {
public:
    explicit C12Clock(QWidget* parent = nullptr);

    // Path texts of the dial and of one sector drawn at 12 o'clock, of equal size; twins for fine screens are
    // used where there are any. False if one can't be read: the control is black then and takes no clicks.
    bool SetImages(std::string_view dial, std::string_view sector);

    // Hours 1 to 12; anything else is 12.
    void SetStartHour(int hour);
    void SetEndHour(int hour);
    int GetStartHour() const { return m_start; }
    int GetEndHour() const { return m_end; }

    std::function<void()> OnChanged;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void SetFrom(const QPoint& point, bool start);
    void Set(int& hour, int value);

    QPixmap m_dial;
    QPixmap m_sector;
    int m_start = 12;
    int m_end = 12;
    bool m_leftDrag = false;
    bool m_rightDrag = false;
};
