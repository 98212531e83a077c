// The review window's commands on the check before hand-over, whose window stands beside it.
#include <algorithm>
#include <utility>

#include "check/dialogs/CDlgCheck.h"
#include "defects/defectform.h"
#include "defects/manhole.h"
#include "lists/CDefectList.h"
#include "lists/CTestingList.h"
#include "reports/CRecExport.h"
#include "store/dialogs/CDlgNewPro.h"
#include "store/sectionform.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

struct FormField {
    std::string_view Column;
    int Control;
};

constexpr FormField OfProject[] = {
    {"ProjectIndex", CDlgNewPro::IdIndex},
    {"Location", CDlgNewPro::IdLocation},
    {"ProjectName", CDlgNewPro::IdName},
    {"Comment", CDlgNewPro::IdComment},
};

constexpr FormField OfSection[] = {
    {"StartWell", SectionControl::StartWell},
    {"EndWell", SectionControl::EndWell},
    {"PipeType", SectionControl::PipeType},
    {"PipeMaterial", SectionControl::Material},
    {"TestingDirection", SectionControl::Direction},
    {"TestingDate", SectionControl::Date},
    {"TestingName", SectionControl::Name},
    {"Location", SectionControl::Location},
    {"TestingCompany", SectionControl::Company},
    {"Tester", SectionControl::Tester},
    {"TaskIndex", SectionControl::TaskNo},
    {"TaskName", SectionControl::TaskName},
    {"PipeLength", SectionControl::PipeLength},
    {"PipeDiameter", SectionControl::Diameter},
    {"DetectionLength", SectionControl::DetectionLength},
};

constexpr FormField OfRecord[] = {
    {"DefectCode", DefectControl::Name},         {"DefectLevel", DefectControl::Grade},
    {"Comment", DefectControl::Comment},         {"DistanceStart", DefectControl::StartDistance},
    {"DistanceEnd", DefectControl::EndDistance}, {"JcjNo", ManholeControl::Number},
};

// The command whose form has the finding's field, and the control in it; 0 if there is none.
std::pair<int, int> FormOf(const CheckFinding& finding) {
    const auto find = [&](int command, std::span<const FormField> fields) {
        const auto field = std::find_if(fields.begin(), fields.end(),
                                        [&](const FormField& one) { return one.Column == finding.Field; });
        return field == fields.end() ? std::pair(0, 0) : std::pair(command, field->Control);
    };
    if (finding.Section < 0) {
        return find(CommandProjectProperties, OfProject);
    }
    return finding.Record < 0 ? find(CommandSectionProperties, OfSection) : find(CommandEditDefect, OfRecord);
}

void GoTo(CDlgProAtrrib& window, const CheckFinding& finding) {
    if (finding.Section >= 0) {
        window.Asked = [&] { window.Session().GoTo(finding.Section, finding.Record); };
        window.Run(CommandAskedLook);
    }
    const auto [command, control] = FormOf(finding);
    if (command != 0 && !window.Session().IsReadOnly()) {
        window.FormField = control;
        window.Run(command);
        window.FormField = 0;
        window.CheckWindow().Come();
        return;
    }
    window.activateWindow();
    if (finding.Record >= 0) {
        window.DefectList().setFocus();
    } else {
        window.SectionList().setFocus();
    }
}

}  // namespace

void CheckCommand(CDlgProAtrrib& window) {
    CDlgCheck& check = window.CheckWindow();
    if (!check.OnGoTo) {
        check.OnGoTo = [&window](const CheckFinding& finding) { GoTo(window, finding); };
        check.OnChange = [&window](const std::function<void()>& change) {
            window.Asked = change;
            window.Run(CommandAskedChange);
        };
    }
    check.Come();
}

void AskedCommand(CDlgProAtrrib& window) {
    if (const std::function<void()> asked = std::exchange(window.Asked, nullptr)) {
        asked();
    }
}
