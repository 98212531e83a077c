#include "assessment/explain/dialogs/gradechoice.h"

#include <QComboBox>

#include "shell/dialogs/projectsettings.h"
#include "shell/dialogs/qttext.h"

namespace {

constexpr const char* GroupK = "GradeK";
constexpr const char* GroupT = "GradeT";

int KeptRow(const char* group, std::string_view projectPath, std::span<const ParameterRow> rows) {
    const int row = ProjectSetting(group, projectPath).toInt();
    return row >= 0 && row < static_cast<int>(rows.size()) ? row : 0;
}

float ValueAt(std::span<const ParameterRow> rows, int row) {
    return rows.empty() ? 0.0F : rows[static_cast<std::size_t>(row)].Value;
}

}  // namespace

GradeChoice KeptGradeChoice(std::string_view projectPath, ScoringRoute route) {
    GradeChoice choice;
    choice.RowK = KeptRow(GroupK, projectPath, ParametersK(route));
    choice.RowT = KeptRow(GroupT, projectPath, ParametersT(route));
    choice.K = ValueAt(ParametersK(route), choice.RowK);
    choice.T = ValueAt(ParametersT(route), choice.RowT);
    return choice;
}

void KeepGradeChoice(std::string_view projectPath, int rowK, int rowT) {
    KeepProjectSetting(GroupK, projectPath, rowK);
    KeepProjectSetting(GroupT, projectPath, rowT);
}

void FillParameterBox(QComboBox& box, std::span<const ParameterRow> rows) {
    box.clear();
    for (const ParameterRow& row : rows) {
        box.addItem(MessageText(row.Message), row.Value);
    }
    box.setCurrentIndex(rows.empty() ? -1 : 0);
}
