// The black area that shows the frames of a video, or a line that says why there is none.
#pragma once

#include <QImage>
#include <QString>
#include <QWidget>
#include <array>
#include <functional>
#include <memory>

class QPainter;

class CVideoArea : public QWidget {
public:
    explicit CVideoArea(QWidget* parent);

    // Draws the picture into an image of the area's size in pixels; false if there is none.
    std::function<bool(QImage& image)> OnDraw;
    std::function<void()> OnDoubleClick;
    std::function<void()> OnMouseMove;

    // While pictures on the way to a position come, the former one stays.
    void Hold(bool hold) { m_hold = hold; }
    void Draw();     // to be called for each picture that comes; doesn't show it if held
    void Present();  // what was drawn last
    // For the eye only, both from -100 to 100; 0 is as filmed. What is drawn and grabbed stays as it is.
    void SetTone(int brightness, int contrast);
    void SetMessage(const QString& text);
    const QString& Message() const { return m_message; }
    const QImage& Picture() const { return m_shown.Image; }

    QSize sizeHint() const override { return {480, 320}; }
    QSize minimumSizeHint() const override { return {160, 90}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void PaintMessage(QPainter& painter) const;
    const QImage& Toned();

    // Rows begin at multiples of 64 bytes and are followed by as many, which the drawing may write over.
    struct Canvas {
        std::unique_ptr<unsigned char[]> Bytes;
        QImage Image;

        void Resize(QSize size);
    };

    QString m_message;
    Canvas m_drawn;
    Canvas m_shown;
    std::array<unsigned char, 256> m_tone{};  // of each channel
    bool m_hasTone = false;
    QImage m_toned;        // what is shown, in that tone; null if it isn't made yet
    bool m_isNew = false;  // what was drawn isn't shown yet
    bool m_hold = false;
};
