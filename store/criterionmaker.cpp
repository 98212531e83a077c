#include "store/criterionmaker.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include "shell/numbers.h"
#include "shell/textcodec.h"
#include "store/CDbBase.h"
#include "store/CDbError.h"
#include "store/CNewDatabaseFile.h"
#include "store/schema.h"
#include "store/sqltext.h"

namespace {

using Json = nlohmann::json;

[[noreturn]] void Refuse(const std::string& place, const std::string& what) {
    throw std::runtime_error(place + ": " + what);
}

const Json& Member(const Json& object, const std::string& place, const char* name) {
    if (!object.is_object() || !object.contains(name)) {
        Refuse(place, std::string("\"") + name + "\" is missing");
    }
    return object[name];
}

std::string TextMember(const Json& object, const std::string& place, const char* name) {
    const Json& value = Member(object, place, name);
    if (!value.is_string() || TrimBlanks(value.get_ref<const std::string&>()).empty() ||
        value.get_ref<const std::string&>().find('\0') != std::string::npos) {
        Refuse(place,
               std::string("\"") + name + "\" must be a text that isn't empty, without zero characters");
    }
    return value.get<std::string>();
}

const Json& ListMember(const Json& object, const std::string& place, const char* name) {
    const Json& value = Member(object, place, name);
    if (!value.is_array()) {
        Refuse(place, std::string("\"") + name + "\" must be a list");
    }
    return value;
}

CriterionLevel ParseLevel(const Json& json, const std::string& place) {
    CriterionLevel level;
    const Json& grade = Member(json, place, "level");
    if (!grade.is_number_integer() || grade < 1 || grade > 4) {
        Refuse(place, "\"level\" must be a whole number from 1 to 4");
    }
    const Json& score = Member(json, place, "score");
    // Scores are read as 32-bit floats.
    if (!score.is_number() ||
        std::fabs(score.get<double>()) > static_cast<double>(std::numeric_limits<float>::max())) {
        Refuse(place, "\"score\" must be a number of the usual size");
    }
    level.Level = grade.get<int>();
    level.Description = TextMember(json, place, "description");
    level.Score = score.get<double>();
    return level;
}

CriterionDefect ParseDefect(const Json& json, const std::string& place) {
    CriterionDefect defect;
    defect.Code = TextMember(json, place, "code");
    defect.Name = TextMember(json, place, "name");
    defect.Type = TextMember(json, place, "type");
    if (defect.Type != "JG" && defect.Type != "GN" && defect.Type != "JCJ") {
        Refuse(place, "\"type\" must be JG, GN or JCJ");
    }
    // Codes stand in statements as they are.
    if (defect.Code.find_first_of("\"'; \t\r\n") != std::string::npos) {
        Refuse(place, "\"code\" may not hold quotes, semicolons or blanks");
    }
    std::set<int> grades;
    for (const Json& entry : ListMember(json, place, "levels")) {
        const CriterionLevel level = ParseLevel(entry, place + " (" + defect.Code + "), levels");
        if (!grades.insert(level.Level).second) {
            Refuse(place + " (" + defect.Code + ")", "a grade stands twice");
        }
        defect.Levels.push_back(level);
    }
    return defect;
}

void InsertDefects(CDbBase& database, const Criterion& criterion) {
    for (const CriterionDefect& defect : criterion.Defects) {
        database.Execute(
            FormatSql("insert into DefectName(DefectCode,DefectName,DefectType)values('%s','%s','%s')",
                      {EscapeSqlText(defect.Code), EscapeSqlText(defect.Name), defect.Type}));
        for (const CriterionLevel& level : defect.Levels) {
            database.Execute(FormatSql(
                "insert into DefectLevel(DefectCode,DefectLevel,Description,Evaluate)values('%s',%d,'%s',%s)",
                {EscapeSqlText(defect.Code), FormatInt(level.Level), EscapeSqlText(level.Description),
                 FormatNumber(level.Score, 12)}));
        }
    }
}

}  // namespace

Criterion ParseCriterion(std::string_view text) {
    Json json;
    try {
        json = Json::parse(text);
    } catch (const Json::exception& error) {
        throw std::runtime_error(std::string("not valid JSON: ") + error.what());
    }
    Criterion criterion;
    criterion.Name = TextMember(json, "the document", "criterionName");
    std::set<std::string> codes;
    for (const Json& entry : ListMember(json, "the document", "defects")) {
        const std::string place = "defect " + std::to_string(criterion.Defects.size() + 1);
        criterion.Defects.push_back(ParseDefect(entry, place));
        if (!codes.insert(LowerCase(criterion.Defects.back().Code)).second) {
            Refuse(place, "the code " + criterion.Defects.back().Code + " stands twice");
        }
    }
    return criterion;
}

void WriteCriterionFile(const Criterion& criterion, const std::string& hostPath) {
    try {
        std::error_code error;  // of a file that isn't there yet
        const std::filesystem::path real = std::filesystem::canonical(hostPath, error);  // links are followed
        CNewDatabaseFile file(error ? hostPath : real.string());
        CDbBase database;
        database.Create(file.Name(), CDbPassword);
        CDbBatch batch(database);
        CreateSchema(database, criterion.Name);
        InsertDefects(database, criterion);
        batch.Commit();
        database.Close();
        file.Flush(DefaultMode());
        file.TakePlace(CNewDatabaseFile::Existing::Replace);
    } catch (const CDbError& error) {
        throw std::runtime_error(hostPath + " can't be written: " + error.what());
    }
}
