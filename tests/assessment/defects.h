// Defect records as the tests of this room write them.
#pragma once

#include <vector>

#include "store/records/records.h"

struct TestDefect {
    const char* Type;
    float Start;  // metres
    float End;
    float Score;
    std::uint8_t Grade = 1;
    const char* Code = "PL";
};

inline CRecDataArray MakeRecords(const std::vector<TestDefect>& defects) {
    CRecDataArray records;
    for (const TestDefect& defect : defects) {
        _REC_DATA record;
        record.DefectType = defect.Type;
        record.DefectCode = defect.Code;
        record.DefectLevel = defect.Grade;
        record.DistanceStart = defect.Start;
        record.DistanceEnd = defect.End;
        record.Evaluate = defect.Score;
        records.Add(record);
    }
    return records;
}
