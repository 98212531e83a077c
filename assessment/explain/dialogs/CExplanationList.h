// The rows of an explanation. Headings stand out, and rows that lead to a record bear a dot.
#pragma once

#include <vector>

#include "assessment/explain/explanationtext.h"
#include "lists/CListCtrl.h"

class CExplanationList : public CListCtrl {
public:
    explicit CExplanationList(QWidget* parent);

    void Show(std::vector<ExplanationRow> rows);
    const ExplanationRow* SelectedLine() const;  // null if none is
    // All rows, columns parted by tabs.
    std::string AsText() const;

protected:
    std::string MakeText(int row, int column) const override;
    QColor TextColour(int row) const override;
    bool HasSign(int row) const override;

private:
    std::vector<ExplanationRow> m_rows;
};
