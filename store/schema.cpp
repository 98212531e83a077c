#include "store/schema.h"

#include "store/CDbBase.h"
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

constexpr SchemaColumn TestingColumns[] = {
    {"ID", "INTEGER PRIMARY KEY AUTOINCREMENT"},
    {"TestingOrder", "INTEGER"},
    {"TestingName", "TEXT COLLATE NOCASE"},
    {"Comment", "TEXT COLLATE NOCASE"},
    {"GpsXStart", "DOUBLE"},
    {"GpsYStart", "DOUBLE"},
    {"GpsXEnd", "DOUBLE"},
    {"GpsYEnd", "DOUBLE"},
    {"DistanceStart", "REAL"},
    {"DistanceEnd", "REAL"},
    {"VideoFileList", "TEXT COLLATE NOCASE"},
    {"CreateTime", "TEXT"},
    {"TaskIndex", "TEXT COLLATE NOCASE"},
    {"TestingDirection", "TEXT COLLATE NOCASE"},
    {"TaskName", "TEXT COLLATE NOCASE"},
    {"Location", "TEXT COLLATE NOCASE"},
    {"StartWell", "TEXT COLLATE NOCASE"},
    {"EndWell", "TEXT COLLATE NOCASE"},
    {"PipeType", "TEXT COLLATE NOCASE"},
    {"PipeMaterial", "TEXT COLLATE NOCASE"},
    {"DepthStart", "TEXT COLLATE NOCASE"},
    {"DepthEnd", "TEXT COLLATE NOCASE"},
    {"ManholeDepth", "TEXT COLLATE NOCASE"},
    {"PipeLength", "TEXT COLLATE NOCASE"},
    {"DetectionLength", "TEXT COLLATE NOCASE"},
    {"LayingTime", "TEXT COLLATE NOCASE"},
    {"EngineeringUnits", "TEXT COLLATE NOCASE"},
    {"PipeDiameter", "TEXT COLLATE NOCASE"},
    {"TestingCompany", "TEXT COLLATE NOCASE"},
    {"Tester", "TEXT COLLATE NOCASE"},
    {"TestingDate", "TEXT COLLATE NOCASE"},
};

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

constexpr SchemaTable Tables[] = {
    {"Attrib", AttribColumns},         {"Testing", TestingColumns},         {"Record", RecordColumns},
    {"DefectName", DefectNameColumns}, {"DefectLevel", DefectLevelColumns},
};

}  // namespace

std::span<const SchemaTable> SchemaTables() {
    return Tables;
}

void CreateSchema(CDbBase& database, std::string_view criterionName) {
    for (const SchemaTable& table : Tables) {
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
