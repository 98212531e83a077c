// The records of one section, in the order in which they were stored.
#pragma once

#include <unordered_map>

#include "lists/CListCtrl.h"
#include "store/records/records.h"

class CDbRec;

class CDefectList : public CListCtrl {
public:
    using CListCtrl::CListCtrl;

    void CreateColumns(bool fullForm, bool checkBoxes);
    // Below 0: the records of the whole project. False, with no rows, if they can't be read.
    bool Fill(CDbRec& database, std::int32_t sectionId);
    // Records that somebody else has read from the database.
    void Show(const CDbRec& database, CRecDataArray records);
    // With no section selected there are no records.
    void Clear();
    const _REC_DATA* RecordAt(int row) const;  // null if there is none
    const _REC_DATA* SelectedRecord() const { return RecordAt(SelectedRow()); }
    const CRecDataArray& Records() const { return m_records; }
    void DeleteRow(int row) override;

protected:
    std::string MakeText(int row, int column) const override;

private:
    int PlaceOf(int row) const;  // in the arrays; below 0 if there is none

    bool m_fullForm = true;
    CRecDataArray m_records;
    std::unordered_map<std::int32_t, int> m_places;  // by ID
    std::vector<std::string> m_names;                // of the defects, parallel to the records
};
