// Why a section has its grade: its derivation line by line, each leading to its record. Here the parameters
// of region and soil are chosen, with which grades on the screen are scored.
#pragma once

#include <cstdint>
#include <optional>

#include "assessment/explain/explanation.h"
#include "shell/dialogs/CSizeDlg.h"

class CDbRec;
class CExplanationList;
class QComboBox;
class QPushButton;

class CDlgExplain : public CSizeDlg {
public:
    static constexpr int IdLines = 5061;
    static constexpr int IdRegion = 5062;
    static constexpr int IdSoil = 5063;
    static constexpr int IdGoTo = 5064;
    static constexpr int IdReorder = 5065;
    static constexpr int IdCopy = 5066;
    static constexpr int IdRegionLabel = 5067;
    static constexpr int IdSoilLabel = 5068;

    // The project is open and outlives the window, as do its sections. Without `canChange` its records can't
    // be put in another order.
    CDlgExplain(CDbRec& database, ScoringRoute route, const CTestingDataArray& sections, std::int32_t section,
                bool canChange, QWidget* parent);

    // The line that the operator chose leads here; -1 if he chose none.
    std::int32_t Section = -1;
    std::int32_t Record = -1;

protected:
    void OnInitDialog() override;
    void OnOK() override { GoTo(); }

private:
    QComboBox* AddParameter(QLayout& row, int labelId, int label, int id);
    void Fill();
    void GoTo();
    void Reorder();
    void Copy();
    void UpdateControls();

    CDbRec& m_database;
    ScoringRoute m_route;
    const CTestingDataArray& m_sections;
    std::int32_t m_section;
    bool m_canChange;
    std::optional<Explanation> m_explanation;
    CExplanationList* m_lines;
    QComboBox* m_region = nullptr;
    QComboBox* m_soil = nullptr;
};
