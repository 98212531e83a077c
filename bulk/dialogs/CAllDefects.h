// The defects of the whole project in one list, each with its first picture small.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "lists/CListCtrl.h"

class CDbRec;
class CQueryRows;
class CThumbnails;

class CAllDefects : public CListCtrl {
public:
    explicit CAllDefects(QWidget* parent = nullptr);

    // In the order of the sections. Takes what it shows, so that the rows may go.
    void Show(const CDbRec& database, const CQueryRows& rows);
    void Clear();
    // The section of the row's record; below 0 if there is none.
    std::int32_t SectionOf(int row) const;

protected:
    std::string MakeText(int row, int column) const override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Row {
        std::int32_t Section = -1;
        std::string SectionName;
        std::string Wells;
        std::string Code;
        std::string Defect;
        std::string Grade;
        std::string Distance;
        std::string Picture;
    };
    const Row* RowAt(int row) const;

    std::unordered_map<std::int32_t, Row> m_rows;  // by the record's ID
    CThumbnails* m_thumbnails;
};
