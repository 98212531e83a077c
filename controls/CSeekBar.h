// The bar under a video: shows where it is, and a press or a drag goes there. Positions are milliseconds.
#pragma once

#include <QSlider>
#include <functional>

class CSeekBar : public QSlider {
public:
    explicit CSeekBar(QWidget* parent);

    std::function<void(int position)> OnSeek;
    std::function<QString(int position)> OnTip;  // text for the position under the pointer

    // Without a length nothing can be chosen.
    void SetLength(int length);
    void SetPosition(int position);  // doesn't tell OnSeek; the pointer goes before while it drags

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    int PositionAt(double x) const;
    void Seek(double x);

    bool m_drags = false;
};
