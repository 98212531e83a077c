#include "store/projectdocument.h"

#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <unordered_map>

#include "shell/CPrompts.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/recordjson.h"
#include "store/recordpictures.h"
#include "store/stepnames.h"

namespace {

using Json = nlohmann::ordered_json;

struct LoadedSection {
    _TESTING_DATA Section;
    std::vector<_REC_DATA> Records;
};

struct LoadedDocument {
    std::vector<LoadedSection> Sections;
    std::vector<_REC_DATA> RecordsWithoutSection;
};

const Json& ListOf(const Json& object, const char* name, const std::string& place) {
    static const Json none = Json::array();
    if (!object.contains(name)) {
        return none;
    }
    if (!object[name].is_array()) {
        throw std::runtime_error(place + ": must be a list");
    }
    return object[name];
}

std::vector<_REC_DATA> RecordsFrom(const Json& list, const std::string& place) {
    std::vector<_REC_DATA> records;
    for (const Json& entry : list) {
        _REC_DATA& record = records.emplace_back();
        RecordFromDocument(entry, place + " " + std::to_string(records.size()), record);
    }
    return records;
}

LoadedDocument ParseDocument(std::string_view text) {
    Json json;
    try {
        json = Json::parse(text);
    } catch (const Json::exception& error) {
        throw std::runtime_error(std::string("not valid JSON: ") + error.what());
    }
    if (!json.is_object()) {
        throw std::runtime_error("the document must be an object");
    }
    for (const auto& [name, value] : json.items()) {
        static const std::set<std::string> known{"attributes", "sections", "recordsWithoutSection"};
        if (!known.contains(name)) {
            throw std::runtime_error("the document: unknown field \"" + name + "\"");
        }
    }
    if (json.contains("attributes")) {
        _PRO_DATA unused;  // they stay those of the project, but have to be right
        ProjectFromJson(json["attributes"], "attributes", unused);
    }
    LoadedDocument document;
    for (const Json& entry : ListOf(json, "sections", "sections")) {
        const std::string place = "sections " + std::to_string(document.Sections.size() + 1);
        LoadedSection& section = document.Sections.emplace_back();
        SectionFromJson(entry, place, section.Section);
        section.Records = RecordsFrom(ListOf(entry, "records", place + ", records"), place + ", records");
    }
    document.RecordsWithoutSection =
        RecordsFrom(ListOf(json, "recordsWithoutSection", "recordsWithoutSection"), "recordsWithoutSection");
    return document;
}

class CLoader {
public:
    CLoader(CDbRec& database, LoadResult& result)
        : m_database(database), m_batch(database), m_result(result) {}

    void Load(const LoadedDocument& document) {
        for (std::size_t i = 0; i < document.Sections.size() && !m_batch.IsLost(); ++i) {
            LoadSection(document.Sections[i], "sections " + std::to_string(i + 1));
        }
        LoadOrphans(document.RecordsWithoutSection);
        m_batch.Commit();
    }

private:
    void LoadSection(const LoadedSection& section, const std::string& place) {
        if (!m_database.AddTesting(section.Section)) {
            m_result.Refused.push_back(place);
            return;
        }
        ++m_result.SectionsAdded;
        const std::int32_t id = m_database.LastInsertId();
        for (std::size_t i = 0; i < section.Records.size() && !m_batch.IsLost(); ++i) {
            LoadRecord(section.Records[i], id, place + ", records " + std::to_string(i + 1));
        }
    }

    // They keep apart as they were, under owners that no section will ever get.
    void LoadOrphans(const std::vector<_REC_DATA>& records) {
        std::map<std::int32_t, std::int32_t> owners;
        for (std::size_t i = 0; i < records.size() && !m_batch.IsLost(); ++i) {
            const auto next = owners.empty() ? 0
                                             : std::numeric_limits<std::int32_t>::max() -
                                                   static_cast<std::int32_t>(owners.size());
            const std::int32_t owner = owners.try_emplace(records[i].TestingID, next).first->second;
            LoadRecord(records[i], owner, "recordsWithoutSection " + std::to_string(i + 1));
        }
    }

    void LoadRecord(const _REC_DATA& in, std::int32_t owner, const std::string& place) {
        _REC_DATA record = in;
        record.TestingID = owner;
        record.DefectType = m_database.GetDefectType(record.DefectCode);
        record.Pictures.RemoveAll();
        for (const _PIC_DATA& picture : in.Pictures) {
            AddPicture(record, picture.Picture, picture.PicTimeInVideo);
        }
        if (m_database.AddRecord(record)) {
            ++m_result.RecordsAdded;
        } else {
            m_result.Refused.push_back(place);
        }
    }

    CDbRec& m_database;
    CDbBatch m_batch;
    LoadResult& m_result;
};

}  // namespace

bool DumpProject(CDbRec& database, const std::function<void(std::string_view)>& sink) {
    _PRO_DATA attributes;
    CTestingDataArray sections;
    CRecDataArray records;
    if (!database.ReadAttrib(attributes) || !database.ReadTestings(sections) ||
        !database.ReadRecords(-1, records, false)) {
        return false;
    }
    std::unordered_map<std::int32_t, std::vector<const _REC_DATA*>> bySection;
    for (const _REC_DATA& record : records) {
        bySection[record.TestingID].push_back(&record);
    }
    const auto documents = [](const std::vector<const _REC_DATA*>& list) {
        Json json = Json::array();
        for (const _REC_DATA* record : list) {
            json.push_back(RecordToDocument(*record));
        }
        return json;
    };
    sink("{\n \"attributes\": " + JsonText(ProjectToJson(attributes), 1) + ",\n \"sections\": ");
    CJsonList printed(sink, 1);
    for (const _TESTING_DATA& section : sections) {
        Json entry = SectionToJson(section);
        const auto own = bySection.find(section.ID);
        entry["records"] = own == bySection.end() ? Json::array() : documents(own->second);
        printed.Add(entry);
        if (own != bySection.end()) {
            own->second.clear();
        }
    }
    printed.End();
    sink(",\n \"recordsWithoutSection\": ");
    CJsonList rest(sink, 1);
    for (const _REC_DATA& record : records) {
        if (!bySection[record.TestingID].empty()) {
            rest.Add(RecordToDocument(record));
        }
    }
    rest.End();
    sink("\n}");
    return true;
}

LoadResult LoadProject(CDbRec& database, std::string_view json) {
    const CDbStep step(database, StepLoadDocument);
    const LoadedDocument document = ParseDocument(json);
    LoadResult result;
    try {
        CLoader(database, result).Load(document);
        result.Done = true;
    } catch (const CDbError&) {
        result = LoadResult();
        ShowMessage(2007);
    }
    return result;
}
