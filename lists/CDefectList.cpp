#include "lists/CDefectList.h"

#include "lists/listtexts.h"
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
    ResetRows(ids);
}

const _REC_DATA* CDefectList::RecordAt(int row) const {
    return row >= 0 && row < m_records.GetSize() ? &m_records[row] : nullptr;
}

void CDefectList::DeleteRow(int row) {
    if (RecordAt(row) != nullptr) {
        m_records.RemoveAt(row);
        m_names.erase(m_names.begin() + row);
        CListCtrl::DeleteRow(row);
    }
}

std::string CDefectList::MakeText(int row, int column) const {
    const _REC_DATA* record = RecordAt(row);
    return record == nullptr
               ? std::string()
               : DefectText(*record, m_names[static_cast<std::size_t>(row)], m_fullForm, column);
}
