#include "defects/dialogs/CMarkLayer.h"

#include <QPainter>
#include <algorithm>
#include <iterator>
#include <utility>

#include "defects/dialogs/paintmarks.h"

namespace {

constexpr std::size_t FewChanges = 16;

// Of an image with 32 bits a pixel, one rectangle after the other.
std::vector<QRgb> PixelsOf(const QImage& image, const std::vector<QRect>& area) {
    std::vector<QRgb> pixels;
    for (const QRect& rect : area) {
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            const QRgb* row = reinterpret_cast<const QRgb*>(image.constScanLine(y)) + rect.left();
            pixels.insert(pixels.end(), row, row + rect.width());
        }
    }
    return pixels;
}

void SetPixels(QImage& image, const std::vector<QRect>& area, const std::vector<QRgb>& pixels) {
    const QRgb* from = pixels.data();
    for (const QRect& rect : area) {
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            std::copy_n(from, rect.width(), reinterpret_cast<QRgb*>(image.scanLine(y)) + rect.left());
            from += rect.width();
        }
    }
}

QRegion AreaOfAll(const std::vector<CanvasMark>& marks, QSize canvas) {
    QRegion area;
    for (const CanvasMark& mark : marks) {
        area += AreaOf(mark, canvas);
    }
    return area;
}

}  // namespace

void CMarkLayer::Clear() {
    *this = {};
}

void CMarkLayer::Update(const QImage& ground, std::size_t inGround, std::vector<CanvasMark> marks,
                        QSize canvas) {
    std::span<const CanvasMark> over = std::span<const CanvasMark>(marks).subspan(inGround);
    std::vector<CanvasMark> changed = ChangedMarks(m_marks, marks);
    if (IsNull() || changed.size() > FewChanges) {
        PaintAll(ground, over, canvas);
    } else if (changed.empty()) {
        return;
    } else if (!m_steps.empty() && m_steps.back().Marks == marks) {
        TakeBack();
    } else {
        KeepStep(AreaOfAll(changed, canvas));
        // What has come on top of all others needs nothing but itself.
        std::span<const CanvasMark> onTop;
        if (!over.empty()) {
            std::vector<CanvasMark> others = ChangedMarks(m_marks, std::span(marks).first(marks.size() - 1));
            if (others.size() < changed.size()) {
                onTop = over.last(1);
                over = over.first(over.size() - 1);
                changed = std::move(others);
            }
        }
        PaintAnew(AreaOfAll(changed, canvas), ground, over, canvas);
        QPainter painter(&m_image);
        PaintMarks(painter, onTop, canvas);
    }
    m_marks = std::move(marks);
}

void CMarkLayer::PaintAll(const QImage& ground, std::span<const CanvasMark> marks, QSize canvas) {
    m_steps.clear();
    m_pixelsKept = 0;
    m_image = ground;
    if (!marks.empty()) {
        QPainter painter(&m_image);
        PaintMarks(painter, marks, canvas);
    }
}

void CMarkLayer::PaintAnew(const QRegion& area, const QImage& ground, std::span<const CanvasMark> marks,
                           QSize canvas) {
    const std::vector<QRect> rects = DeviceRects(area);
    if (rects.empty()) {
        return;
    }
    std::vector<CanvasMark> touching;
    std::ranges::copy_if(marks, std::back_inserter(touching), [&](const CanvasMark& mark) {
        return area.intersects(BoundsOf(mark, canvas)) && area.intersects(AreaOf(mark, canvas));
    });
    // Whole marks are painted; what they leave beside the area is of no use and isn't looked at.
    if (m_aside.isNull()) {
        m_aside = QImage(m_image.size(), m_image.format());
        m_aside.setDevicePixelRatio(m_image.devicePixelRatio());
    }
    SetPixels(m_aside, rects, PixelsOf(ground, rects));
    QPainter painter(&m_aside);
    PaintMarks(painter, touching, canvas);
    painter.end();
    SetPixels(m_image, rects, PixelsOf(m_aside, rects));
}

void CMarkLayer::TakeBack() {
    const Step& last = m_steps.back();
    SetPixels(m_image, last.Area, last.Pixels);
    m_pixelsKept -= last.Pixels.size();
    m_steps.pop_back();
}

void CMarkLayer::KeepStep(const QRegion& area) {
    std::vector<QRect> rects = DeviceRects(area);
    std::vector<QRgb> pixels = PixelsOf(m_image, rects);
    m_pixelsKept += pixels.size();
    m_steps.push_back({m_marks, std::move(rects), std::move(pixels)});
    while (m_steps.size() > MostStepsKept || m_pixelsKept > MostPixelsKept) {
        m_pixelsKept -= m_steps.front().Pixels.size();
        m_steps.pop_front();
    }
}

// They may overlap where a pixel of the device belongs to two.
std::vector<QRect> CMarkLayer::DeviceRects(const QRegion& area) const {
    const double ratio = m_image.devicePixelRatio();
    std::vector<QRect> rects;
    for (const QRect& rect : area) {
        const QRectF scaled(rect.x() * ratio, rect.y() * ratio, rect.width() * ratio, rect.height() * ratio);
        const QRect pixels = scaled.toAlignedRect().intersected(m_image.rect());
        if (!pixels.isEmpty()) {
            rects.push_back(pixels);
        }
    }
    return rects;
}
