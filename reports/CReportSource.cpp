#include "reports/CReportSource.h"

#include <unordered_set>
#include <utility>

#include "shell/textcodec.h"
#include "store/CDbRec.h"

namespace {

int FindCode(const std::vector<std::string>& codes, const std::string& code) {
    for (std::size_t i = 0; i < codes.size(); ++i) {
        if (EqualNoCase(codes[i], code)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

}  // namespace

bool CReportSource::Read(CDbRec& database, const CArrID& selectedIds, const std::vector<std::string>& codes) {
    CTestingDataArray sections;
    if (!database.ReadAttrib(Project) || !database.ReadTestings(sections)) {
        return false;
    }
    if (!sections.IsEmpty()) {
        FirstSection = sections[0];
    }
    const std::unordered_set<std::uint32_t> selected(selectedIds.begin(), selectedIds.end());
    for (_TESTING_DATA& section : sections) {
        if (selected.contains(static_cast<std::uint32_t>(section.ID))) {
            Sections.Add(std::move(section));
        }
    }
    if (!database.ReadRecords(-1, m_data, true)) {
        return false;
    }

    std::unordered_map<std::int32_t, const _TESTING_DATA*> sectionOf;
    for (const _TESTING_DATA& section : Sections) {
        sectionOf.emplace(section.ID, &section);
    }
    std::unordered_map<std::string, std::pair<int, int>> placesOf;  // by code as it is written
    for (const _REC_DATA& data : m_data) {
        if (!selected.contains(static_cast<std::uint32_t>(data.TestingID))) {
            continue;
        }
        const auto [places, isNew] = placesOf.try_emplace(data.DefectCode);
        if (isNew) {
            places->second = {database.FindDefectIndex(data.DefectCode), FindCode(codes, data.DefectCode)};
        }
        ReportRecord record;
        record.Data = &data;
        const auto section = sectionOf.find(data.TestingID);
        record.Section = section != sectionOf.end() ? section->second : nullptr;
        record.Defect = places->second.first;
        record.Code = places->second.second;
        AllRecords.push_back(record);
        if (!data.IsPipeNormal()) {
            Records.push_back(record);
        }
    }
    return true;
}

const std::string& CReportSource::ShortName(const ReportRecord& record) const {
    return record.Defect < 0 ? record.Data->DefectCode
                             : m_database.DefectNames[static_cast<std::size_t>(record.Defect)];
}

std::string_view CReportSource::FullName(const ReportRecord& record) const {
    return record.Defect < 0
               ? std::string_view()
               : std::string_view(m_database.DefectLabels[static_cast<std::size_t>(record.Defect)]);
}

std::vector<const _TESTING_DATA*> DistinctSections(const CTestingDataArray& sections) {
    std::vector<const _TESTING_DATA*> distinct;
    std::unordered_set<std::string> labels;
    for (const _TESTING_DATA& section : sections) {
        if (labels.insert(section.Label()).second) {
            distinct.push_back(&section);
        }
    }
    return distinct;
}

std::string_view FullDefectName(const CDbRec& database, std::string_view code) {
    const int index = database.FindDefectIndex(code);
    return index < 0 ? std::string_view()
                     : std::string_view(database.DefectLabels[static_cast<std::size_t>(index)]);
}
