#include "store/CDbCriterion.h"

#include "shell/CPrompts.h"
#include "store/CDbError.h"
#include "store/COldFiles.h"
#include "store/sqltext.h"

namespace {

constexpr int HighestGrade = 4;

}  // namespace

CDbCriterion::~CDbCriterion() {
    CDbCriterion::Close();
}

void CDbCriterion::Close() {
    CDbBase::Close();
    DefectNames.clear();
    DefectCodes.clear();
    DefectTypes.clear();
    DefectLabels.clear();
}

bool CDbCriterion::OpenDatabase(std::string_view path, std::string_view password, Access access) {
    try {
        Close();
        if (!OldFiles().PrepareToOpen(path, password) || !Open(path, password, access)) {
            return false;
        }
        if (LoadDefectNames()) {
            if (access == Access::Exclusive && !IsReadOnly()) {
                SetWatch(ChangeWatches().Watch(*this));
            }
            return true;
        }
        Close();
    } catch (const CDbError&) {
        ShowMessage(2001);
    }
    return false;
}

bool CDbCriterion::LoadDefectNames() {
    try {
        for (CDbCursor rows = Execute("Select * from DefectName"); !rows.IsEof(); rows.MoveNext()) {
            DefectCodes.push_back(rows.GetText("DefectCode"));
            DefectNames.push_back(rows.GetText("DefectName"));
            DefectTypes.push_back(rows.GetText("DefectType"));
            DefectLabels.push_back("(" + DefectCodes.back() + ")" + DefectNames.back());
        }
        return true;
    } catch (const CDbError&) {
        ShowMessage(2002);
        return false;
    }
}

bool CDbCriterion::LoadDefectLevels(std::string_view code, std::vector<std::string>* descriptions,
                                    std::vector<float>* evaluates) {
    try {
        const std::string statement =
            FormatSql("Select * from DefectLevel where DefectCode=\"%s\" Order By DefectLevel",
                      {EscapeSqlQuoted(code)});
        for (CDbCursor rows = Execute(statement); !rows.IsEof(); rows.MoveNext()) {
            const std::int32_t grade = rows.GetLong("DefectLevel");
            if (grade < 1 || grade > HighestGrade) {
                continue;
            }
            const auto count = static_cast<std::size_t>(grade);
            if (descriptions != nullptr) {
                descriptions->resize(count);
                (*descriptions)[count - 1] = rows.GetText("Description");
            }
            if (evaluates != nullptr) {
                evaluates->resize(count);
                (*evaluates)[count - 1] = rows.GetFloat("Evaluate");
            }
        }
        return true;
    } catch (const CDbError&) {
        ShowMessage(2003);
        return false;
    }
}
