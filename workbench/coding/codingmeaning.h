// What a coding line means in a project: its standard, its section, and what is still missing.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/records/records.h"
#include "workbench/coding/codingline.h"

class CDbCriterion;

enum class CodingField { Code, Grade, Distance, Clock, Length, Run };

struct CodingProblem {
    CodingField Field;
    std::string Text;  // of the language in force
};

struct CodingMeaning {
    CodingLine::Run Mark = CodingLine::Run::None;
    std::string Code;  // of the standard; empty if none was understood
    std::string Name;
    std::string Type;                     // "JG", "GN" or "JCJ"
    std::vector<std::string> Candidates;  // codes that what was typed could be, if there are several
    bool Manhole = false;                 // has a form of its own, which asks for all else
    int Grade = 0;                        // 0: missing. Never assumed
    int Grades = 0;                       // how many the code has
    std::string GradeText;                // the standard's
    std::optional<float> Start;           // metres. Never assumed
    std::optional<float> End;             // metres; of a place the same as Start
    bool IsRun = false;                   // an end was typed
    int ClockStart = 12;                  // hours
    int ClockEnd = 12;
    bool ClockAssumed = true;  // none was typed
    std::string Comment;       // the standard's text for the grade unless one was typed
    bool CommentTyped = false;
    std::int32_t EndedRun = -1;  // the record whose run ends at Start

    // In the order of the line. The first is where storing stops.
    std::vector<CodingProblem> Problems;
    bool IsComplete() const { return Problems.empty() && !Manhole; }
};

// `openRuns` are the section's records whose end is still to come. The standard is that of `criterion`, which
// is open; its message tells if it can't be read.
CodingMeaning UnderstandCoding(const CodingLine& line, CDbCriterion& criterion, const _TESTING_DATA& section,
                               const std::vector<_REC_DATA>& openRuns);

// "PL2 12.40 m", by which a run is told from others.
std::string RunLabel(const _REC_DATA& run);
