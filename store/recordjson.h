// Records as JSON, every field under its column name. Numbers that aren't finite are texts ("NaN",
// "Infinity", "-Infinity"), since JSON has no such numbers.
#pragma once

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "store/records/records.h"

nlohmann::ordered_json NumberToJson(double value);
// null for "none", which is below 0.
nlohmann::ordered_json IdToJson(std::int32_t id);

nlohmann::ordered_json ProjectToJson(const _PRO_DATA& project);
nlohmann::ordered_json SectionToJson(const _TESTING_DATA& section);
// As a row of the table: pictures under their four columns, with the group and the score of the code.
nlohmann::ordered_json RecordToJson(const _REC_DATA& record);
// As a part of a document: what is stored, with the pictures as a list of path and time.
nlohmann::ordered_json RecordToDocument(const _REC_DATA& record);

// All throw std::runtime_error that tells what is wrong and where: an unknown field, a wrong type, a
// number out of its column's range. Members that aren't there keep the default; `place` names the value.
// Pictures of a record are taken as they stand; nothing is copied.
void ProjectFromJson(const nlohmann::ordered_json& json, const std::string& place, _PRO_DATA& project);
void SectionFromJson(const nlohmann::ordered_json& json, const std::string& place, _TESTING_DATA& section);
void RecordFromDocument(const nlohmann::ordered_json& json, const std::string& place, _REC_DATA& record);

// The document as text; bytes that are no UTF-8 don't stop it. Inside other text `depth` levels deep.
std::string JsonText(const nlohmann::ordered_json& json, int depth = 0);

// Prints a list entry by entry, as JsonText prints it whole: a tree of 100,000 entries takes half a gigabyte.
class CJsonList {
public:
    using Sink = std::function<void(std::string_view text)>;
    explicit CJsonList(Sink sink, int depth = 0) : m_sink(std::move(sink)), m_depth(depth) {}
    void Add(const nlohmann::ordered_json& entry);
    void End();

private:
    Sink m_sink;
    int m_depth;
    bool m_empty = true;
};
