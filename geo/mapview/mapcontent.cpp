#include "geo/mapview/mapcontent.h"

#include <algorithm>
#include <unordered_set>

#include "geo/mapview/maptexts.h"
#include "store/CDbRec.h"
#include "store/recordtexts.h"

bool ReadMapContent(CDbRec& database, std::int32_t section, const CArrID& chosen, MapContent& content) {
    CRecDataArray records;
    CTestingDataArray sections;
    if (!database.ReadRecords(section, records, false) || !database.ReadTestings(sections)) {
        return false;
    }
    const std::unordered_set<std::uint32_t> ids(chosen.begin(), chosen.end());
    content = {};
    for (_REC_DATA& record : records) {
        if (record.TestingID >= 0 && ids.contains(static_cast<std::uint32_t>(record.TestingID))) {
            content.Records.Add(std::move(record));
        }
    }
    for (_TESTING_DATA& one : sections) {
        if (ids.contains(static_cast<std::uint32_t>(one.ID))) {
            content.Sections.Add(std::move(one));
        }
    }
    return true;
}

std::vector<std::string> MapCalls(const MapContent& content) {
    std::vector<std::string> calls;
    for (const _REC_DATA& record : content.Records) {
        calls.push_back(AddMarkerCall(record));
    }
    for (const _TESTING_DATA& section : content.Sections) {
        calls.push_back(LineCall(section));
    }
    return calls;
}

std::string BubbleOf(const CDbRec& database, const MapContent& content, int row) {
    const _REC_DATA& record = content.Records[row];
    const auto section = std::find_if(content.Sections.begin(), content.Sections.end(),
                                      [&](const _TESTING_DATA& one) { return one.ID == record.TestingID; });
    return BubbleText(record, section == content.Sections.end() ? std::string() : section->TestingName,
                      DefectName(database, record.DefectCode));
}
