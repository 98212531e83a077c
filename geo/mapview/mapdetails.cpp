#include "geo/mapview/mapdetails.h"

#include <array>
#include <map>
#include <nlohmann/json.hpp>
#include <unordered_map>

#include "assessment/sectiongrades.h"
#include "assessment/standards.h"
#include "shell/language.h"
#include "store/CDbRec.h"
#include "store/recordjson.h"

namespace {

using Json = nlohmann::ordered_json;

struct Level {
    std::string Text;
    int Rank = -1;
};

struct Levels {
    Level Structural;
    Level Functional;
};

// As the standards write them, in the operator's language.
int RankOf(std::string_view text) {
    // Those that hold others first.
    constexpr std::array<std::pair<std::string_view, int>, 10> ranks = {{{"Ⅴ", 5},
                                                                         {"Ⅳ", 4},
                                                                         {"Ⅲ", 3},
                                                                         {"Ⅱ", 2},
                                                                         {"Ⅰ", 1},
                                                                         {"III", 3},
                                                                         {"II", 2},
                                                                         {"IV", 4},
                                                                         {"V", 5},
                                                                         {"I", 1}}};
    for (const auto& [sign, rank] : ranks) {
        if (text.find(sign) != text.npos) {
            return rank;
        }
    }
    return 0;
}

Level MakeLevel(std::uint32_t count, const std::string& level) {
    return count == 0 ? Level{{}, 0} : Level{level, RankOf(level)};
}

// Sections that are scored as one have the level of all.
std::string GroupKey(const _TESTING_DATA& section, bool density) {
    return density ? section.Label() + '\n' + section.TestingDirection : std::to_string(section.ID);
}

std::map<std::string, Levels> GradeAll(CDbRec& database, ScoringRoute route, const MapContent& content) {
    std::map<std::string, Levels> levels;
    std::unordered_map<std::int32_t, std::size_t> places;
    std::vector<SectionRecords> sections;
    for (const _TESTING_DATA& section : content.Sections) {
        places[section.ID] = sections.size();
        sections.push_back({section, {}});
    }
    CRecDataArray records;
    if (!HasEvaluator(route) || !database.ReadRecords(-1, records, true)) {
        return levels;
    }
    for (_REC_DATA& record : records) {
        if (const auto place = places.find(record.TestingID); place != places.end()) {
            sections[place->second].Records.Add(std::move(record));
        }
    }
    const bool density = IsDensityScoring(route);
    for (const SectionGrade& grade :
         GradeSections(route, std::move(sections), ParametersK(route).front().Value,
                       ParametersT(route).front().Value)) {
        const _EVALUATE_DATA& result = grade.Result;
        levels[GroupKey(grade.Section, density)] = {
            MakeLevel(result.countJG, density ? result.riLevelJG : result.levelJG),
            MakeLevel(result.countGN, density ? result.riLevelGN : result.levelGN)};
    }
    return levels;
}

Json SectionsToJson(CDbRec& database, ScoringRoute route, const MapContent& content) {
    const std::map<std::string, Levels> levels = GradeAll(database, route, content);
    std::unordered_map<std::int32_t, int> first;
    for (int i = content.Records.GetUpperBound(); i >= 0; --i) {
        first[content.Records[i].TestingID] = i;
    }
    Json list = Json::array();
    for (const _TESTING_DATA& section : content.Sections) {
        const auto level = levels.find(GroupKey(section, IsDensityScoring(route)));
        const Levels known = level == levels.end() ? Levels() : level->second;
        const auto marker = first.find(section.ID);
        list.push_back({{"a", section.StartWell},
                        {"b", section.EndWell},
                        {"s", known.Structural.Text},
                        {"sr", known.Structural.Rank},
                        {"f", known.Functional.Text},
                        {"fr", known.Functional.Rank},
                        {"m", marker == first.end() ? -1 : marker->second}});
    }
    return list;
}

Json TilesToJson(const MapTiles& tiles) {
    return {{"address", tiles.File.empty() ? tiles.Address : "drovane://tile/{z}/{x}/{y}"},
            {"attribution", tiles.Attribution},
            {"deepest", tiles.DeepestZoom},
            {"system", tiles.System}};
}

Json Texts() {
    constexpr std::array<std::pair<const char*, int>, 9> numbers = {{{"structural", 3424},
                                                                     {"functional", 3425},
                                                                     {"without", 3426},
                                                                     {"all", 3427},
                                                                     {"open", 3428},
                                                                     {"level", 3429},
                                                                     {"none", 3430},
                                                                     {"norule", 3431},
                                                                     {"grade", 3432}}};
    Json texts = Json::object();
    for (const auto& [name, number] : numbers) {
        texts[name] = LoadMessage(number);
    }
    return texts;
}

}  // namespace

std::string DetailsCall(CDbRec& database, std::string_view criterionName, const MapContent& content,
                        const MapTiles& tiles) {
    Json markers = Json::array();
    for (const _REC_DATA& record : content.Records) {
        markers.push_back(record.DefectLevel);
    }
    const Json details = {{"tiles", TilesToJson(tiles)},
                          {"sections", SectionsToJson(database, FindScoringRoute(criterionName), content)},
                          {"markers", std::move(markers)},
                          {"texts", Texts()}};
    // Nothing but ASCII: no character of a text ends a line of the script.
    return "SetDetails(" + details.dump(-1, ' ', true, Json::error_handler_t::replace) + ")";
}
