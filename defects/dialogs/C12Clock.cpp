#include "defects/dialogs/C12Clock.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "defects/clockface.h"
#include "shell/CHostFiles.h"
#include "shell/dialogs/qttext.h"
#include "shell/seams.h"

namespace {

constexpr int DegreesPerHour = 30;

QPixmap LoadPixmap(std::string_view path) {
    // A file name lets the toolkit find the twin for fine screens.
    return QPixmap(ToQt(HostFiles().HostPath(path)));
}

// The hour that a key stands for; 0 if none.
int HourOfKey(int key) {
    if (key >= Qt::Key_1 && key <= Qt::Key_9) {
        return key - Qt::Key_0;
    }
    switch (key) {
        case Qt::Key_0:
            return 10;
        case Qt::Key_Minus:
            return 11;
        case Qt::Key_Equal:
            return 12;
        default:
            return 0;
    }
}

}  // namespace

C12Clock::C12Clock(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
}

bool C12Clock::SetImages(std::string_view dial, std::string_view sector) {
    m_dial = LoadPixmap(dial);
    m_sector = LoadPixmap(sector);
    if (!m_dial.isNull()) {
        setFixedSize(sizeHint());
    }
    update();
    return !m_dial.isNull() && !m_sector.isNull();
}

QSize C12Clock::sizeHint() const {
    return m_dial.isNull() ? QSize(160, 160) : m_dial.deviceIndependentSize().toSize();
}

void C12Clock::Set(int& hour, int value) {
    hour = ValidHour(value);
    update();
    setAccessibleDescription(QString::number(m_start) + " - " + QString::number(m_end));
    if (OnChanged) {
        OnChanged();
    }
}

void C12Clock::SetStartHour(int hour) {
    Set(m_start, hour);
}

void C12Clock::SetEndHour(int hour) {
    Set(m_end, hour);
}

void C12Clock::SetFrom(const QPoint& point, bool start) {
    if (m_dial.isNull()) {
        return;
    }
    const QSize size = sizeHint();
    if (const auto hour = HourOfPoint(point.x(), point.y(), size.width(), size.height())) {
        start ? SetStartHour(*hour) : SetEndHour(*hour);
    }
}

void C12Clock::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_leftDrag = true;
    } else if (event->button() == Qt::RightButton) {
        m_rightDrag = true;
    } else {
        return;
    }
    SetFrom(event->position().toPoint(), event->button() == Qt::LeftButton);
}

void C12Clock::mouseMoveEvent(QMouseEvent* event) {
    if (m_leftDrag || m_rightDrag) {
        SetFrom(event->position().toPoint(), m_leftDrag);
    }
}

void C12Clock::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_leftDrag = false;
    } else if (event->button() == Qt::RightButton) {
        m_rightDrag = false;
    }
}

void C12Clock::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();  // the right button sets the end
}

void C12Clock::keyPressEvent(QKeyEvent* event) {
    const bool end = (event->modifiers() & Qt::ShiftModifier) != 0;
    const int now = end ? m_end : m_start;
    int hour = HourOfKey(event->key());
    // With Shift the digit keys carry other characters; what the key is called doesn't help then.
    if (hour == 0 && end && event->nativeScanCode() >= 10 && event->nativeScanCode() <= 21) {
        hour = static_cast<int>(event->nativeScanCode()) - 9;
    }
    if (event->key() == Qt::Key_Right || event->key() == Qt::Key_Down) {
        hour = now % 12 + 1;
    } else if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Up) {
        hour = (now + 10) % 12 + 1;
    }
    if (hour == 0) {
        QWidget::keyPressEvent(event);
        return;
    }
    end ? SetEndHour(hour) : SetStartHour(hour);
}

void C12Clock::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    if (m_dial.isNull()) {
        return;
    }
    painter.drawPixmap(0, 0, m_dial);
    if (!isEnabled() || m_sector.isNull()) {
        return;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QSizeF size = m_sector.deviceIndependentSize();
    for (int i = 0; i < HoursInRange(m_start, m_end); ++i) {
        painter.save();
        painter.translate(size.width() / 2, size.height() / 2);
        painter.rotate((m_start + i) * DegreesPerHour);
        painter.translate(-size.width() / 2, -size.height() / 2);
        painter.drawPixmap(0, 0, m_sector);
        painter.restore();
    }
    if (hasFocus()) {
        painter.setPen(QPen(palette().highlight(), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}
