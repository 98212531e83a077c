// The record half of CDbRec: statements on table `Record`.
#include <algorithm>
#include <limits>

#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/recordpictures.h"
#include "store/sqltext.h"
#include "store/stepnames.h"

namespace {

constexpr int MessageRecord = 3410;

// The whole project for an id below 0.
std::string RecordSelection(const char* beginning, std::int32_t testingId) {
    std::string statement = std::string(beginning) + " * from Record";
    if (testingId >= 0) {
        statement += FormatSql(" where TestingID = %d", {FormatInt(testingId)});
    }
    return statement;
}

// A record without a section is measured by the whole project.
constexpr std::int32_t WholeProject = -1;

std::int32_t OwnerOf(std::int32_t testingId) {
    return std::max(testingId, WholeProject);
}

}  // namespace

int CDbRec::FindDefectIndex(std::string_view code) const {
    for (std::size_t i = 0; i < DefectCodes.size(); ++i) {
        if (EqualNoCase(DefectCodes[i], code)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

std::string CDbRec::GetDefectType(std::string_view code) const {
    const int index = FindDefectIndex(code);
    return index < 0 ? std::string() : DefectTypes[static_cast<std::size_t>(index)];
}

// Rows with a NULL in these columns load with fewer pictures: a record is worth more than its picture.
void CDbRec::ReadPictures(CDbCursor& row, _REC_DATA& record, Pictures pictures) {
    const auto add = [&](const std::string& path, double time) {
        if (pictures == Pictures::Copied) {
            AddPicture(record, path, time);
        } else {
            record.AddPicture(path, time);
        }
    };
    try {
        const double time1 = row.GetDouble("PicTimeInVideo1");
        add(row.GetText("Picture1"), time1);
        const double time2 = row.GetDouble("PicTimeInVideo2");
        add(row.GetText("Picture2"), time2);
    } catch (const CDbError&) {
    }
}

void CDbRec::ReadRecordRow(CDbCursor& row, _REC_DATA& record, Pictures pictures) const {
    record.ID = row.GetLong("ID");
    record.TestingID = row.GetLong("TestingID");
    record.DefectCode = row.GetText("DefectCode");
    record.Comment = row.GetText("Comment");
    record.DefectLevel = static_cast<std::uint8_t>(row.GetLong("DefectLevel"));
    record.DistanceStart = row.GetFloat("DistanceStart");
    record.DistanceEnd = row.GetFloat("DistanceEnd");
    record.DirectionStart = static_cast<std::uint8_t>(row.GetLong("DirectionStart"));
    record.DirectionEnd = static_cast<std::uint8_t>(row.GetLong("DirectionEnd"));
    record.Video = row.GetText("Video");
    ReadPictures(row, record, pictures);
    record.GpsX = row.GetDouble("GpsX");
    record.GpsY = row.GetDouble("GpsY");
    record.DefectType = GetDefectType(record.DefectCode);
    if (record.IsJCJ()) {
        record.JcjNo = row.GetText("JcjNo");
        record.JcjType = row.GetLong("JcjType");
        record.JcjUnderRoad = row.GetLong("JcjUnderRoad");
        record.JcjMaterial = row.GetLong("JcjMaterial");
        record.JcjCoverMaterial = row.GetLong("JcjCoverMaterial");
    }
}

float CDbRec::ReadEvaluate(const _REC_DATA& record) {
    const auto key = std::make_pair(record.DefectCode, static_cast<int>(record.DefectLevel));
    const auto known = m_evaluates.find(key);
    if (known != m_evaluates.end()) {
        return known->second;
    }
    CDbCursor row = Execute(FormatSql("Select * from DefectLevel where DefectCode=\"%s\" And DefectLevel= %d",
                                      {EscapeSqlQuoted(record.DefectCode), FormatInt(record.DefectLevel)}));
    const float score = row.IsEof() ? 0.0F : row.GetFloat("Evaluate");
    return m_evaluates.emplace(key, score).first->second;
}

bool CDbRec::ReadRecords(std::int32_t testingId, CRecDataArray& out, bool withEvaluate) {
    out.RemoveAll();
    const _REC_DATA* reading = nullptr;
    if (ReadRows(RecordSelection("select", testingId), out, withEvaluate, Pictures::Copied, reading)) {
        return true;
    }
    // One row that can't be read keeps the whole project from being worked on: which is it?
    ShowMessage(2017, reading == nullptr || reading->ID == 0
                          ? std::string()
                          : "\r\n" + FillText(LoadMessage(MessageRecord),
                                              {FormatInt(reading->ID), FormatInt(reading->TestingID),
                                               reading->DefectCode}));
    return false;
}

bool CDbRec::LookAtRecords(std::int32_t testingId, CRecDataArray& out, bool withEvaluate) {
    out.RemoveAll();
    const _REC_DATA* reading = nullptr;
    return ReadRows(RecordSelection("select", testingId), out, withEvaluate, Pictures::Left, reading);
}

bool CDbRec::LookAtRecordsFrom(std::int32_t afterId, int most, CRecDataArray& out, bool withEvaluate) {
    out.RemoveAll();
    const _REC_DATA* reading = nullptr;
    return ReadRows(FormatSql("select * from Record where ID > %d order by ID limit %d",
                              {FormatInt(afterId), FormatInt(most)}),
                    out, withEvaluate, Pictures::Left, reading);
}

// `reading` is the record that was being read when it failed; null if none was.
bool CDbRec::ReadRows(const std::string& statement, CRecDataArray& out, bool withEvaluate, Pictures pictures,
                      const _REC_DATA*& reading) {
    const CHostFiles::CLookOnce look(HostFiles());
    try {
        for (CDbCursor rows = Execute(statement); !rows.IsEof(); rows.MoveNext()) {
            _REC_DATA& record = out[out.Add(_REC_DATA())];  // a row that fails stays, half read
            reading = &record;
            ReadRecordRow(rows, record, pictures);
        }
        for (int i = 0; withEvaluate && i < out.GetSize(); ++i) {
            reading = &out[i];
            out[i].Evaluate = ReadEvaluate(out[i]);
        }
        return true;
    } catch (const CDbError&) {
        return false;
    }
}

std::int32_t CDbRec::CountRecords(std::int32_t testingId) {
    try {
        std::int32_t count = 0;
        for (CDbCursor rows = Execute(RecordSelection("Select", testingId)); !rows.IsEof(); rows.MoveNext()) {
            ++count;
        }
        return count;
    } catch (const CDbError& error) {
        ShowFailure(2018, error);
        return -1;
    }
}

bool CDbRec::CountRecordsBySection(std::unordered_map<std::int32_t, std::int32_t>& counts) {
    counts.clear();
    try {
        for (CDbCursor rows = Execute("Select TestingID, count(*) as RecordCount from Record "
                                      "where TestingID is not null group by TestingID");
             !rows.IsEof(); rows.MoveNext()) {
            counts[rows.GetLong("TestingID")] = rows.GetLong("RecordCount");
        }
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2018, error);
        return false;
    }
}

// What the rule of AddRecord asks, with the same messages and the same copies of pictures as a read of
// the section for each new record would give.
bool CDbRec::LookAtSection(std::int32_t testingId, SectionState& state) {
    if (m_stateSerial != BatchSerial()) {
        m_states.clear();
        m_stateSerial = BatchSerial();
    }
    const auto known = m_states.find(OwnerOf(testingId));
    if (known != m_states.end()) {
        state = std::move(known->second);
        for (const std::string& picture : state.NewPictures) {
            CopyForReports(picture);
        }
        state.NewPictures.clear();
        return true;
    }
    CRecDataArray records;
    if (!ReadRecords(testingId, records, false)) {
        return false;
    }
    state = SectionState();
    state.Empty = records.IsEmpty();
    for (const _REC_DATA& record : records) {
        state.HasPipeNormal = state.HasPipeNormal || record.IsPipeNormal();
    }
    return true;
}

void CDbRec::RememberAdded(const _REC_DATA& record, SectionState state) {
    if (BatchSerial() == 0) {
        return;
    }
    _REC_DATA stored;
    stored.DefectCode = record.DefectCode;
    stored.DefectType = GetDefectType(record.DefectCode);
    const auto take = [&](SectionState& into) {
        into.Empty = false;
        into.HasPipeNormal = into.HasPipeNormal || stored.IsPipeNormal();
        into.NewPictures.push_back(record.GetPicture1());
        into.NewPictures.push_back(record.GetPicture2());
    };
    take(state);
    m_states.insert_or_assign(OwnerOf(record.TestingID), std::move(state));
    // Whoever asks for the whole project meets this record, too.
    const auto whole = m_states.find(WholeProject);
    if (record.TestingID >= 0 && whole != m_states.end()) {
        take(whole->second);
    }
}

bool CDbRec::AddRecord(const _REC_DATA& in) {
    const CDbStep step(*this, StepAddRecord);
    SectionState state;
    if (!LookAtSection(in.TestingID, state)) {
        return false;
    }
    const int refusal = in.IsPipeNormal() ? (state.Empty ? 0 : 2800) : (state.HasPipeNormal ? 2801 : 0);
    if (refusal != 0) {
        if (BatchSerial() != 0) {
            m_states.insert_or_assign(OwnerOf(in.TestingID), std::move(state));
        }
        ShowMessage(refusal);
        return false;
    }
    try {
        Execute(FormatSql(
            "insert into "
            "Record(TestingID,DefectCode,Comment,DefectLevel,DistanceStart,DistanceEnd,DirectionStart,"
            "DirectionEnd,Video,Picture1,PicTimeInVideo1,Picture2,PicTimeInVideo2,GpsX,GpsY,CreateTime,"
            "JcjNo,JcjType,JcjUnderRoad,JcjMaterial,JcjCoverMaterial)values(%d,'%s','%s',%d, %s,%s, %d, "
            "%d, '%s', '%s', %s, '%s', %s, %s, %s, now(),'%s',%d,%d,%d,%d)",
            {FormatInt(in.TestingID),         EscapeSqlText(in.DefectCode),  EscapeSqlText(in.Comment),
             FormatInt(in.DefectLevel),       SqlDistance(in.DistanceStart), SqlDistance(in.DistanceEnd),
             FormatInt(in.DirectionStart),    FormatInt(in.DirectionEnd),    EscapeSqlPath(in.Video),
             EscapeSqlPath(in.GetPicture1()), SqlDistance(in.GetPicTime1()), EscapeSqlPath(in.GetPicture2()),
             SqlDistance(in.GetPicTime2()),   SqlCoordinate(in.GpsX),        SqlCoordinate(in.GpsY),
             EscapeSqlText(in.JcjNo),         FormatInt(in.JcjType),         FormatInt(in.JcjUnderRoad),
             FormatInt(in.JcjMaterial),       FormatInt(in.JcjCoverMaterial)}));
    } catch (const CDbError& error) {
        ShowFailure(2014, error);
        return false;
    }
    RememberAdded(in, std::move(state));
    return true;
}

bool CDbRec::UpdateRecord(const _REC_DATA& in) {
    const CDbStep step(*this, StepChangeRecord);
    m_states.clear();
    try {
        Execute(FormatSql(
            "Update Record set DefectCode = '%s', Comment = '%s', DefectLevel = %d,\t\t\tDistanceStart = "
            "%s, DistanceEnd = %s,DirectionStart = %d,DirectionEnd = %d, \t\t\tPicture1 = '%s', "
            "PicTimeInVideo1 = %s, Picture2 = '%s', PicTimeInVideo2 = %s, \t\t\tGpsX = %s, GpsY = %s     "
            "        ,JcjNo = '%s',JcjType = %d,JcjUnderRoad = %d,JcjMaterial = %d,JcjCoverMaterial = %d "
            "           where ID = %d            ",
            {EscapeSqlText(in.DefectCode), EscapeSqlText(in.Comment), FormatInt(in.DefectLevel),
             SqlDistance(in.DistanceStart), SqlDistance(in.DistanceEnd), FormatInt(in.DirectionStart),
             FormatInt(in.DirectionEnd), EscapeSqlPath(in.GetPicture1()), SqlDistance(in.GetPicTime1()),
             EscapeSqlPath(in.GetPicture2()), SqlDistance(in.GetPicTime2()), SqlCoordinate(in.GpsX),
             SqlCoordinate(in.GpsY), EscapeSqlText(in.JcjNo), FormatInt(in.JcjType),
             FormatInt(in.JcjUnderRoad), FormatInt(in.JcjMaterial), FormatInt(in.JcjCoverMaterial),
             FormatInt(in.ID)}));
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2015, error);
        return false;
    }
}

bool CDbRec::DeleteRecord(std::int32_t id) {
    const CDbStep step(*this, StepDeleteRecord);
    m_states.clear();
    try {
        Execute(FormatSql("delete from Record where ID = %d", {FormatInt(id)}));
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2016, error);
        return false;
    }
}

bool CDbRec::SetRecordOrder(std::int32_t testingId, const std::vector<std::int32_t>& ids) {
    const CDbStep step(*this, StepOrderRecords);
    m_states.clear();
    try {
        CDbBatch batch(*this);
        std::vector<std::int32_t> places;
        std::int64_t highest = 0;
        for (CDbCursor rows = Execute(
                 FormatSql("select ID from Record where TestingID = %d order by ID", {FormatInt(testingId)}));
             !rows.IsEof(); rows.MoveNext()) {
            places.push_back(rows.GetLong("ID"));
        }
        {
            CDbCursor last = Execute("select max(ID) as Highest from Record");
            highest = places.empty() ? 0 : last.GetLong("Highest");
        }
        std::vector<std::int32_t> sorted = ids;
        std::sort(sorted.begin(), sorted.end());
        constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
        if (sorted != places || highest > most - static_cast<std::int64_t>(places.size())) {
            throw CDbError("not the records of the section");
        }
        // By way of IDs that nobody has, since no two rows may share one even for a moment.
        const auto move = [this](std::int64_t from, std::int64_t to) {
            Execute(FormatSql("update Record set ID = %ld where ID = %ld",
                              {std::to_string(to), std::to_string(from)}));
        };
        for (std::size_t i = 0; i < ids.size(); ++i) {
            if (ids[i] != places[i]) {
                move(ids[i], highest + 1 + static_cast<std::int64_t>(i));
            }
        }
        for (std::size_t i = 0; i < ids.size(); ++i) {
            if (ids[i] != places[i]) {
                move(highest + 1 + static_cast<std::int64_t>(i), places[i]);
            }
        }
        batch.Commit();
        return true;
    } catch (const CDbError& error) {
        ShowFailure(2015, error);
        return false;
    }
}
