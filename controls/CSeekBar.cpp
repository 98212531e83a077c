#include "controls/CSeekBar.h"

#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>

namespace {

constexpr int Inset = 8;  // the knob's radius and its outline
constexpr double Radius = 6.0;
constexpr double GrooveHeight = 4.0;
constexpr QColor Groove(0xD3, 0xD9, 0xDF);
constexpr QColor Disabled(0xB4, 0xBC, 0xC4);

}  // namespace

CSeekBar::CSeekBar(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setFixedHeight(2 * Inset + 4);
    setMinimumWidth(80);
    setEnabled(false);
    // What assistive programs set.
    connect(this, &QSlider::actionTriggered, this, [this] {
        if (OnSeek) {
            OnSeek(sliderPosition());
        }
    });
}

void CSeekBar::SetLength(int length) {
    if (maximum() != length || isEnabled() != (length > 0)) {
        m_drags = m_drags && length > 0;
        setRange(0, std::max(length, 0));
        setEnabled(length > 0);
    }
}

void CSeekBar::SetPosition(int position) {
    if (!m_drags) {
        setValue(position);
    }
}

int CSeekBar::PositionAt(double x) const {
    const double share = (x - Inset) / std::max(width() - 2 * Inset, 1);
    return static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * maximum()));
}

void CSeekBar::Seek(double x) {
    const int position = PositionAt(x);
    if (position != value() || !m_drags) {
        setValue(position);
        if (OnSeek) {
            OnSeek(position);
        }
    }
}

void CSeekBar::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        Seek(event->position().x());
        m_drags = true;
    }
}

void CSeekBar::mouseMoveEvent(QMouseEvent* event) {
    if (m_drags) {
        Seek(event->position().x());
    }
    if (OnTip && isEnabled()) {
        QToolTip::showText(event->globalPosition().toPoint(), OnTip(PositionAt(event->position().x())), this);
    }
}

void CSeekBar::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_drags = false;
    }
}

// A list that is scrolled past the player must not move the video.
void CSeekBar::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

void CSeekBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double length = std::max(width() - 2 * Inset, 1);
    const double middle = height() / 2.0;
    const double x = Inset + (maximum() > 0 ? length * value() / maximum() : 0.0);
    const QRectF groove(Inset, middle - GrooveHeight / 2, length, GrooveHeight);
    painter.setBrush(Groove);
    painter.drawRoundedRect(groove, GrooveHeight / 2, GrooveHeight / 2);
    if (!isEnabled()) {
        painter.setBrush(Disabled);
        painter.drawEllipse(QPointF(x, middle), Radius - 2, Radius - 2);
        return;
    }
    const QColor accent = palette().color(QPalette::Highlight);
    painter.setBrush(accent);
    painter.drawRoundedRect(QRectF(groove.topLeft(), QSizeF(x - Inset, GrooveHeight)), GrooveHeight / 2,
                            GrooveHeight / 2);
    if (hasFocus()) {
        painter.setBrush(QColor(accent.red(), accent.green(), accent.blue(), 70));
        painter.drawEllipse(QPointF(x, middle), Radius + 2.5, Radius + 2.5);
    }
    painter.setBrush(Qt::white);
    painter.setPen(QPen(accent, 2.0));
    painter.drawEllipse(QPointF(x, middle), Radius - 1, Radius - 1);
}
