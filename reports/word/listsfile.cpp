#include "reports/word/listsfile.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace {

using Json = nlohmann::ordered_json;

constexpr int Version = 1;

// The one table of what there is, for both ways.
template <class Lists, class Visit>
void VisitLists(Lists& lists, const Visit& visit) {
    visit("Codes", lists.Codes);
    visit("Names", lists.Names);
    visit("SectionRows", lists.SectionRows);
    visit("ShortRows", lists.ShortRows);
    visit("LevelCountRows", lists.LevelCountRows);
    visit("LevelLengthRows", lists.LevelLengthRows);
    visit("ProjectStrings", lists.ProjectStrings);
    visit("WellDefectRows", lists.WellDefectRows);
    visit("WellTotalRows", lists.WellTotalRows);
    visit("WellPictureRows", lists.WellPictureRows);
    visit("DefectCountsByType", lists.DefectCountsByType);
    visit("DefectCountsByLevel", lists.DefectCountsByLevel);
}

}  // namespace

std::string ListsToJson(const ReportLists& lists) {
    Json json = {{"version", Version}};
    VisitLists(lists, [&json](const char* name, const auto& list) { json[name] = list; });
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::optional<ReportLists> ListsFromJson(std::string_view text) {
    try {
        const Json json = Json::parse(text);
        if (json.at("version") != Version) {
            return std::nullopt;
        }
        ReportLists lists;
        VisitLists(lists, [&json](const char* name, auto& list) { json.at(name).get_to(list); });
        return lists;
    } catch (const Json::exception&) {
        return std::nullopt;
    }
}
