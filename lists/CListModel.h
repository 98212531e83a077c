// The rows behind a list. Ten thousand of them cost next to nothing, since a text is made when it is drawn.
#pragma once

#include <QAbstractTableModel>
#include <QColor>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class CListModel : public QAbstractTableModel {
public:
    struct Column {
        QString Heading;
        Qt::Alignment Alignment;
        bool ShowsEnd = false;
    };
    // Of an index: whether a text that is too long loses its beginning.
    static constexpr int ShowsEndRole = Qt::UserRole;
    struct Row {
        std::int32_t Data = 0;
        bool Checked = false;
        // Empty: they are asked for by row and column when needed.
        std::vector<std::string> Texts;
    };

    using QAbstractTableModel::QAbstractTableModel;

    // Set once by the owner.
    std::function<std::string(int row, int column)> MakeText;
    std::function<QColor(int row)> TextColour;  // an invalid colour: as usual
    std::function<QVariant(int row)> Sign;      // before the text of the first column
    std::function<void()> OnChecked;

    int Count() const { return static_cast<int>(m_rows.size()); }
    const Row& At(int row) const { return m_rows[static_cast<std::size_t>(row)]; }
    std::string Text(int row, int column) const;

    void AddColumn(Column column);
    void ShowCheckBoxes() { m_checkBoxes = true; }
    bool HasCheckBoxes() const { return m_checkBoxes; }

    void Reset(std::vector<Row> rows);
    void Append(Row row);
    void Remove(int row);
    // Rows keep their data, marks and texts, whatever stands at their place in the owner's arrays.
    void Move(int from, int to);
    void Reorder(const std::vector<int>& order);
    // The rows with these data, in this order; what was selected stays so where its row stays. For rows
    // without texts of their own, which the owner finds by their data.
    void Arrange(const std::vector<std::int32_t>& data);
    void Check(int first, int last, bool checked);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void KeepTexts();

    std::vector<Column> m_columns;
    std::vector<Row> m_rows;
    bool m_checkBoxes = false;
};
