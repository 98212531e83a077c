// The base of all lists: rows with columns, whole rows selected, grid lines, tool tips where a text is cut,
// check boxes if wanted. One row can be selected at a time, unless AllowSeveral is called.
//
// A list that keeps an array of records beside its rows overrides MakeText and calls ResetRows; row and
// array index are the same then. A simple list adds rows with their texts.
#pragma once

#include <QTreeView>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

class CListModel;
struct ListColumn;

class CListCtrl : public QTreeView {
public:
    explicit CListCtrl(QWidget* parent = nullptr);
    ~CListCtrl() override;

    // Width in pixels; a heading that needs more gets more.
    void InsertColumn(const QString& heading, int width, bool rightAligned = false);
    void InsertColumn(const ListColumn& column, int moreWidth = 0);
    // Before the first row.
    void ShowCheckBoxes();
    void HideColumn(int column, bool hidden);
    void AllowSeveral();
    // Stands in the middle while there are no rows: what the operator can do about it.
    void SetEmptyText(const QString& text);
    // Of the columns that the operator has sized, in pixels.
    std::map<int, int> UserWidths() const;
    void SetUserWidth(int column, int width);
    // Wide enough to show all columns beside a scroll bar.
    int FullWidth() const;

    int RowCount() const;
    int ColumnCount() const;
    std::string RowText(int row, int column) const;
    // What the row stands for, such as the ID of a section.
    std::int32_t ItemData(int row) const;

    int SelectedRow() const;  // -1 if none; of several the uppermost
    std::vector<int> SelectedRows() const;
    // Takes the selection off all rows, and gives it, if there is such a row, to this one.
    void SelectRow(int row);
    // By what a row stands for; false, with none selected, if there is no such row.
    bool SelectRowOf(std::int32_t itemData);
    // Where the arrow keys go on from; selects nothing.
    void SetCurrentRow(int row);

    bool IsChecked(int row) const;
    void SetChecked(int row, bool checked);
    void CheckAll(bool checked);

    void AddRow(std::vector<std::string> texts, std::int32_t itemData = 0);
    // With its entries in the arrays that run beside the rows. No row is selected in its place.
    virtual void DeleteRow(int row);
    void DeleteAllRows();
    // Equal rows keep their order. `compare` gets two rows, and gives a number below, equal or above 0. Only
    // the rows move, not the arrays beside them.
    void SortRows(const std::function<int(int, int)>& compare);

    // Heads sort what is shown: a click upwards, the next one back to the told order. For lists that find
    // their data by ItemData, without check boxes, as also below.
    void AllowSorting();
    bool IsSorted() const { return m_sortColumn >= 0; }
    // Shows only rows that stand for one of `rows`, until ShowAll. A row that is selected, or gets selected
    // by SelectRowOf, stays, greyed, as long as it is: no command may act on what isn't seen.
    void ShowOnly(std::unordered_set<std::int32_t> rows);
    void ShowAll();
    bool IsFiltered() const { return m_shown.has_value(); }
    // Stands in the middle where the filter leaves no row.
    void SetNothingFoundText(const QString& text) { m_nothingFound = text; }

    // The selection or a check mark changed, or all rows went.
    std::function<void()> OnItemChanged;
    std::function<void(int row)> OnDoubleClick;
    std::function<void(const QPoint& global)> OnRightClick;

protected:
    // The text of a row that hasn't been moved since it was made.
    virtual std::string MakeText(int row, int column) const;
    virtual QColor TextColour(int row) const;
    // Of rows that bear a sign before their first column; the other rows leave its room empty.
    virtual bool HasSign(int row) const;
    void ShowSigns();
    // As many rows as there are data, without texts of their own.
    void ResetRows(const std::vector<std::int32_t>& itemData);
    CListModel& Model() { return *m_model; }

    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    void Arrange();
    void OnHeadClicked(int column);
    void Sort();
    bool IsRow(int row) const { return row >= 0 && row < RowCount(); }
    void NotifyChanged();
    void DropKept();
    void FitColumns();
    void FitContent();
    void ToggleChecks();
    QString CutText(const QModelIndex& index) const;

    CListModel* m_model;  // owned by this as its parent
    std::vector<int> m_widths;
    std::vector<bool> m_neverCut;
    std::vector<std::size_t> m_longest;  // text measured of each column, in bytes
    bool m_fitted = false;               // to the content of the first rows that came
    std::set<int> m_sizedByUser;
    bool m_fitting = false;
    QString m_emptyText;
    QString m_nothingFound;
    std::vector<std::int32_t> m_told;    // data of all rows, in the told order
    std::vector<std::int32_t> m_sorted;  // the same in the order of m_sortColumn
    std::optional<std::unordered_set<std::int32_t>> m_shown;
    std::optional<std::int32_t> m_kept;  // shown though it isn't among them
    int m_sortColumn = -1;
};
