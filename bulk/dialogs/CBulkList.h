// Rows that would be changed, with what stands there now and what would.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "lists/CListCtrl.h"

class CBulkList : public CListCtrl {
public:
    enum Column { Label, Now, Then, WhyNot };

    explicit CBulkList(QWidget* parent = nullptr);

    void Show(const std::vector<std::int32_t>& ids) { ResetRows(ids); }
    // Asked when a cell is drawn, so that a change of what is planned costs only what is seen.
    std::function<std::string(int row, int column)> TextOf;

protected:
    std::string MakeText(int row, int column) const override { return TextOf ? TextOf(row, column) : ""; }
};
