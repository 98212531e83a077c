#include "lists/CListDelegate.h"

#include <QPainter>
#include <QStyle>
#include <QWidget>

#include "lists/CListModel.h"
#include "shell/dialogs/theme.h"

namespace {

constexpr QRgb GridColour = 0xFFE6EAEE;
constexpr int RowPadding = 8;  // pixels above and below the text together
constexpr int Indent = 3;      // pixels on both sides, so that texts stand below those of the headings

QStyleOptionViewItem Indented(const QStyleOptionViewItem& option) {
    QStyleOptionViewItem inner = option;
    inner.rect.adjust(Indent, 0, -Indent, 0);
    return inner;
}

}  // namespace

void CListDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    if (index.data(CListModel::ShowsEndRole).toBool()) {
        option->textElideMode = Qt::ElideLeft;
    }
    // The selection shows where the keyboard is; a frame in it would only be noise. The colour of a row's
    // text gives way to that of selections, which is legible on them.
    if ((option->state & QStyle::State_Selected) != 0) {
        option->state &= ~QStyle::State_HasFocus;
        if (option->widget != nullptr && !option->widget->hasFocus()) {
            option->palette.setColor(QPalette::All, QPalette::Highlight, QColor(RestingSelectionColour));
        }
        option->palette.setColor(QPalette::Text, option->palette.color(QPalette::HighlightedText));
    }
}

void CListDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    QStyleOptionViewItem ground = option;
    initStyleOption(&ground, index);
    const QWidget* view = option.widget;
    view->style()->drawPrimitive(QStyle::PE_PanelItemViewItem, &ground, painter, view);
    QStyledItemDelegate::paint(painter, Indented(option), index);
    const QRect& cell = option.rect;
    painter->fillRect(QRect(cell.left(), cell.bottom(), cell.width(), 1), QColor(GridColour));
    painter->fillRect(QRect(cell.right(), cell.top(), 1, cell.height()), QColor(GridColour));
}

QSize CListDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QSize hint = QStyledItemDelegate::sizeHint(option, index);
    return {hint.width() + 2 * Indent, qMax(hint.height(), option.fontMetrics.height() + RowPadding)};
}

bool CListDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                                const QModelIndex& index) {
    return QStyledItemDelegate::editorEvent(event, model, Indented(option), index);
}
