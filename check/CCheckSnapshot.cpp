#include "check/CCheckSnapshot.h"

#include <limits>
#include <utility>

#include "history/steps.h"
#include "shell/CHostFiles.h"
#include "shell/CProfile.h"
#include "shell/CPrompts.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/sonar.h"

namespace {

constexpr int RecordsAPiece = 400;
constexpr std::size_t MostIniBytes = 65536;

std::optional<std::int32_t> SectionOfSonar(const std::string& project) {
    const std::string folder = SonarFolder(project);
    if (folder.empty() || !HostFiles().IsFolder(folder)) {
        return std::nullopt;
    }
    const CProfile ini(HostFiles().ReadFile(folder + SonarIniName, MostIniBytes).value_or(std::string()));
    return ParseInt(ini.Get(SonarIniKey, SonarIniKey));
}

}  // namespace

const CheckedCode* CCheckSnapshot::FindCode(std::string_view code) const {
    const auto found = Codes.find(LowerCase(code));
    return found == Codes.end() ? nullptr : &found->second;
}

bool CCheckSnapshot::ReadFrame(CDbRec& database) {
    *this = {};
    m_begun = true;
    m_changes = database.ChangeCount();
    m_lastRecord = std::numeric_limits<std::int32_t>::min();
    Path = database.Path();
    CTestingDataArray sections;
    if (!database.ReadAttrib(Project) || !database.ReadTestings(sections)) {
        return false;
    }
    Route = FindScoringRoute(Project.CriterionName);
    for (_TESTING_DATA& section : sections) {
        m_placeOf.emplace(section.ID, Sections.size());
        Sections.emplace_back().Section = std::move(section);
    }
    for (std::size_t i = 0; i < database.DefectCodes.size(); ++i) {
        CheckedCode& code = Codes[LowerCase(database.DefectCodes[i])];
        code.Type = database.DefectTypes[i];
        if (!database.LoadDefectLevels(database.DefectCodes[i], &code.Texts, nullptr)) {
            return false;
        }
    }
    try {
        for (const std::string& picture : DrawnPictures(database)) {
            Drawn.insert(LowerCase(picture));
        }
    } catch (const CDbError&) {
        // Without a history nothing is known to be drawn on.
    }
    SonarSection = SectionOfSonar(Path);
    return true;
}

void CCheckSnapshot::TakeRecords(CRecDataArray& records) {
    for (_REC_DATA& record : records) {
        m_lastRecord = record.ID;
        const auto place = m_placeOf.find(record.TestingID);
        (place == m_placeOf.end() ? Homeless : Sections[place->second].Records).Add(std::move(record));
    }
}

CCheckSnapshot::Reading CCheckSnapshot::ReadPiece(CDbRec& database) {
    if (!m_begun || m_changes != database.ChangeCount()) {
        return ReadFrame(database) ? Reading::Going : Reading::Failed;
    }
    CRecDataArray records;
    if (!database.LookAtRecordsFrom(m_lastRecord, RecordsAPiece, records, true)) {
        // The usual read tells which row it is.
        (void)database.ReadRecords(-1, records, true);
        return Reading::Failed;
    }
    const bool more = records.GetSize() == RecordsAPiece;
    TakeRecords(records);
    return more ? Reading::Going : Reading::Done;
}
