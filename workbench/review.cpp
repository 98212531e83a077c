#include "workbench/review.h"

#include <chrono>

#include "shell/CPrompts.h"
#include "shell/language.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/stepnames.h"

namespace {

// A broken file may claim any length; nobody inspects a section for more than a month.
constexpr double LongestVideo = std::chrono::duration<double>(std::chrono::days(31)).count();

}  // namespace

std::string ReviewTitle(std::string_view projectName, std::string_view criterionName) {
    std::string title = LoadMessage(2183);
    if (!projectName.empty()) {
        title.append(" - ").append(projectName).append(" [").append(criterionName).append("]");
    }
    return title;
}

Markers BuildMarkers(const CRecDataArray& records, std::string_view video, double duration) {
    Markers markers;
    if (!(duration > 0.0)) {
        return markers;
    }
    const auto seconds = static_cast<std::size_t>(std::min(duration, LongestVideo));
    markers.Flags.assign(seconds, 0);
    markers.Rows.assign(seconds, 0);
    for (int row = 0; row < records.GetSize(); ++row) {
        const double time = records[row].GetPicTime1();
        // A time just before the beginning is cut to the first second.
        if (time > -1.0 && time < static_cast<double>(seconds) && EqualNoCase(records[row].Video, video)) {
            const auto second = static_cast<std::size_t>(static_cast<std::int64_t>(time));
            markers.Flags[second] = 1;
            markers.Rows[second] = static_cast<std::uint32_t>(row);
        }
    }
    return markers;
}

bool RenumberSections(CDbRec& database, const std::vector<std::int32_t>& ids) {
    const CDbStep step(database, StepOrderSections);
    try {
        CDbBatch batch(database);
        std::int32_t place = 0;
        for (const std::int32_t id : ids) {
            if (!database.SetTestingOrder(id, ++place)) {
                return false;
            }
        }
        batch.Commit();
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2008, error);
        return false;
    }
}

std::optional<_REC_DATA> StoredRecord(CDbRec& database, const _REC_DATA& shown) {
    CRecDataArray records;
    if (!database.ReadRecords(shown.TestingID, records, false)) {
        return std::nullopt;
    }
    const auto found = std::find_if(records.begin(), records.end(),
                                    [&](const _REC_DATA& record) { return record.ID == shown.ID; });
    return found == records.end() ? std::nullopt : std::optional(*found);
}
