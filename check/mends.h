// What can be put right at once, since there is one safe answer: each is shown before it is done, and all
// together are one step of the journal with one restore point before it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "check/CCheckSnapshot.h"
#include "check/finding.h"
#include "check/movedfiles.h"

class CDbRec;

struct Mend {
    std::int32_t Section = -1;
    std::int32_t Record = -1;
    std::string Field;  // the column; empty for the order of the section's records
    std::string Before;
    std::string After;
};

// Whether a rule's findings can be mended, by picking a folder or at once.
enum class MendKind { None, AtOnce, Moved };
MendKind MendOf(int rule);

// For those of the findings that can be mended at once.
std::vector<Mend> ProposeMends(const CCheckSnapshot& snapshot, const std::vector<CheckFinding>& findings);

// Paths of videos and pictures in the whole project, and those of them that lead nowhere.
struct MissingPaths {
    std::vector<std::string> Missing;
    std::vector<std::string> All;
};
MissingPaths FindMissingPaths(const CCheckSnapshot& snapshot);
// Each row that names one of the files.
std::vector<Mend> ProposeMoved(const CCheckSnapshot& snapshot, const std::vector<MovedFile>& files);

// 3842. The snapshot is as the project is. False also if the operator doesn't go on without a restore point.
bool ApplyMends(CDbRec& database, const CCheckSnapshot& snapshot, const std::vector<Mend>& mends);
