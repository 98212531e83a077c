#include "lists/CDefectList.h"

#include "lists/listtexts.h"
#include "lists/roworder.h"
#include "shell/dialogs/qttext.h"
#include "store/CDbRec.h"

void CDefectList::CreateColumns(bool fullForm, bool checkBoxes) {
    m_fullForm = fullForm;
    if (checkBoxes) {
        ShowCheckBoxes();
    }
    for (const ListColumn& column : DefectColumns(fullForm)) {
        InsertColumn(column);
    }
}

void CDefectList::Clear() {
    DeleteAllRows();
    m_records.RemoveAll();
    m_names.clear();
}

bool CDefectList::Fill(CDbRec& database, std::int32_t sectionId) {
    Clear();
    CRecDataArray records;
    if (!database.ReadRecords(sectionId, records, false)) {
        return false;
    }
    Show(database, std::move(records));
    return true;
}

void CDefectList::Show(const CDbRec& database, CRecDataArray records) {
    Clear();
    m_records = std::move(records);
    std::vector<std::int32_t> ids;
    for (const _REC_DATA& record : m_records) {
        ids.push_back(record.ID);
        m_names.push_back(DefectName(database, record.DefectCode));
    }
    m_places = PlacesById(m_records);
    ResetRows(ids);
}

const _REC_DATA* CDefectList::RecordAt(int row) const {
    const int place = PlaceOf(row);
    return place < 0 ? nullptr : &m_records[place];
}

int CDefectList::PlaceOf(int row) const {
    if (row < 0 || row >= RowCount()) {
        return -1;
    }
    if (row < m_records.GetSize() && m_records[row].ID == ItemData(row)) {
        return row;
    }
    const auto place = m_places.find(ItemData(row));
    return place == m_places.end() ? -1 : place->second;
}

void CDefectList::DeleteRow(int row) {
    if (const int place = PlaceOf(row); place >= 0) {
        m_records.RemoveAt(place);
        m_names.erase(m_names.begin() + place);
        m_places = PlacesById(m_records);
        CListCtrl::DeleteRow(row);
    }
}

std::string CDefectList::MakeText(int row, int column) const {
    const int place = PlaceOf(row);
    return place < 0
               ? std::string()
               : DefectText(m_records[place], m_names[static_cast<std::size_t>(place)], m_fullForm, column);
}
