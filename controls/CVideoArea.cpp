#include "controls/CVideoArea.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace {

constexpr double Middle = 127.5;  // of the levels of a channel
constexpr double Steepest = 4.0;  // slope of the levels at full contrast

constexpr QColor MessageColour(0xC8, 0xD0, 0xD8);
constexpr int FocusFrame = 2;
constexpr QSize Smallest(16, 16);
constexpr std::size_t RowAlignment = 64;

}  // namespace

CVideoArea::CVideoArea(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::ClickFocus);
    setMouseTracking(true);
}

void CVideoArea::Canvas::Resize(QSize size) {
    if (Image.size() == size) {
        return;
    }
    const std::size_t width = static_cast<std::size_t>(size.width());
    const std::size_t stride = (4 * width + RowAlignment - 1) / RowAlignment * RowAlignment;
    Bytes = std::make_unique<unsigned char[]>(stride * static_cast<std::size_t>(size.height()) +
                                              2 * RowAlignment);
    const std::size_t past = reinterpret_cast<std::uintptr_t>(Bytes.get()) % RowAlignment;
    Image = QImage(Bytes.get() + (RowAlignment - past), size.width(), size.height(),
                   static_cast<qsizetype>(stride), QImage::Format_RGB32);
}

void CVideoArea::Draw() {
    // Also while nothing of it can be seen: the library waits until somebody has taken its picture.
    const qreal ratio = devicePixelRatioF();
    m_drawn.Resize((QSizeF(size()) * ratio).toSize().expandedTo(Smallest));
    m_isNew = OnDraw && OnDraw(m_drawn.Image);
    if (!m_hold) {
        Present();
    }
}

void CVideoArea::Present() {
    if (m_isNew) {
        m_isNew = false;
        std::swap(m_drawn, m_shown);
        m_toned = {};
        update();
    }
}

void CVideoArea::SetTone(int brightness, int contrast) {
    m_hasTone = brightness != 0 || contrast != 0;
    m_toned = {};
    const double slope = std::pow(Steepest, contrast / 100.0);
    for (std::size_t i = 0; i < m_tone.size(); ++i) {
        const double level = (static_cast<double>(i) - Middle) * slope + Middle + brightness / 100.0 * Middle;
        m_tone[i] = static_cast<unsigned char>(std::clamp(level, 0.0, 255.0));
    }
    update();
}

const QImage& CVideoArea::Toned() {
    if (m_toned.isNull()) {
        m_toned = m_shown.Image.copy();
        for (int y = 0; y < m_toned.height(); ++y) {
            auto* pixels = reinterpret_cast<QRgb*>(m_toned.scanLine(y));
            for (int x = 0; x < m_toned.width(); ++x) {
                const QRgb pixel = pixels[x];
                pixels[x] = qRgb(m_tone[static_cast<std::size_t>(qRed(pixel))],
                                 m_tone[static_cast<std::size_t>(qGreen(pixel))],
                                 m_tone[static_cast<std::size_t>(qBlue(pixel))]);
            }
        }
    }
    return m_toned;
}

void CVideoArea::SetMessage(const QString& text) {
    if (m_message != text) {
        m_message = text;
        setAccessibleDescription(text);
        update();
    }
}

void CVideoArea::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    if (m_message.isEmpty()) {
        if (!m_shown.Image.isNull()) {
            // Of another size only until the next is drawn.
            painter.drawImage(rect(), m_hasTone ? Toned() : m_shown.Image);
        }
    } else {
        PaintMessage(painter);
    }
    // In full screen there is nothing else that the keyboard could be in.
    if (hasFocus() && !window()->isFullScreen()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), FocusFrame));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

void CVideoArea::PaintMessage(QPainter& painter) const {
    const int margin = std::min(24, width() / 12);
    painter.setPen(MessageColour);
    painter.drawText(rect().adjusted(margin, 4, -margin, -4), Qt::AlignCenter | Qt::TextWrapAnywhere,
                     m_message);
}

void CVideoArea::resizeEvent(QResizeEvent*) {
    Draw();
}

void CVideoArea::mousePressEvent(QMouseEvent*) {
    setFocus(Qt::MouseFocusReason);
}

void CVideoArea::mouseMoveEvent(QMouseEvent*) {
    if (OnMouseMove) {
        OnMouseMove();
    }
}

void CVideoArea::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && OnDoubleClick) {
        OnDoubleClick();
    }
}
