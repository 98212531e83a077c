#include "fieldimport/gpsimport.h"

#include <string>
#include <unordered_map>

#include "fieldimport/gpssheet.h"
#include "shell/CPrompts.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/stepnames.h"

namespace {

constexpr int MessageDone = 2187;
constexpr int MessageUnread = 3326;

struct Position {
    double X = 0;
    double Y = 0;
};
using Positions = std::unordered_map<std::string, Position>;

// A later row of the same well takes the place of an earlier one.
Positions ByWell(const GpsSheet& sheet) {
    Positions positions;
    for (std::size_t i = 0; i + 2 < sheet.Texts.size(); i += GpsColumns) {
        positions[sheet.Texts[i]] = {ParseDouble(sheet.Texts[i + 1]), ParseDouble(sheet.Texts[i + 2])};
    }
    return positions;
}

// Whether a manhole of the section stands in the sheet.
bool TakePositions(const Positions& positions, _TESTING_DATA& section) {
    const auto start = positions.find(section.StartWell);
    const auto end = positions.find(section.EndWell);
    if (start != positions.end()) {
        section.GpsXStart = start->second.X;
        section.GpsYStart = start->second.Y;
    }
    if (end != positions.end()) {
        section.GpsXEnd = end->second.X;
        section.GpsYEnd = end->second.Y;
    }
    return start != positions.end() || end != positions.end();
}

}  // namespace

bool ImportGpsSheet(CDbRec& database, std::string_view path, GpsImport& result) {
    const CDbStep step(database, StepImportPositions);
    result = {};
    if (!database.IsOpen()) {
        ShowMessage(2185);
        return false;
    }
    GpsSheet sheet;
    if (!ReadGpsSheet(path, sheet)) {
        return false;
    }
    const Positions positions = ByWell(sheet);
    CTestingDataArray sections;
    if (!database.ReadTestings(sections)) {
        ShowMessage(2186);
        return false;
    }
    std::int64_t changed = 0;
    try {
        CDbBatch batch(database);
        for (_TESTING_DATA& section : sections) {
            if (!TakePositions(positions, section)) {
                continue;
            }
            if (database.UpdateTesting(section)) {
                ++changed;
                (void)database.RecalcRecordGps(section.ID);
            }
            // Each further section would only repeat the message.
            if (batch.IsLost() || database.IsReadOnly()) {
                return false;
            }
        }
        batch.Commit();
    } catch (const CDbError& error) {
        ShowFailure(2008, error);
        return false;
    }
    result = {changed, sheet.Unread};
    return true;
}

void TellGpsImport(const GpsImport& result) {
    Prompts().ShowMessage(MessageDone, FillText(LoadMessage(MessageDone), {FormatInt(result.Sections)}));
    if (result.Unread > 0) {
        Prompts().ShowMessage(MessageUnread,
                              FillText(LoadMessage(MessageUnread), {FormatInt(result.Unread)}));
    }
}
