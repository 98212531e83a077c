#include "workbench/lists/CListDelegate.h"

#include <QPainter>

namespace {

constexpr QRgb GridColour = 0xFFE6EAEE;
constexpr int RowPadding = 8;  // pixels above and below the text together

}  // namespace

void CListDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    // The selection shows where the keyboard is; a frame in it would only be noise. The colour of a row's
    // text gives way to that of selections, which is legible on them.
    if ((option->state & QStyle::State_Selected) != 0) {
        option->state &= ~QStyle::State_HasFocus;
        option->palette.setColor(QPalette::Text, option->palette.color(QPalette::HighlightedText));
    }
}

void CListDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    painter->setPen(QColor(GridColour));
    painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
    painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
}

QSize CListDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QSize hint = QStyledItemDelegate::sizeHint(option, index);
    return {hint.width(), qMax(hint.height(), option.fontMetrics.height() + RowPadding)};
}
