// The sections of a project, in its order.
#pragma once

#include <set>
#include <string>
#include <unordered_map>
#include <utility>

#include "lists/CDragListCtrl.h"
#include "store/records/records.h"

class CDbRec;

class CTestingList : public CDragListCtrl {
public:
    using CDragListCtrl::CDragListCtrl;

    void CreateColumns(bool checkBoxes);
    // False, with no rows, if the sections can't be read. What can't be counted shows -1.
    bool Fill(CDbRec& database);
    // Of a row that was moved too, though the array stays as it is until the next Fill.
    const _TESTING_DATA* SectionAt(int row) const;  // null if there is none
    const CTestingDataArray& Sections() const { return m_sections; }
    const _TESTING_DATA* SelectedSection() const { return SectionAt(SelectedRow()); }
    // From the top down.
    CTestingDataArray CheckedSections() const;
    void DeleteRow(int row) override;

    // Two narrow columns behind the others for the levels of both indexes; hidden until ShowLevels.
    void CreateLevelColumns();
    void ShowLevels(bool shown);
    bool AreLevelsShown() const;
    // Of a section; they stay until they are set anew.
    void SetLevels(std::int32_t id, std::string structural, std::string functional);
    void ClearLevels();

    void SortByWells();

    // IDs of the sections that have records; they are green and bear
    // a dot. The owner decides when to look again: a section
    // whose first record was just added stays black until the next full refresh.
    std::set<std::int32_t> HasDefects;
    // From what the last Fill counted.
    void RebuildHasDefects();

protected:
    std::string MakeText(int row, int column) const override;
    QColor TextColour(int row) const override;
    bool HasSign(int row) const override;

private:
    CTestingDataArray m_sections;
    std::unordered_map<std::int32_t, int> m_places;  // by ID
    std::unordered_map<std::int32_t, std::int32_t> m_recordCounts;
    bool m_counted = false;
    std::unordered_map<std::int32_t, std::pair<std::string, std::string>> m_levels;
};
