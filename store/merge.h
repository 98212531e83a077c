// Joins two projects, in which two crews inspected parts of one job, into a third. Neither of them changes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/records/records.h"

struct MergeResult {
    std::string Path;  // of the new project, empty if there is none
    // A block for each section of the second project that isn't in the new one, as it goes into "merge.txt".
    std::string Log;
    std::vector<std::string> RefusedRecords;  // section label and code
    std::int64_t WithoutSection = 0;          // records that arrived without a section
};

// ProjectPath, ProjectName and CriterionName of both count. The new project is a copy of the first, under the
// name of the next free second and with both projects' names; the second's sections and records are added.
//
// A section between manholes that the new project has, compared as the database compares, isn't added: its
// records go to the section of exactly these manholes, if there is one. What has no section to go to arrives
// without one. Pictures, videos and sonar data stay where they are.
//
// False if the merge ended early; the new project stays then as far as it came, unless the operator stopped
// it. 1062 the standards differ; 2203 with the path the new file can't be made; 2013; and those of
// ReadAttrib, WriteAttrib, ReadTestings, ReadRecords, AddTesting and AddRecord. Throws std::invalid_argument
// at the first record of a section that the database refused: what came before it stays.
//
// A crash leaves no new file, or an untouched copy of the first, or the whole. Tells Progress().
bool MergeProjects(const _PRO_DATA& first, const _PRO_DATA& second, MergeResult& result);

// "merge.txt" in the program folder; what was there is replaced. The path, or empty if there is nothing to
// tell or it can't be written.
std::string WriteMergeLog(const MergeResult& result);
// Writes it, opens it, and tells of records without a section (3421). Where the log can't be shown, a message
// tells what stands in it (3420).
void ShowMergeResult(const MergeResult& result);
