#include "workbench/coding/openruns.h"

#include <algorithm>
#include <set>

#include "shell/textcodec.h"
#include "store/CDbBase.h"
#include "store/CDbError.h"
#include "store/sqltext.h"

namespace {

constexpr const char* Table = "OpenRun";

std::string Key(const _REC_DATA& record) {
    return "'" + EscapeSqlText(LowerCase(record.GetPicture1())) + "'";
}

bool HasMarks(CDbBase& database) {
    return !database
                .ExecuteAsIs(std::string("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = '") +
                             Table + "'")
                .IsEof();
}

}  // namespace

std::vector<_REC_DATA> OpenRuns(CDbBase& database, const CRecDataArray& records) {
    std::set<std::string> marked;
    try {
        if (!HasMarks(database)) {
            return {};
        }
        for (CDbCursor rows = database.ExecuteAsIs(std::string("SELECT Picture FROM ") + Table);
             !rows.IsEof(); rows.MoveNext()) {
            marked.insert(LowerCase(rows.GetText("Picture")));
        }
    } catch (const CDbError&) {
        return {};
    }
    std::vector<_REC_DATA> open;
    for (const _REC_DATA& record : records) {
        if (record.DistanceEnd <= record.DistanceStart && marked.contains(LowerCase(record.GetPicture1()))) {
            open.push_back(record);
        }
    }
    std::stable_sort(open.begin(), open.end(), [](const _REC_DATA& a, const _REC_DATA& b) {
        return a.DistanceStart < b.DistanceStart;
    });
    return open;
}

void MarkOpenRun(CDbBase& database, const _REC_DATA& record) {
    database.ExecuteAsIs(std::string("CREATE TABLE IF NOT EXISTS ") + Table + " (Picture TEXT)");
    ForgetOpenRun(database, record);
    database.ExecuteAsIs(std::string("INSERT INTO ") + Table + " (Picture) VALUES (" + Key(record) + ")");
}

void ForgetOpenRun(CDbBase& database, const _REC_DATA& record) {
    if (HasMarks(database)) {
        database.ExecuteAsIs(std::string("DELETE FROM ") + Table + " WHERE Picture = " + Key(record));
    }
}
