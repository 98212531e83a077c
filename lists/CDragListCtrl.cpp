#include "lists/CDragListCtrl.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include "lists/CListModel.h"
#include "shell/dialogs/CSizeDlg.h"
#include "shell/dialogs/qttext.h"
#include "shell/dialogs/theme.h"

namespace {

constexpr int ScrollZone = 10;   // pixels at the upper and lower edge in which a drag scrolls
constexpr int ScrollEvery = 60;  // milliseconds
constexpr double ImageOpacity = 0.7;
constexpr int MarkThickness = 3;

constexpr int MessageFiltered = 3925;
constexpr int MessageSorted = 3926;

}  // namespace

CDragListCtrl::CDragListCtrl(QWidget* parent) : CListCtrl(parent) {
    // A row that goes while it is dragged can't be dropped.
    connect(model(), &QAbstractItemModel::modelAboutToBeReset, this, [this] { EndDrag(); });
    connect(model(), &QAbstractItemModel::rowsAboutToBeRemoved, this, [this] { EndDrag(); });
}

void CDragListCtrl::MoveRow(int from, int to) {
    if (from == to || from < 0 || to < 0 || from >= RowCount() || to >= RowCount()) {
        return;
    }
    Model().Move(from, to);
    SelectRow(to);
    (void)SendToDialog(this, WM_LIST_REORDERED, 0, 0);
}

void CDragListCtrl::mousePressEvent(QMouseEvent* event) {
    if (m_dragging) {
        return;
    }
    CListCtrl::mousePressEvent(event);
    m_pressedAt = event->position().toPoint();
    const bool drag = event->button() == Qt::LeftButton && !m_fixed;
    m_dragRow = drag ? indexAt(m_pressedAt).row() : -1;
}

void CDragListCtrl::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    if ((event->buttons() & Qt::LeftButton) == 0 || m_fixed) {
        EndDrag();
        CListCtrl::mouseMoveEvent(event);
        return;
    }
    // The toolkit keeps the mouse for whom it was pressed on, also outside.
    const bool far = (at - m_pressedAt).manhattanLength() >= QApplication::startDragDistance();
    if (!m_dragging && m_dragRow >= 0 && far) {
        if (IsHeld()) {
            m_dragRow = -1;
        } else {
            BeginDrag();
        }
    }
    if (m_dragging) {
        DragTo(at);
    }
}

void CDragListCtrl::mouseReleaseEvent(QMouseEvent* event) {
    if (!m_dragging || event->button() != Qt::LeftButton) {
        CListCtrl::mouseReleaseEvent(event);
        return;
    }
    const int from = m_dragRow;
    const int to = m_dropRow;
    EndDrag();
    MoveRow(from, to);
}

QString CDragListCtrl::WhyHeld() const {
    return IsFiltered() ? MessageText(MessageFiltered) : IsSorted() ? MessageText(MessageSorted) : QString();
}

bool CDragListCtrl::IsHeld() {
    const QString why = WhyHeld();
    if (why.isEmpty()) {
        return false;
    }
    const QRect row = visualRect(model()->index(SelectedRow(), 0));
    QToolTip::showText(viewport()->mapToGlobal(row.bottomLeft()), why, viewport());
    return true;
}

void CDragListCtrl::BeginDrag() {
    m_dragging = true;
    m_dropRow = -1;
    const QRect row = visualRect(model()->index(m_dragRow, 0));
    const QRect whole(0, row.top(), viewport()->width(), row.height());
    m_hotSpot = m_pressedAt - whole.topLeft();
    ShowImage();
    viewport()->setCursor(Qt::ClosedHandCursor);
    m_scroll.start(ScrollEvery, this);
}

// Of the row, as it looks.
void CDragListCtrl::ShowImage() {
    const QRect row(QPoint(0, m_pressedAt.y() - m_hotSpot.y()),
                    QSize(viewport()->width(), visualRect(model()->index(m_dragRow, 0)).height()));
    const QPixmap solid = viewport()->grab(row);
    QPixmap image(solid.size());
    image.setDevicePixelRatio(solid.devicePixelRatio());
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setOpacity(ImageOpacity);
        painter.drawPixmap(0, 0, solid);
    }
    m_image = new QLabel(viewport());
    m_image->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_image->setPixmap(image);
    m_image->resize(row.size());
    m_image->show();
}

void CDragListCtrl::DragTo(const QPoint& at) {
    m_mouseAt = at;
    m_image->move(at - m_hotSpot);
    if (const QModelIndex index = indexAt(at); index.isValid() && viewport()->rect().contains(at)) {
        m_dropRow = index.row();
    }
    viewport()->update();
}

// The end of every drag, whether something was dropped or not.
void CDragListCtrl::EndDrag() {
    m_dragRow = -1;
    m_dropRow = -1;
    if (!m_dragging) {
        return;
    }
    m_dragging = false;
    m_scroll.stop();
    delete m_image;
    m_image = nullptr;
    viewport()->unsetCursor();
    viewport()->update();
}

int CDragListCtrl::ScrollDirection() const {
    if (!viewport()->rect().contains(m_mouseAt)) {
        return 0;
    }
    if (m_mouseAt.y() < ScrollZone) {
        return -1;
    }
    return m_mouseAt.y() >= viewport()->height() - ScrollZone ? 1 : 0;
}

void CDragListCtrl::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_scroll.timerId()) {
        CListCtrl::timerEvent(event);
        return;
    }
    if (const int direction = ScrollDirection(); m_dragging && direction != 0) {
        verticalScrollBar()->setValue(verticalScrollBar()->value() + direction);
        DragTo(m_mouseAt);
    }
}

void CDragListCtrl::paintEvent(QPaintEvent* event) {
    CListCtrl::paintEvent(event);
    if (!m_dragging || m_dropRow < 0 || m_dropRow == m_dragRow) {
        return;
    }
    const QRect row = visualRect(model()->index(m_dropRow, 0));
    const int y = m_dropRow > m_dragRow ? row.bottom() + 1 : row.top();
    QPainter(viewport())
        .fillRect(0, y - MarkThickness / 2, viewport()->width(), MarkThickness, QColor(AccentColour));
}

void CDragListCtrl::keyPressEvent(QKeyEvent* event) {
    if (m_dragging) {
        if (event->key() == Qt::Key_Escape) {
            EndDrag();
        }
        return;
    }
    const bool up = event->key() == Qt::Key_Up;
    if (!m_fixed && (event->modifiers() & Qt::AltModifier) != 0 && (up || event->key() == Qt::Key_Down)) {
        if (const int row = SelectedRow(); row >= 0 && !IsHeld()) {
            MoveRow(row, up ? row - 1 : row + 1);
        }
        return;
    }
    CListCtrl::keyPressEvent(event);
}

bool CDragListCtrl::event(QEvent* event) {
    // Esc is the drag's before it is the window's.
    if (m_dragging && event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    return CListCtrl::event(event);
}

void CDragListCtrl::focusOutEvent(QFocusEvent* event) {
    EndDrag();
    CListCtrl::focusOutEvent(event);
}

void CDragListCtrl::hideEvent(QHideEvent* event) {
    EndDrag();
    CListCtrl::hideEvent(event);
}
