#include "store/recordjson.h"

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "store/records/fields.h"

namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void Refuse(const std::string& place, const std::string& what) {
    throw std::runtime_error(place + ": " + what);
}

Json ToJson(const std::string& value) {
    return value;
}
Json ToJson(std::int32_t value) {
    return value;
}
Json ToJson(std::uint8_t value) {
    return static_cast<int>(value);
}
Json ToJson(double value) {
    return NumberToJson(value);
}

template <class Record>
Json FieldsToJson(const Record& record, std::span<const FieldOf<Record>> fields) {
    Json json = Json::object();
    for (const auto& field : fields) {
        std::visit([&](auto member) { json[field.Name] = ToJson(record.*member); }, field.Member);
    }
    return json;
}

void FromJson(const Json& json, const std::string& place, std::string& value) {
    if (!json.is_string()) {
        Refuse(place, "must be a text");
    }
    value = json.get<std::string>();
    if (value.find('\0') != std::string::npos) {
        Refuse(place, "may not hold a zero character");
    }
}

template <class Integer>
void FromJson(const Json& json, const std::string& place,
              Integer& value) requires std::is_integral_v<Integer> {
    using Limits = std::numeric_limits<Integer>;
    // Unsigned values beyond the signed range would compare as negative ones.
    const bool huge = json.is_number_unsigned() && json.get<std::uint64_t>() > std::uint64_t{Limits::max()};
    if (!json.is_number_integer() || huge || json.get<std::int64_t>() < std::int64_t{Limits::min()} ||
        json.get<std::int64_t>() > std::int64_t{Limits::max()}) {
        Refuse(place, "must be a whole number from " + std::to_string(Limits::min()) + " to " +
                          std::to_string(Limits::max()));
    }
    value = json.get<Integer>();
}

template <class Float>
void FromJson(const Json& json, const std::string& place,
              Float& value) requires std::is_floating_point_v<Float> {
    using Limits = std::numeric_limits<Float>;
    if (json == "NaN") {
        value = Limits::quiet_NaN();
    } else if (json == "Infinity" || json == "-Infinity") {
        value = json == "Infinity" ? Limits::infinity() : -Limits::infinity();
    } else if (json.is_number() && std::fabs(json.get<double>()) <= static_cast<double>(Limits::max())) {
        value = static_cast<Float>(json.get<double>());
    } else {
        Refuse(place, "must be a number that its column can hold");
    }
}

template <class Record>
bool FieldFromJson(const std::string& name, const Json& json, const std::string& place, Record& record,
                   std::span<const FieldOf<Record>> fields) {
    for (const auto& field : fields) {
        if (name == field.Name) {
            std::visit([&](auto member) { FromJson(json, place + ", " + name, record.*member); },
                       field.Member);
            return true;
        }
    }
    return false;
}

void PicturesFromJson(const Json& json, const std::string& place, CPicDataArray& pictures) {
    if (!json.is_array() || json.size() > 2) {
        Refuse(place, "must be a list of at most two pictures");
    }
    for (const Json& entry : json) {
        _PIC_DATA picture;
        const std::string at = place + " " + std::to_string(pictures.GetSize() + 1);
        if (!entry.is_object()) {
            Refuse(at, "must be an object");
        }
        for (const auto& [name, value] : entry.items()) {
            if (name == "Picture") {
                FromJson(value, at + ", " + name, picture.Picture);
            } else if (name == "PicTimeInVideo") {
                FromJson(value, at + ", " + name, picture.PicTimeInVideo);
            } else {
                Refuse(at, "unknown field \"" + name + "\"");
            }
        }
        pictures.Add(picture);
    }
}

}  // namespace

Json IdToJson(std::int32_t id) {
    return id < 0 ? Json() : Json(id);
}

Json NumberToJson(double value) {
    if (std::isnan(value)) {
        return "NaN";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-Infinity" : "Infinity";
    }
    return value;
}

Json ProjectToJson(const _PRO_DATA& project) {
    return FieldsToJson(project, ProjectFields());
}

Json SectionToJson(const _TESTING_DATA& section) {
    return FieldsToJson(section, TestingFields());
}

Json RecordToJson(const _REC_DATA& record) {
    Json json = FieldsToJson(record, RecordFields());
    json["Picture1"] = record.GetPicture1();
    json["PicTimeInVideo1"] = NumberToJson(record.GetPicTime1());
    json["Picture2"] = record.GetPicture2();
    json["PicTimeInVideo2"] = NumberToJson(record.GetPicTime2());
    json["DefectType"] = record.DefectType;
    json["Evaluate"] = NumberToJson(static_cast<double>(record.Evaluate));
    return json;
}

Json RecordToDocument(const _REC_DATA& record) {
    Json json = FieldsToJson(record, RecordFields());
    Json pictures = Json::array();
    for (const _PIC_DATA& picture : record.Pictures) {
        pictures.push_back(
            {{"Picture", picture.Picture}, {"PicTimeInVideo", NumberToJson(picture.PicTimeInVideo)}});
    }
    json["Pictures"] = std::move(pictures);
    return json;
}

void ProjectFromJson(const Json& json, const std::string& place, _PRO_DATA& project) {
    if (!json.is_object()) {
        Refuse(place, "must be an object");
    }
    for (const auto& [name, value] : json.items()) {
        if (!FieldFromJson(name, value, place, project, ProjectFields())) {
            Refuse(place, "unknown field \"" + name + "\"");
        }
    }
}

void SectionFromJson(const Json& json, const std::string& place, _TESTING_DATA& section) {
    if (!json.is_object()) {
        Refuse(place, "must be an object");
    }
    for (const auto& [name, value] : json.items()) {
        if (name != "records" && !FieldFromJson(name, value, place, section, TestingFields())) {
            Refuse(place, "unknown field \"" + name + "\"");
        }
    }
}

void RecordFromDocument(const Json& json, const std::string& place, _REC_DATA& record) {
    if (!json.is_object()) {
        Refuse(place, "must be an object");
    }
    for (const auto& [name, value] : json.items()) {
        if (name == "Pictures") {
            PicturesFromJson(value, place + ", Pictures", record.Pictures);
        } else if (!FieldFromJson(name, value, place, record, RecordFields())) {
            Refuse(place, "unknown field \"" + name + "\"");
        }
    }
}

std::string JsonText(const Json& json, int depth) {
    std::string text = json.dump(1, ' ', false, Json::error_handler_t::replace);
    if (depth > 0) {
        const std::string indent(static_cast<std::size_t>(depth), ' ');
        for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
            text.insert(at + 1, indent);
        }
    }
    return text;
}

void CJsonList::Add(const Json& entry) {
    const std::string indent(static_cast<std::size_t>(m_depth) + 1, ' ');
    m_sink((m_empty ? "[\n" : ",\n") + indent + JsonText(entry, m_depth + 1));
    m_empty = false;
}

void CJsonList::End() {
    m_sink(m_empty ? "[]" : "\n" + std::string(static_cast<std::size_t>(m_depth), ' ') + "]");
}
