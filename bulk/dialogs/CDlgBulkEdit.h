// The same change of many sections or defects: which rows, which fields, and what each row would become, with
// what the checks refuse, before anything is done.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bulk/edits.h"
#include "shell/dialogs/CSizeDlg.h"

class CBulkList;
class CDbRec;
class CQueryRows;
class CTickAllBox;
class QComboBox;
class QLabel;
class QRadioButton;

class CDlgBulkEdit : public CSizeDlg {
public:
    static constexpr int IdSections = 5130;
    static constexpr int IdRecords = 5131;
    static constexpr int IdList = 5132;
    static constexpr int IdTickAll = 5133;
    static constexpr int IdMore = 5134;
    static constexpr int IdState = 5135;
    // The first field and its value; those of further ones follow.
    static constexpr int IdField = 5140;
    static constexpr int IdValue = 5150;
    static constexpr int MostFields = 6;

    struct Choice {
        std::vector<std::int32_t> Sections;  // IDs
        std::vector<std::int32_t> Records;
        bool RecordsFirst = false;
        std::vector<std::int32_t> Ticked;  // of the kind that is shown first; of the other one all are
    };
    // Both outlive it. Nothing is changed unless the operator says so; then it is one step.
    CDlgBulkEdit(CDbRec& database, const CQueryRows& rows, const Choice& choice, QWidget* parent);

protected:
    void OnOK() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct FieldLine {
        QComboBox* Field = nullptr;
        QComboBox* Value = nullptr;
    };

    void MakeControls();
    void AddField();
    void OfferFields(FieldLine& line);
    void OfferValues(FieldLine& line);
    void ShowRows(const std::vector<std::int32_t>& ticked);
    std::vector<FieldChange> Changes() const;
    void Plan();
    void ShowState();
    bool IsOfRecords() const;

    CDbRec& m_database;
    std::vector<const _TESTING_DATA*> m_sections;
    std::vector<const _REC_DATA*> m_records;
    std::vector<std::string> m_recordLabels;
    SectionEdits m_sectionEdits;
    RecordEdits m_recordEdits;
    std::string m_refused;  // what no row can take
    std::vector<FieldLine> m_fields;
    class QGridLayout* m_grid = nullptr;
    QRadioButton* m_ofSections = nullptr;
    QRadioButton* m_ofRecords = nullptr;
    CBulkList* m_list = nullptr;
    CTickAllBox* m_all = nullptr;
    QLabel* m_state = nullptr;
};
