#include "lists/CListModel.h"

#include <unordered_map>

#include "shell/dialogs/qttext.h"

std::string CListModel::Text(int row, int column) const {
    const std::vector<std::string>& texts = At(row).Texts;
    if (texts.empty()) {
        return MakeText(row, column);
    }
    const auto index = static_cast<std::size_t>(column);
    return index < texts.size() ? texts[index] : std::string();
}

void CListModel::AddColumn(Column column) {
    const int at = static_cast<int>(m_columns.size());
    beginInsertColumns({}, at, at);
    m_columns.push_back(std::move(column));
    endInsertColumns();
}

void CListModel::Reset(std::vector<Row> rows) {
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

void CListModel::Append(Row row) {
    beginInsertRows({}, Count(), Count());
    m_rows.push_back(std::move(row));
    endInsertRows();
}

void CListModel::Remove(int row) {
    beginRemoveRows({}, row, row);
    m_rows.erase(m_rows.begin() + row);
    endRemoveRows();
}

void CListModel::KeepTexts() {
    for (int row = 0; row < Count(); ++row) {
        std::vector<std::string> texts;
        for (int column = 0; column < columnCount(); ++column) {
            texts.push_back(Text(row, column));
        }
        m_rows[static_cast<std::size_t>(row)].Texts = std::move(texts);
    }
}

void CListModel::Move(int from, int to) {
    KeepTexts();
    beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
    const auto begin = m_rows.begin();
    if (from < to) {
        std::rotate(begin + from, begin + from + 1, begin + to + 1);
    } else {
        std::rotate(begin + to, begin + from, begin + from + 1);
    }
    endMoveRows();
}

void CListModel::Reorder(const std::vector<int>& order) {
    KeepTexts();
    emit layoutAboutToBeChanged();
    std::vector<Row> rows;
    std::vector<int> place(order.size());
    for (const int row : order) {
        place[static_cast<std::size_t>(row)] = static_cast<int>(rows.size());
        rows.push_back(std::move(m_rows[static_cast<std::size_t>(row)]));
    }
    m_rows = std::move(rows);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex& index : before) {
        after << createIndex(place[static_cast<std::size_t>(index.row())], index.column());
    }
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

void CListModel::Arrange(const std::vector<std::int32_t>& data) {
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::vector<std::int32_t> held;
    for (const QModelIndex& index : before) {
        held.push_back(At(index.row()).Data);
    }
    std::vector<Row> rows(data.size());
    std::unordered_map<std::int32_t, int> places;
    for (std::size_t i = 0; i < data.size(); ++i) {
        rows[i].Data = data[i];
        if (!held.empty()) {
            places.emplace(data[i], static_cast<int>(i));
        }
    }
    m_rows = std::move(rows);
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i) {
        const auto place = places.find(held[static_cast<std::size_t>(i)]);
        after << (place == places.end() ? QModelIndex() : createIndex(place->second, before[i].column()));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

void CListModel::Check(int first, int last, bool checked) {
    bool changed = false;
    for (int row = first; row <= last; ++row) {
        bool& mark = m_rows[static_cast<std::size_t>(row)].Checked;
        changed = changed || mark != checked;
        mark = checked;
    }
    if (changed) {
        emit dataChanged(createIndex(first, 0), createIndex(last, 0), {Qt::CheckStateRole});
        OnChecked();
    }
}

int CListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : Count();
}

int CListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant CListModel::data(const QModelIndex& index, int role) const {
    switch (role) {
        case Qt::DisplayRole:
            // A row is one line high.
            return ToQt(Text(index.row(), index.column())).replace("\r\n", " ").replace('\n', ' ');
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(m_columns[static_cast<std::size_t>(index.column())].Alignment);
        case Qt::ForegroundRole:
            if (const QColor colour = TextColour(index.row()); colour.isValid()) {
                return colour;
            }
            return {};
        case Qt::DecorationRole:
            return index.column() == 0 && Sign ? Sign(index.row()) : QVariant();
        case ShowsEndRole:
            return m_columns[static_cast<std::size_t>(index.column())].ShowsEnd;
        case Qt::CheckStateRole:
            if (m_checkBoxes && index.column() == 0) {
                return At(index.row()).Checked ? Qt::Checked : Qt::Unchecked;
            }
            return {};
        default:
            return {};
    }
}

bool CListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !m_checkBoxes) {
        return false;
    }
    Check(index.row(), index.row(), value.toInt() == Qt::Checked);
    return true;
}

QVariant CListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) {
        return {};
    }
    const Column& column = m_columns[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole) {
        return column.Heading;
    }
    return role == Qt::TextAlignmentRole ? QVariant::fromValue(column.Alignment) : QVariant();
}

Qt::ItemFlags CListModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    if (m_checkBoxes && index.column() == 0) {
        flags |= Qt::ItemIsUserCheckable;
    }
    return flags;
}
