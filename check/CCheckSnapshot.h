// A project as it stood when a check began: read once, in pieces, so that a window that checks goes on
// answering.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "assessment/sectiongrades.h"
#include "assessment/standards.h"
#include "store/records/records.h"

class CDbRec;

// What the standard knows of a code.
struct CheckedCode {
    std::string Type;
    std::vector<std::string> Texts;  // of the grades, from 1; empty for one that it hasn't
};

class CCheckSnapshot {
public:
    std::string Path;  // of the project
    _PRO_DATA Project;
    ScoringRoute Route = ScoringRoute::None;
    std::vector<SectionRecords> Sections;  // in the project's order, records in the order of entry
    CRecDataArray Homeless;                // records of no section
    std::unordered_map<std::string, CheckedCode> Codes;  // by lower-cased code
    std::set<std::string> Drawn;                         // pictures that were drawn on, lower-cased
    std::optional<std::int32_t> SonarSection;            // named by the sonar folder, if there is one

    // What a sonar saw has neither a video nor records.
    bool IsSonar(const _TESTING_DATA& section) const { return SonarSection == section.ID; }
    const CheckedCode* FindCode(std::string_view code) const;

    enum class Reading { Going, Done, Failed };
    // Reads the next piece, within some milliseconds. If the project is changed between two pieces it begins
    // anew. The message has been shown if it fails.
    Reading ReadPiece(CDbRec& database);

private:
    bool ReadFrame(CDbRec& database);
    void TakeRecords(CRecDataArray& records);

    bool m_begun = false;
    std::int64_t m_changes = 0;
    std::int32_t m_lastRecord = -1;
    std::unordered_map<std::int32_t, std::size_t> m_placeOf;  // sections by ID
};
