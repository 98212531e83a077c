#include "controls/CButtonST.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>
#include <QShortcut>
#include <QStyle>
#include <QStyleOption>

#include "controls/icons.h"

namespace {

// Of buttons with the picture above the text, so that those of a toolbar have one width while their texts
// are short.
constexpr int LeastWidthInLines = 4;
constexpr int Margin = 6;
constexpr qreal Radius = 4;

QColor Tint(QColor colour, qreal opacity) {
    colour.setAlphaF(static_cast<float>(opacity));
    return colour;
}

}  // namespace

CButtonST::CButtonST(Layout layout, QWidget* parent) : QPushButton(parent), m_layout(layout) {
    setFocusPolicy(Qt::TabFocus);
    setAutoDefault(false);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

void CButtonST::SetBitmap(std::string_view pathText, int size) {
    m_picture = LoadIcon(pathText);
    m_pictureSize = HasPicture() ? size : 0;
    updateGeometry();
    update();
}

void CButtonST::SetTip(const QString& tip) {
    m_tip = tip;
    UpdateTip();
}

void CButtonST::SetShortcut(const QKeySequence& keys) {
    if (m_shortcut == nullptr) {
        m_shortcut = new QShortcut(this);
        m_shortcut->setAutoRepeat(false);
        connect(m_shortcut, &QShortcut::activated, this, [this] { click(); });
    }
    m_shortcut->setKey(keys);
    UpdateTip();
}

void CButtonST::UpdateTip() {
    if (m_shortcut == nullptr || m_shortcut->key().isEmpty()) {
        setToolTip(m_tip);
        return;
    }
    const QString keys = '(' + m_shortcut->key().toString(QKeySequence::NativeText) + ')';
    setToolTip(m_tip.isEmpty() ? keys : m_tip + ' ' + keys);
}

QSize CButtonST::TextSize() const {
    return text().isEmpty() ? QSize(0, 0) : fontMetrics().size(Qt::TextShowMnemonic, text());
}

int CButtonST::Gap() const {
    if (!HasPicture() || text().isEmpty()) {
        return 0;
    }
    return m_layout == Layout::PictureOverText ? 3 : 6;
}

QSize CButtonST::ContentSize() const {
    const QSize words = TextSize();
    if (m_layout == Layout::PictureOverText) {
        return {std::max(m_pictureSize, words.width()), m_pictureSize + Gap() + words.height()};
    }
    return {m_pictureSize + Gap() + words.width(), std::max(m_pictureSize, words.height())};
}

QSize CButtonST::sizeHint() const {
    const QSize content = ContentSize();
    const int least = m_layout == Layout::PictureOverText ? LeastWidthInLines * fontMetrics().height() : 0;
    return {std::max(content.width() + 2 * Margin, least), content.height() + 2 * Margin};
}

void CButtonST::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter) {
        QPushButton::keyPressEvent(event);
    } else if (!event->isAutoRepeat()) {
        click();
    }
}

void CButtonST::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    PaintGround(painter);
    PaintContent(painter);
}

void CButtonST::PaintGround(QPainter& painter) const {
    const QColor accent = palette().color(QPalette::Highlight);
    qreal opacity = 0;
    if (isEnabled() && isDown()) {
        opacity = 0.32;
    } else if (isChecked()) {
        opacity = isEnabled() && underMouse() ? 0.28 : 0.20;
    } else if (isEnabled() && underMouse()) {
        opacity = 0.12;
    }
    // On the centres of pixels, so that lines of one pixel are sharp.
    const QRectF ground = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    if (opacity > 0) {
        painter.setPen(Tint(accent, isChecked() || isDown() ? 0.7 : 0.3));
        painter.setBrush(Tint(accent, opacity));
        painter.drawRoundedRect(ground, Radius, Radius);
    }
    if (hasFocus()) {
        painter.setPen(QPen(accent, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Radius, Radius);
    }
}

void CButtonST::PaintContent(QPainter& painter) const {
    const bool over = m_layout == Layout::PictureOverText;
    // Over or beside, what is too long is cut at its end and never runs over the edge.
    const QRect inside = rect().adjusted(Margin, Margin, -Margin, -Margin);
    const QSize content = ContentSize().boundedTo(inside.size());
    const QRect box = QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, content, inside);
    QRect words = box;
    if (HasPicture()) {
        QRect picture(box.topLeft(), QSize(over ? box.width() : m_pictureSize, m_pictureSize));
        if (!over) {
            picture.moveTop(box.top() + (box.height() - m_pictureSize) / 2);
        }
        m_picture.paint(&painter, picture, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
        if (over) {
            words.setTop(box.top() + m_pictureSize + Gap());
        } else {
            words.setLeft(box.left() + m_pictureSize + Gap());
        }
    }
    // TextShowMnemonic also in the cut: a "&" of the text isn't shown, it marks the letter for the Alt key.
    const QString shown =
        fontMetrics().elidedText(text(), Qt::ElideRight, words.width(), Qt::TextShowMnemonic);
    style()->drawItemText(&painter, words, Qt::AlignCenter | Qt::TextShowMnemonic, palette(), isEnabled(),
                          shown, QPalette::ButtonText);
}
