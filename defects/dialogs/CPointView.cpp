#include "defects/dialogs/CPointView.h"

#include <QCursor>
#include <QMouseEvent>
#include <QPainter>

#include "defects/dialogs/rulermessages.h"
#include "shell/dialogs/CSizeDlg.h"

namespace {

const QColor MarkColour(0x4B, 0x68, 0xC1);
const QColor HoveredColour(0x55, 0x71, 0xCB);
const QColor EmptyColour(0x12, 0x12, 0x12);

constexpr int LeaveCheck = 500;  // milliseconds
constexpr int AboveMark = 5;     // pixels between a tip and the mark

std::intptr_t Packed(const QPoint& point) {
    return static_cast<std::intptr_t>((static_cast<std::uint32_t>(point.y()) << 16U) |
                                      (static_cast<std::uint32_t>(point.x()) & 0xFFFFU));
}

}  // namespace

CPointView::CPointView(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    connect(&m_leaveTimer, &QTimer::timeout, this, [this] { LeaveMarks(); });
}

QSize CPointView::sizeHint() const {
    return {400, 24};
}

void CPointView::UpdateMarkers(const std::vector<std::uint8_t>& flags) {
    m_flags = flags;
    m_hovered = -1;
    LayOut();
}

void CPointView::SetMargin(int margin) {
    m_margin = margin;
    LayOut();
}

void CPointView::SetBackground(const QPixmap& background) {
    m_background = background;
    update();
}

void CPointView::LayOut() {
    m_marks = LayOutMarks(m_flags, width(), height(), m_margin);
    update();
}

void CPointView::resizeEvent(QResizeEvent*) {
    LayOut();
}

void CPointView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const QPoint at = event->position().toPoint();
    if (const int second = MarkAt(m_marks, at.x(), at.y()); second >= 0) {
        (void)SendToDialog(this, WM_RULER_CLICK, second, 0);
    }
    (void)SendToDialog(this, WM_RULER_HOVER, -1, 0);
}

void CPointView::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    const int second = MarkAt(m_marks, at.x(), at.y());
    setCursor(second >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
    if (second < 0) {
        return;
    }
    m_hovered = second;
    update();
    const MarkRect& mark = m_marks[static_cast<std::size_t>(second)];
    const QPoint top = mapToGlobal(QPoint((mark.Left + mark.Right) / 2, mark.Top - AboveMark));
    (void)SendToDialog(this, WM_RULER_HOVER, Packed(top), second);
    m_leaveTimer.start(LeaveCheck);
}

void CPointView::LeaveMarks() {
    const QPoint at = mapFromGlobal(QCursor::pos());
    if (MarkAt(m_marks, at.x(), at.y()) >= 0) {
        return;
    }
    m_leaveTimer.stop();
    m_hovered = -1;
    (void)SendToDialog(this, WM_RULER_HOVER, -1, 0);
    update();
}

void CPointView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_background.isNull()) {
        painter.fillRect(rect(), EmptyColour);
    } else {
        painter.drawPixmap(0, 0, m_background);
    }
    const auto seconds = static_cast<int>(m_marks.size());
    for (int second = 0; second < seconds; ++second) {
        const MarkRect& mark = m_marks[static_cast<std::size_t>(second)];
        if (mark == MarkRect()) {
            continue;
        }
        const QColor& colour = second == m_hovered ? HoveredColour : MarkColour;
        const int x = TickOf(second, seconds, width(), m_margin);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(colour);
        painter.drawLine(x, 0, x, TickLength - 1);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawEllipse(QRect(mark.Left, mark.Top, mark.Right - mark.Left, mark.Bottom - mark.Top));
    }
}
