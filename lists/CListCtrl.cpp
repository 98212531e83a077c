#include "lists/CListCtrl.h"

#include <QCollator>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextDocument>
#include <QToolTip>
#include <numeric>

#include "lists/CListDelegate.h"
#include "lists/CListModel.h"
#include "lists/listtexts.h"
#include "lists/roworder.h"
#include "shell/dialogs/qttext.h"
#include "shell/dialogs/theme.h"

namespace {

constexpr int LeastColumnWidth = 24;  // pixels
constexpr int EmptyTextMargin = 16;
constexpr int CellMargin = 16;  // what the delegate and the grid take, with some air
constexpr int WidestFit = 240;
constexpr int MostRowsMeasured = 200;
constexpr int SignSize = 8;
constexpr QRgb SignColour = 0xFF1E8E3E;

}  // namespace

CListCtrl::CListCtrl(QWidget* parent) : QTreeView(parent), m_model(new CListModel(this)) {
    m_model->MakeText = [this](int row, int column) { return MakeText(row, column); };
    m_model->TextColour = [this](int row) {
        const bool greyed = m_shown && !m_shown->contains(ItemData(row));
        return greyed ? QColor(QuietTextColour) : TextColour(row);
    };
    m_model->OnChecked = [this] { NotifyChanged(); };
    setModel(m_model);
    setItemDelegate(new CListDelegate(this));
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setExpandsOnDoubleClick(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollMode(ScrollPerPixel);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(false);
    header()->setHighlightSections(false);
    header()->setMinimumSectionSize(LeastColumnWidth);
    header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    connect(header(), &QHeaderView::sectionResized, this, [this](int column, int, int) {
        if (!m_fitting) {
            m_sizedByUser.insert(column);
        }
    });
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { NotifyChanged(); });
    connect(this, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
        if (OnDoubleClick) {
            OnDoubleClick(index.row());
        }
    });
}

CListCtrl::~CListCtrl() {
    // Changes while the base goes down are nobody's business.
    selectionModel()->disconnect(this);
}

void CListCtrl::InsertColumn(const QString& heading, int width, bool rightAligned) {
    m_model->AddColumn(
        {heading, (rightAligned ? Qt::AlignRight : Qt::AlignLeft) | Qt::Alignment(Qt::AlignVCenter)});
    m_widths.push_back(width);
    m_neverCut.push_back(false);
    m_longest.push_back(0);
    FitColumns();
}

void CListCtrl::InsertColumn(const ListColumn& column, int moreWidth) {
    const Qt::Alignment side = column.RightAligned ? Qt::AlignRight : Qt::AlignLeft;
    m_model->AddColumn(
        {MessageText(column.Heading), side | Qt::Alignment(Qt::AlignVCenter), column.ShowsEnd});
    m_widths.push_back(column.Width + moreWidth);
    m_neverCut.push_back(column.NeverCut);
    m_longest.push_back(0);
    FitColumns();
}

void CListCtrl::ShowSigns() {
    const auto dot = [this](const QColor& colour) {
        const qreal ratio = devicePixelRatioF();
        QPixmap pixmap(QSize(SignSize, SignSize) * ratio);
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawEllipse(QRectF(0.5, 0.5, SignSize - 1.0, SignSize - 1.0));
        return pixmap;
    };
    const QIcon none(dot(Qt::transparent));
    QIcon sign(dot(SignColour));
    sign.addPixmap(dot(Qt::white), QIcon::Selected);
    setIconSize(QSize(SignSize, SignSize));
    m_model->Sign = [this, sign, none](int row) { return HasSign(row) ? sign : none; };
}

void CListCtrl::ShowCheckBoxes() {
    m_model->ShowCheckBoxes();
}

void CListCtrl::HideColumn(int column, bool hidden) {
    setColumnHidden(column, hidden);
    FitColumns();
}

void CListCtrl::AllowSeveral() {
    setSelectionMode(ExtendedSelection);
}

void CListCtrl::SetEmptyText(const QString& text) {
    m_emptyText = text;
    viewport()->update();
}

std::map<int, int> CListCtrl::UserWidths() const {
    std::map<int, int> widths;
    for (const int column : m_sizedByUser) {
        widths[column] = header()->sectionSize(column);
    }
    return widths;
}

void CListCtrl::SetUserWidth(int column, int width) {
    if (column >= 0 && column < ColumnCount() && width >= LeastColumnWidth) {
        header()->resizeSection(column, width);
        m_sizedByUser.insert(column);
    }
}

int CListCtrl::FullWidth() const {
    return header()->length() + verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
}

int CListCtrl::RowCount() const {
    return m_model->Count();
}

int CListCtrl::ColumnCount() const {
    return m_model->columnCount();
}

std::string CListCtrl::RowText(int row, int column) const {
    return IsRow(row) && column >= 0 && column < ColumnCount() ? m_model->Text(row, column) : std::string();
}

std::int32_t CListCtrl::ItemData(int row) const {
    return IsRow(row) ? m_model->At(row).Data : 0;
}

int CListCtrl::SelectedRow() const {
    const std::vector<int> rows = SelectedRows();
    return rows.empty() ? -1 : rows.front();
}

std::vector<int> CListCtrl::SelectedRows() const {
    std::vector<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows()) {
        rows.push_back(index.row());
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

void CListCtrl::SelectRow(int row) {
    selectionModel()->clear();
    if (IsRow(row)) {
        const QModelIndex index = m_model->index(row, 0);
        selectionModel()->setCurrentIndex(index,
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        scrollTo(index);
    }
}

bool CListCtrl::SelectRowOf(std::int32_t itemData) {
    const auto find = [&] {
        int found = -1;
        for (int row = 0; row < RowCount() && found < 0; ++row) {
            found = m_model->At(row).Data == itemData ? row : -1;
        }
        return found;
    };
    int found = find();
    if (found < 0 && m_shown && std::find(m_told.begin(), m_told.end(), itemData) != m_told.end()) {
        m_kept = itemData;
        Arrange();
        found = find();
    }
    SelectRow(found);
    return found >= 0;
}

void CListCtrl::SetCurrentRow(int row) {
    if (row >= 0 && RowCount() > 0) {
        selectionModel()->setCurrentIndex(m_model->index(std::min(row, RowCount() - 1), 0),
                                          QItemSelectionModel::NoUpdate);
    }
}

bool CListCtrl::IsChecked(int row) const {
    return IsRow(row) && m_model->At(row).Checked;
}

void CListCtrl::SetChecked(int row, bool checked) {
    if (IsRow(row)) {
        m_model->Check(row, row, checked);
    }
}

void CListCtrl::CheckAll(bool checked) {
    m_model->Check(0, RowCount() - 1, checked);
}

void CListCtrl::AddRow(std::vector<std::string> texts, std::int32_t itemData) {
    texts.resize(static_cast<std::size_t>(ColumnCount()));
    m_model->Append({itemData, false, std::move(texts)});
}

void CListCtrl::DeleteRow(int row) {
    if (!IsRow(row)) {
        return;
    }
    // By itself the view would select the neighbour, and the next command would hit a row nobody chose.
    const QModelIndex index = m_model->index(row, 0);
    selectionModel()->select(index, QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
    if (currentIndex().row() == row) {
        const int next = row + 1 < RowCount() ? row + 1 : row - 1;
        selectionModel()->setCurrentIndex(m_model->index(next, 0), QItemSelectionModel::NoUpdate);
    }
    std::erase(m_told, m_model->At(row).Data);
    std::erase(m_sorted, m_model->At(row).Data);
    m_model->Remove(row);
}

void CListCtrl::DeleteAllRows() {
    m_told.clear();
    m_kept.reset();
    m_model->Reset({});
    NotifyChanged();
}

void CListCtrl::SortRows(const std::function<int(int, int)>& compare) {
    m_model->Reorder(SortedRows(RowCount(), compare));
}

std::string CListCtrl::MakeText(int, int) const {
    return {};
}

QColor CListCtrl::TextColour(int) const {
    return {};
}

bool CListCtrl::HasSign(int) const {
    return false;
}

void CListCtrl::ResetRows(const std::vector<std::int32_t>& itemData) {
    std::vector<CListModel::Row> rows(itemData.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i].Data = itemData[i];
    }
    m_told = itemData;
    m_kept.reset();
    m_model->Reset(std::move(rows));
    FitContent();
    if (m_shown || IsSorted()) {
        Sort();
        Arrange();
    }
}

void CListCtrl::AllowSorting() {
    header()->setSectionsClickable(true);
    connect(header(), &QHeaderView::sectionClicked, this, [this](int column) { OnHeadClicked(column); });
}

void CListCtrl::OnHeadClicked(int column) {
    m_sortColumn = m_sortColumn == column ? -1 : column;
    header()->setSortIndicatorShown(IsSorted());
    if (IsSorted()) {
        header()->setSortIndicator(column, Qt::AscendingOrder);
    }
    Sort();
    Arrange();
    if (const int row = SelectedRow(); row >= 0) {
        scrollTo(m_model->index(row, 0));
    }
}

void CListCtrl::ShowOnly(std::unordered_set<std::int32_t> rows) {
    m_shown = std::move(rows);
    Arrange();
}

void CListCtrl::ShowAll() {
    if (m_shown) {
        m_shown.reset();
        Arrange();
    }
}

void CListCtrl::Arrange() {
    if (const int row = SelectedRow(); row >= 0) {
        m_kept = ItemData(row);
    }
    std::vector<std::int32_t> rows;
    for (const std::int32_t one : IsSorted() ? m_sorted : m_told) {
        if (!m_shown || one == m_kept || m_shown->contains(one)) {
            rows.push_back(one);
        }
    }
    m_model->Arrange(rows);
    viewport()->update();
}

// All rows, whichever are shown: a filter leaves some of them in their order. Numbers as such, before texts;
// texts as people order them, "Y2" before "Y10".
void CListCtrl::Sort() {
    if (!IsSorted()) {
        m_sorted.clear();
        return;
    }
    m_model->Arrange(m_told);
    struct Key {
        std::optional<double> Number;
        QString Text;
    };
    std::vector<Key> keys;
    for (int row = 0; row < RowCount(); ++row) {
        Key key{std::nullopt, ToQt(m_model->Text(row, m_sortColumn))};
        bool isNumber = false;
        const double number = key.Text.toDouble(&isNumber);
        if (isNumber) {
            key.Number = number;
        }
        keys.push_back(std::move(key));
    }
    // Whatever the locale of the machine, which may know no numbers.
    QCollator collator{QLocale(QLocale::Chinese)};
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    const auto before = [&](std::size_t a, std::size_t b) {
        const Key& first = keys[a];
        const Key& second = keys[b];
        if (first.Number && second.Number) {
            return *first.Number < *second.Number;
        }
        if (first.Number || second.Number) {
            return first.Number.has_value();
        }
        return collator.compare(first.Text, second.Text) < 0;
    };
    std::vector<std::size_t> order(m_told.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), before);
    m_sorted.clear();
    for (const std::size_t row : order) {
        m_sorted.push_back(m_told[row]);
    }
}

void CListCtrl::NotifyChanged() {
    // What was kept only because it was selected goes, once the view is through with this.
    if (m_kept && m_shown && !m_shown->contains(*m_kept)) {
        QMetaObject::invokeMethod(
            this, [this] { DropKept(); }, Qt::QueuedConnection);
    }
    if (OnItemChanged) {
        OnItemChanged();
    }
}

void CListCtrl::DropKept() {
    const int row = SelectedRow();
    if (m_kept && row >= 0 && ItemData(row) != *m_kept) {
        m_kept.reset();
        Arrange();
    }
}

// The first rows that come make the columns wide enough for them, within reason; from then on widths stay, so
// that nothing jumps from section to section. What is never cut grows with every text that is longer.
void CListCtrl::FitContent() {
    if (RowCount() == 0) {
        return;
    }
    const int room = 2 * style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + CellMargin;
    for (int column = 0; column < ColumnCount(); ++column) {
        const auto at = static_cast<std::size_t>(column);
        if (m_fitted && !m_neverCut[at]) {
            continue;
        }
        const int rows = m_neverCut[at] ? RowCount() : std::min(RowCount(), MostRowsMeasured);
        for (int row = 0; row < rows; ++row) {
            const std::string text = m_model->Text(row, column);
            if (text.size() > m_longest[at]) {
                m_longest[at] = text.size();
                const int width = fontMetrics().horizontalAdvance(ToQt(text)) + room;
                m_widths[at] = std::max(m_widths[at], m_neverCut[at] ? width : std::min(width, WidestFit));
            }
        }
    }
    m_fitted = true;
    FitColumns();
}

// Told widths, but no heading is cut, and the last column takes what is left over.
void CListCtrl::FitColumns() {
    m_fitting = true;
    const int count = static_cast<int>(m_widths.size());
    int last = count - 1;
    while (last > 0 && isColumnHidden(last)) {
        --last;
    }
    int taken = 0;
    for (int column = 0; column < count; ++column) {
        if (isColumnHidden(column)) {
            continue;
        }
        if (!m_sizedByUser.contains(column)) {
            int width = qMax(m_widths[static_cast<std::size_t>(column)], header()->sectionSizeHint(column));
            if (column == last) {
                width = qMax(width, viewport()->width() - taken);
            }
            header()->resizeSection(column, width);
        }
        taken += header()->sectionSize(column);
    }
    m_fitting = false;
}

void CListCtrl::ToggleChecks() {
    const bool checked = !IsChecked(currentIndex().row());
    const std::vector<int> rows = SelectedRows();
    if (std::find(rows.begin(), rows.end(), currentIndex().row()) == rows.end()) {
        SetChecked(currentIndex().row(), checked);
        return;
    }
    for (const int row : rows) {
        SetChecked(row, checked);
    }
}

void CListCtrl::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        FitColumns();
    }
}

void CListCtrl::contextMenuEvent(QContextMenuEvent* event) {
    if (!OnRightClick) {
        QTreeView::contextMenuEvent(event);
        return;
    }
    QPoint at = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid()) {
        at = viewport()->mapToGlobal(visualRect(currentIndex()).center());
    }
    OnRightClick(at);
}

void CListCtrl::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && m_model->HasCheckBoxes() && currentIndex().isValid()) {
        ToggleChecks();
        return;
    }
    // A row can be current without being selected, when the list has just got the focus or a row was deleted.
    // The first key selects it and doesn't step past it.
    if (SelectedRow() < 0 && RowCount() > 0 &&
        (event->key() == Qt::Key_Down || event->key() == Qt::Key_Home)) {
        SelectRow(event->key() == Qt::Key_Down ? std::max(currentIndex().row(), 0) : 0);
        return;
    }
    // Keys without a meaning here are left to the window.
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (plain && event->key() == Qt::Key_Space) {
        event->ignore();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void CListCtrl::mouseMoveEvent(QMouseEvent* event) {
    // A hand that trembles on a click mustn't select the row beside.
    if (selectionMode() == SingleSelection && (event->buttons() & Qt::LeftButton) != 0) {
        return;
    }
    QTreeView::mouseMoveEvent(event);
}

void CListCtrl::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    const QString& nothing = m_told.empty() || m_nothingFound.isEmpty() ? m_emptyText : m_nothingFound;
    if (RowCount() == 0 && !nothing.isEmpty()) {
        QPainter painter(viewport());
        painter.setPen(QColor(QuietTextColour));
        const int margin = EmptyTextMargin;
        painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                         static_cast<int>(Qt::AlignCenter) | static_cast<int>(Qt::TextWordWrap), nothing);
    }
}

void CListCtrl::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    FitColumns();
}

void CListCtrl::showEvent(QShowEvent* event) {
    QTreeView::showEvent(event);
    FitColumns();
}

// Empty if the cell shows all of it.
QString CListCtrl::CutText(const QModelIndex& index) const {
    if (!index.isValid()) {
        return {};
    }
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const bool cut = itemDelegate()->sizeHint(option, index).width() > visualRect(index).width();
    return cut ? index.data().toString() : QString();
}

bool CListCtrl::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const QModelIndex index = indexAt(help->pos());
        const QString text = CutText(index);
        // As it stands, even if it looks like a markup.
        QToolTip::showText(help->globalPos(), text.isEmpty() ? text : Qt::convertFromPlainText(text),
                           viewport(), visualRect(index));
        return true;
    }
    return QTreeView::viewportEvent(event);
}
