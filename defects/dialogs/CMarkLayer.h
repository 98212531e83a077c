// A picture with marks painted over it, kept as an image from which each change takes only what it must: a
// mark that comes on top is painted over it; what has been taken back gets the pixels again that were there
// before; for any other change only the part of it that can look different is painted anew.
//
// The pixels are always exactly those that painting all marks over the picture would make. So marks are never
// painted into a smaller image or through a clip, which lines may be cut at: the ends of what is left then
// have other pixels.
#pragma once

#include <QImage>
#include <deque>
#include <span>
#include <vector>

#include "defects/canvasmarks.h"

class CMarkLayer {
public:
    // What is kept to take changes back, the latest ones first.
    static constexpr std::size_t MostStepsKept = 64;
    static constexpr std::size_t MostPixelsKept = 4 << 20;

    bool IsNull() const { return m_image.isNull(); }
    const QImage& Image() const { return m_image; }
    void Clear();

    // Makes it `marks` over `ground`, of which the first `inGround` are painted on the ground already. The
    // ground is opaque, its size and its other pixels are the same every time until Clear.
    void Update(const QImage& ground, std::size_t inGround, std::vector<CanvasMark> marks, QSize canvas);

private:
    // A state before a change, and the pixels that the change has covered.
    struct Step {
        std::vector<CanvasMark> Marks;
        std::vector<QRect> Area;  // in pixels of the device
        std::vector<QRgb> Pixels;
    };

    void PaintAll(const QImage& ground, std::span<const CanvasMark> marks, QSize canvas);
    void PaintAnew(const QRegion& area, const QImage& ground, std::span<const CanvasMark> marks,
                   QSize canvas);
    void TakeBack();
    void KeepStep(const QRegion& area);
    std::vector<QRect> DeviceRects(const QRegion& area) const;

    QImage m_image;
    QImage m_aside;  // where pixels of it are made anew
    std::vector<CanvasMark> m_marks;
    std::deque<Step> m_steps;
    std::size_t m_pixelsKept = 0;
};
