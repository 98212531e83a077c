#include "store/schema.h"

#include <string>
#include <vector>

#include "store/CDbBase.h"
#include "store/records/fields.h"
#include "store/sqltext.h"

namespace {

// Texts compare without regard to case. Only the owner of a record is indexed, an integer: rows of one
// section then come in ID order without a sort.
constexpr SchemaColumn AttribColumns[] = {
    {"ID", "INTEGER PRIMARY KEY"},
    {"CriterionName", "TEXT COLLATE NOCASE"},
    {"ProjectName", "TEXT COLLATE NOCASE"},
    {"Comment", "TEXT COLLATE NOCASE"},
    {"GpsX", "DOUBLE"},
    {"GpsY", "DOUBLE"},
    {"ProjectIndex", "TEXT COLLATE NOCASE"},
    {"StandardIndex", "TEXT COLLATE NOCASE"},
    {"Location", "TEXT COLLATE NOCASE"},
    {"CreateTime", "TEXT"},
};

const char* Declaration(const FieldOf<_TESTING_DATA>& field) {
    if (field.Role == FieldRole::Key) {
        return "INTEGER PRIMARY KEY AUTOINCREMENT";
    }
    if (field.Role == FieldRole::Stamp) {
        return "TEXT";
    }
    struct {
        const char* operator()(std::int32_t _TESTING_DATA::*) const { return "INTEGER"; }
        const char* operator()(std::uint8_t _TESTING_DATA::*) const { return "INTEGER"; }
        const char* operator()(float _TESTING_DATA::*) const { return "REAL"; }
        const char* operator()(double _TESTING_DATA::*) const { return "DOUBLE"; }
        const char* operator()(std::string _TESTING_DATA::*) const { return "TEXT COLLATE NOCASE"; }
    } const ofType;
    return std::visit(ofType, field.Member);
}

std::vector<SchemaColumn> MakeTestingColumns() {
    std::vector<SchemaColumn> columns;
    for (const auto& field : TestingFields()) {
        columns.push_back({field.Name, Declaration(field)});
    }
    return columns;
}

constexpr SchemaColumn RecordColumns[] = {
    {"ID", "INTEGER PRIMARY KEY AUTOINCREMENT"},
    {"TestingID", "INTEGER"},
    {"DefectCode", "TEXT COLLATE NOCASE"},
    {"Comment", "TEXT COLLATE NOCASE"},
    {"DefectLevel", "INTEGER"},
    {"DistanceStart", "REAL"},
    {"DistanceEnd", "REAL"},
    {"DirectionStart", "INTEGER"},
    {"DirectionEnd", "INTEGER"},
    {"Video", "TEXT COLLATE NOCASE"},
    {"Picture1", "TEXT COLLATE NOCASE"},
    {"PicTimeInVideo1", "DOUBLE"},
    {"Picture2", "TEXT COLLATE NOCASE"},
    {"PicTimeInVideo2", "DOUBLE"},
    {"GpsX", "DOUBLE"},
    {"GpsY", "DOUBLE"},
    {"CreateTime", "TEXT"},
    {"JcjNo", "TEXT COLLATE NOCASE DEFAULT ''"},
    {"JcjType", "INTEGER DEFAULT 0"},
    {"JcjUnderRoad", "INTEGER DEFAULT 0"},
    {"JcjMaterial", "INTEGER DEFAULT 0"},
    {"JcjCoverMaterial", "INTEGER DEFAULT 0"},
};

constexpr SchemaColumn DefectNameColumns[] = {
    {"DefectCode", "TEXT COLLATE NOCASE"},
    {"DefectName", "TEXT COLLATE NOCASE"},
    {"DefectType", "TEXT COLLATE NOCASE"},
};

constexpr SchemaColumn DefectLevelColumns[] = {
    {"DefectCode", "TEXT COLLATE NOCASE"},
    {"DefectLevel", "INTEGER"},
    {"Description", "TEXT COLLATE NOCASE"},
    {"Evaluate", "REAL"},
};

}  // namespace

std::span<const SchemaTable> SchemaTables() {
    static const std::vector<SchemaColumn> testing = MakeTestingColumns();
    static const SchemaTable tables[] = {
        {"Attrib", AttribColumns},           {"Testing", testing},
        {"Record", RecordColumns},           {"DefectName", DefectNameColumns},
        {"DefectLevel", DefectLevelColumns},
    };
    return tables;
}

void CreateSchema(CDbBase& database, std::string_view criterionName) {
    for (const SchemaTable& table : SchemaTables()) {
        std::string columns;
        for (const SchemaColumn& column : table.Columns) {
            columns += (columns.empty() ? "" : ", ") + std::string(column.Name) + " " + column.Declaration;
        }
        database.Execute(std::string("CREATE TABLE ") + table.Name + " (" + columns + ")");
    }
    database.Execute(RecordIndex);
    database.Execute(
        FormatSql("insert into Attrib(ID,CriterionName,ProjectName,Comment,GpsX,GpsY,"
                  "ProjectIndex,StandardIndex,Location)values(1,'%s','','',0,0,'','','')",
                  {EscapeSqlText(criterionName)}));
}
