#include "store/CDbRec.h"

#include "geo/position/CGpsCalc.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "store/records/fields.h"
#include "store/sqltext.h"
#include "store/stepnames.h"

namespace {

std::string SqlValue(std::int32_t value) {
    return FormatInt(value);
}

std::string SqlValue(float value) {
    return SqlDistance(value);
}

std::string SqlValue(double value) {
    return SqlCoordinate(value);
}

std::string SqlValue(const std::string& value) {
    return EscapeSqlText(value);
}

// What an insert and an update of a section write, in the order of both statements.
std::vector<std::string> SectionValues(const _TESTING_DATA& in) {
    std::vector<std::string> values;
    for (const auto& field : TestingFields()) {
        if (field.Role == FieldRole::Value) {
            values.push_back(std::visit([&](auto member) { return SqlValue(in.*member); }, field.Member));
        }
    }
    return values;
}

void Read(CDbCursor& row, const char* column, std::int32_t& value) {
    value = row.GetLong(column);
}

void Read(CDbCursor& row, const char* column, std::uint8_t& value) {
    value = static_cast<std::uint8_t>(row.GetLong(column));
}

void Read(CDbCursor& row, const char* column, float& value) {
    value = row.GetFloat(column);
}

void Read(CDbCursor& row, const char* column, double& value) {
    value = row.GetDouble(column);
}

void Read(CDbCursor& row, const char* column, std::string& value) {
    value = row.GetText(column);
}

}  // namespace

CDbRec::~CDbRec() {
    CDbRec::Close();
}

void CDbRec::Close() {
    CDbCriterion::Close();
    m_states.clear();
    m_evaluates.clear();
}

bool CDbRec::ReadAttrib(_PRO_DATA& out) {
    try {
        CDbCursor row = Execute("Select * from Attrib where ID = 1");
        if (!row.IsEof()) {
            out.CriterionName = row.GetText("CriterionName");
            out.ProjectName = row.GetText("ProjectName");
            out.Comment = row.GetText("Comment");
            out.GpsX = row.GetDouble("GpsX");
            out.GpsY = row.GetDouble("GpsY");
            out.ProjectIndex = row.GetText("ProjectIndex");
            out.StandardIndex = row.GetText("StandardIndex");
            out.Location = row.GetText("Location");
            out.CreateTime = row.GetDate("CreateTime");
        }
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2005, error);
        return false;
    }
}

bool CDbRec::WriteAttrib(const _PRO_DATA& in, bool stampCreateTime) {
    const CDbStep step(*this, StepChangeProject);
    try {
        Execute(FormatSql(
            "Update Attrib set ProjectName = '%s', Comment = '%s', GpsX = %s, GpsY = %s "
            ",ProjectIndex = '%s',StandardIndex = '%s' , Location = '%s' %s where ID = 1",
            {EscapeSqlText(in.ProjectName), EscapeSqlText(in.Comment), SqlCoordinate(in.GpsX),
             SqlCoordinate(in.GpsY), EscapeSqlText(in.ProjectIndex), EscapeSqlText(in.StandardIndex),
             EscapeSqlText(in.Location), stampCreateTime ? ",CreateTime = now()" : ""}));
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2006, error);
        return false;
    }
}

_TESTING_DATA CDbRec::ReadTestingRow(CDbCursor& row) {
    _TESTING_DATA section;
    for (const auto& field : TestingFields()) {
        if (field.Role == FieldRole::Stamp) {
            section.CreateTime = row.GetDate(field.Name);
        } else {
            std::visit([&](auto member) { Read(row, field.Name, section.*member); }, field.Member);
        }
    }
    return section;
}

bool CDbRec::ReadTestings(CTestingDataArray& out) {
    out.RemoveAll();
    try {
        for (CDbCursor rows = Execute("Select * from Testing order by TestingOrder"); !rows.IsEof();
             rows.MoveNext()) {
            out.Add(ReadTestingRow(rows));
        }
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2013, error);
        return false;
    }
}

bool CDbRec::FindTestingByWells(std::string_view start, std::string_view end, _TESTING_DATA* out) {
    CDbCursor row = Execute(FormatSql("Select * from Testing where StartWell = '%s'  AND EndWell = '%s'",
                                      {EscapeSqlText(start), EscapeSqlText(end)}));
    if (row.IsEof()) {
        return false;
    }
    if (out != nullptr) {
        *out = ReadTestingRow(row);
    }
    return true;
}

bool CDbRec::GetNextTestingOrder(std::int32_t& out) {
    out = 1;
    try {
        // The inner query is tied to the outer row, so that all rows match and the first decides.
        CDbCursor row = Execute(
            "select * from Testing as a where  a.TestingOrder=(select max(b.TestingOrder) from Testing as b "
            "where a.id = b.id )");
        if (!row.IsEof()) {
            // Behind the last of all numbers comes the first, as a stored order may be any.
            const std::int64_t next = std::int64_t{row.GetLong("TestingOrder")} + 1;
            out = static_cast<std::int32_t>(next);
        }
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2013, error);
        return false;
    }
}

bool CDbRec::AddTesting(const _TESTING_DATA& in) {
    const CDbStep step(*this, StepAddSection);
    std::int32_t order = 0;
    if (!GetNextTestingOrder(order)) {
        return false;
    }
    try {
        std::vector<std::string> values = SectionValues(in);
        values.insert(values.begin(), FormatInt(order));
        Execute(FormatSql(
            "insert into Testing(TestingOrder, "
            "TestingName,Comment,GpsXStart,GpsYStart,GpsXEnd,GpsYEnd,\t\t\t\tDistanceStart,DistanceEnd,"
            "VideoFileList,CreateTime,\t\t\t\tTaskIndex,TestingDirection,TaskName,Location,StartWell,"
            "EndWell,PipeType,PipeMaterial,\t\t\t\tDepthStart, DepthEnd, ManholeDepth,\tPipeLength, "
            "DetectionLength, LayingTime, EngineeringUnits, "
            "\t\t\t\tPipeDiameter,TestingCompany,Tester,TestingDate)\t\t\t\tvalues(%ld, '%s','%s', "
            "%s,%s,%s,%s, "
            "%s,%s,'%s',now(),'%s','%s','%s','%s','%s','%s','%s','%s','%s','%s','%s','%s','%s','%s','%s',"
            "'%s','%s','%s','%s')",
            values));
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2007, error);
        return false;
    }
}

bool CDbRec::UpdateTesting(const _TESTING_DATA& in) {
    const CDbStep step(*this, StepChangeSection);
    try {
        std::vector<std::string> values = SectionValues(in);
        values.push_back(FormatInt(in.ID));
        Execute(FormatSql(
            "Update Testing set TestingName = '%s', Comment = '%s', \t\t\tGpsXStart = %s, GpsYStart = "
            "%s,GpsXEnd = %s, GpsYEnd = %s,\t\t\tDistanceStart = %s, DistanceEnd = "
            "%s,\t\t\tVideoFileList = '%s', \t\t\tTaskIndex = '%s',TestingDirection = '%s',TaskName = "
            "'%s',Location = '%s',\t\t\tStartWell = '%s',EndWell = '%s',PipeType = '%s',PipeMaterial = "
            "'%s',\t\t\tDepthStart = '%s', DepthEnd = '%s', ManholeDepth = '%s', PipeLength = "
            "'%s',\tDetectionLength = '%s',\tLayingTime = '%s',\tEngineeringUnits = '%s', "
            "\t\t\tPipeDiameter = '%s',TestingCompany = '%s',Tester = '%s',TestingDate = '%s' \t\t\twhere "
            "ID = %d",
            values));
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2008, error);
        return false;
    }
}

bool CDbRec::SetTestingOrder(std::int32_t id, std::int32_t order) {
    const CDbStep step(*this, StepOrderSections);
    try {
        Execute(FormatSql("update Testing set TestingOrder = %ld where id=%ld",
                          {FormatInt(order), FormatInt(id)}));
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2008, error);
        return false;
    }
}

bool CDbRec::DeleteTesting(const _TESTING_DATA& in) {
    const CDbStep step(*this, StepDeleteSection);
    int message = 2009;
    try {
        CDbBatch batch(*this);
        CRecDataArray records;
        if (!ReadRecords(in.ID, records, false)) {
            return false;
        }
        m_states.clear();
        Execute(FormatSql("delete from Record where TestingID = %d", {FormatInt(in.ID)}));
        message = 2010;
        Execute(FormatSql("delete from Testing where ID = %d", {FormatInt(in.ID)}));
        message = 2009;  // if nothing can be stored, the records are there too
        batch.Commit();
    } catch (const CDbError& error) {
        ShowFailure(message, error);
        return false;
    }
    // File choosers move the current folder, and resources are opened relative to it.
    (void)HostFiles().SetCurrentFolder(GetAppFolder());
    return true;
}

bool CDbRec::RecalcRecordGps(std::int32_t id) {
    const CDbStep step(*this, StepCalculatePositions);
    try {
        CDbBatch batch(*this);
        CDbCursor row = Execute(FormatSql("Select * from Testing where ID = %d", {FormatInt(id)}));
        if (row.IsEof()) {
            ShowMessage(2019);
            return false;
        }
        const _TESTING_DATA section = ReadTestingRow(row);
        CRecDataArray records;
        if (!ReadRecords(id, records, false)) {
            return false;
        }
        CGpsCalc calc(section.GpsXStart, section.GpsYStart, section.GpsXEnd, section.GpsYEnd);
        calc.CalcRecords(records);
        for (const _REC_DATA& record : records) {
            if (!UpdateRecord(record)) {
                return false;
            }
        }
        batch.Commit();
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2020, error);
        return false;
    }
}
