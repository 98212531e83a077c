// Chooses sections of a project: for a shapefile of their defects, or for the map.
#pragma once

#include <string>

#include "shell/dialogs/CSizeDlg.h"
#include "store/records/records.h"

class CDbRec;
class CTestingList;
class CTickAllBox;

class CDlgSelTesting : public CSizeDlg {
public:
    // The project is open and outlives the window.
    CDlgSelTesting(CDbRec& database, QWidget* parent);

    CArrID ChosenSections;  // after OK: those that are ticked, from the top down

    // Asks where to, `title` by default, and writes the defects of the chosen sections there.
    void ExportShapeFile(const std::string& title);

protected:
    void OnInitDialog() override;
    void OnOK() override;

private:
    CDbRec& m_database;
    CTestingList* m_sections;
    CTickAllBox* m_all;
};
