// The properties of a project, new or existing: name, number, location, standard and comment. The window
// stores nothing; its caller does, with the fields as they are after OK.
#pragma once

#include <string>

#include "shell/dialogs/CSizeDlg.h"
#include "store/catalogue.h"

class CDlgNewPro : public CSizeDlg {
public:
    static constexpr int IdComment = 1020;
    static constexpr int IdCriteria = 1021;
    static constexpr int IdName = 1022;
    static constexpr int IdIndex = 1023;
    static constexpr int IdLocation = 1024;

    explicit CDlgNewPro(QWidget* parent = nullptr);

    int EditFlag = 0;         // 1: an existing project
    int CriterionIndex = -1;  // in CriterionList; -1: none is chosen
    std::string ProjectName;
    std::string Comment;
    std::string ProjectIndex;
    std::string Location;
    CCriterionDataArray CriterionList;  // read when the window opens

    // Opens with what is stored of an existing project.
    void Edit(const _PRO_DATA& project);
    ProjectProperties Properties() const { return {ProjectName, Comment, ProjectIndex, Location}; }

protected:
    void OnInitDialog() override;
    void OnOK() override;

private:
    void FillCriteria();
    void ReadFields();
};
