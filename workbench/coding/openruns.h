// Runs whose end is still to come. A run that has begun is a record with its start as its end, and a mark in
// a table of its own, "OpenRun": that outlives the program and goes with copies of the project, and other
// readers of it see a defect at a place. Once the record has an end behind its start it isn't open any more,
// whoever gave it one, and undoing that opens it again.
//
// The mark names the record's first picture, which is the record's own and goes with it when records are put
// into another order.
#pragma once

#include <string>
#include <vector>

#include "store/records/records.h"

class CDbBase;

// By distance. None if the marks can't be read.
std::vector<_REC_DATA> OpenRuns(CDbBase& database, const CRecDataArray& records);
// Throw CDbError.
void MarkOpenRun(CDbBase& database, const _REC_DATA& record);
void ForgetOpenRun(CDbBase& database, const _REC_DATA& record);
