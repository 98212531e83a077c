#include "lists/CTestingList.h"

#include "lists/listtexts.h"
#include "lists/roworder.h"
#include "shell/dialogs/qttext.h"
#include "store/CDbRec.h"

namespace {

constexpr int HeadingStructural = 3568;
constexpr int HeadingFunctional = 3569;
constexpr int LevelWidth = 56;
constexpr int CheckBoxWidth = 24;  // pixels, with the gap behind it

}  // namespace

void CTestingList::CreateColumns(bool checkBoxes) {
    if (checkBoxes) {
        ShowCheckBoxes();
    }
    ShowSigns();
    int checkBox = checkBoxes ? CheckBoxWidth : 0;  // of the first column, or names would be cut
    for (const ListColumn& column : SectionColumns()) {
        InsertColumn(column, checkBox);
        checkBox = 0;
    }
}

bool CTestingList::Fill(CDbRec& database) {
    DeleteAllRows();
    m_sections.RemoveAll();
    m_recordCounts.clear();
    CTestingDataArray sections;
    if (!database.ReadTestings(sections)) {
        return false;
    }
    m_counted = database.CountRecordsBySection(m_recordCounts);
    m_sections = std::move(sections);
    std::vector<std::int32_t> ids;
    for (const _TESTING_DATA& section : m_sections) {
        ids.push_back(section.ID);
    }
    m_places = PlacesById(m_sections);
    ResetRows(ids);
    return true;
}

const _TESTING_DATA* CTestingList::SectionAt(int row) const {
    if (row < 0 || row >= RowCount()) {
        return nullptr;
    }
    const std::int32_t id = ItemData(row);
    if (row < m_sections.GetSize() && m_sections[row].ID == id) {
        return &m_sections[row];
    }
    const auto moved = m_places.find(id);
    return moved == m_places.end() ? nullptr : &m_sections[moved->second];
}

CTestingDataArray CTestingList::CheckedSections() const {
    CTestingDataArray sections;
    for (int row = 0; row < RowCount(); ++row) {
        if (const _TESTING_DATA* section = SectionAt(row); section != nullptr && IsChecked(row)) {
            sections.Add(*section);
        }
    }
    return sections;
}

void CTestingList::DeleteRow(int row) {
    if (SectionAt(row) != nullptr) {
        m_sections.RemoveAt(static_cast<int>(SectionAt(row) - &m_sections[0]));
        m_places = PlacesById(m_sections);
        CDragListCtrl::DeleteRow(row);
    }
}

void CTestingList::SortByWells() {
    std::vector<std::string> wells;
    for (int row = 0; row < RowCount(); ++row) {
        wells.push_back(RowText(row, WellsColumn));
    }
    SortRows([&wells](int a, int b) {
        return CompareByWells(wells[static_cast<std::size_t>(a)], wells[static_cast<std::size_t>(b)]);
    });
}

void CTestingList::RebuildHasDefects() {
    HasDefects.clear();
    for (const auto& [section, count] : m_recordCounts) {
        HasDefects.insert(section);
    }
    viewport()->update();
}

void CTestingList::CreateLevelColumns() {
    for (const int heading : {HeadingStructural, HeadingFunctional}) {
        InsertColumn(ListColumn{heading, LevelWidth});
    }
    ShowLevels(false);
}

void CTestingList::ShowLevels(bool shown) {
    const int first = static_cast<int>(SectionColumns().size());
    HideColumn(first, !shown);
    HideColumn(first + 1, !shown);
}

bool CTestingList::AreLevelsShown() const {
    const int first = static_cast<int>(SectionColumns().size());
    return ColumnCount() > first && !isColumnHidden(first);
}

void CTestingList::SetLevels(std::int32_t id, std::string structural, std::string functional) {
    std::pair<std::string, std::string> levels(std::move(structural), std::move(functional));
    std::pair<std::string, std::string>& shown = m_levels[id];
    if (shown != levels) {
        shown = std::move(levels);
        viewport()->update();
    }
}

void CTestingList::ClearLevels() {
    m_levels.clear();
    viewport()->update();
}

std::string CTestingList::MakeText(int row, int column) const {
    const _TESTING_DATA* section = SectionAt(row);
    if (section == nullptr) {
        return {};
    }
    if (const int level = column - static_cast<int>(SectionColumns().size()); level >= 0) {
        const auto levels = m_levels.find(section->ID);
        return levels == m_levels.end() ? std::string()
                                        : (level == 0 ? levels->second.first : levels->second.second);
    }
    const auto counted = m_recordCounts.find(section->ID);
    const std::int32_t none = m_counted ? 0 : -1;
    return SectionText(*section, counted == m_recordCounts.end() ? none : counted->second, column);
}

// The green alone is faint on white.
bool CTestingList::HasSign(int row) const {
    return HasDefects.contains(ItemData(row));
}

QColor CTestingList::TextColour(int row) const {
    const std::uint32_t colour = SectionColour(HasDefects.contains(ItemData(row)));
    return {static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
            static_cast<int>(colour >> 16 & 0xFF)};
}
