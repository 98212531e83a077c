// The work of a check in pieces, each of some milliseconds at most. What several pieces share is made by the
// first that needs it, and lives with them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "check/CCheckSnapshot.h"
#include "check/finding.h"

class CFindings {
public:
    void Add(int rule, std::string value = {}, std::string field = {}) {
        Found.push_back({rule, -1, -1, std::move(field), std::move(value)});
    }
    void Add(int rule, const _TESTING_DATA& section, std::string value = {}, std::string field = {}) {
        Found.push_back({rule, section.ID, -1, std::move(field), std::move(value)});
    }
    // `record` stands in its section, if it has one.
    void Add(int rule, const _REC_DATA& record, std::string value = {}, std::string field = {}) {
        Found.push_back({rule, record.TestingID, record.ID, std::move(field), std::move(value)});
    }

    std::vector<CheckFinding> Found;
};

using CheckTask = std::function<void(CFindings&)>;
using CheckTasks = std::vector<CheckTask>;

// One group of rules each. The snapshot is complete, and outlives the tasks. K, T: as picked.
void AddSectionTasks(const CCheckSnapshot& snapshot, CheckTasks& tasks);
void AddRecordTasks(const CCheckSnapshot& snapshot, float K, float T, CheckTasks& tasks);
void AddPictureTasks(const CCheckSnapshot& snapshot, CheckTasks& tasks);
void AddPositionTasks(const CCheckSnapshot& snapshot, CheckTasks& tasks);
void AddProjectTasks(const CCheckSnapshot& snapshot, CheckTasks& tasks);
void AddTextTasks(const CCheckSnapshot& snapshot, CheckTasks& tasks);

// `check` for each section, some at a time.
void AddForEachSection(const CCheckSnapshot& snapshot, CheckTasks& tasks,
                       const std::function<void(const SectionRecords&, CFindings&)>& check);
// Manholes and the record "nothing wrong" have no distance, clock or grade of their own.
bool IsDefect(const _REC_DATA& record);
