// What an operator has looked at and leaves as it is, with his reason: kept in his settings, a file for each
// project, so that the project itself stays as it was told. It comes back when the value changes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "check/finding.h"

struct Waiver {
    CheckFinding Finding;
    std::string Reason;
    std::string Time;  // "2026-11-24 10:15:30", local
};

class CWaivers {
public:
    // Of the project at this path, which is known by the file that it leads to. A file that can't be
    // understood is told with message 3840 and left alone.
    explicit CWaivers(std::string_view project);

    const std::vector<Waiver>& All() const { return m_waivers; }
    // The reason, or null if it isn't waived.
    const std::string* ReasonOf(const CheckFinding& finding) const;

    // Each is written at once. False, with message 3841 telling why, if it can't be; nothing is changed then.
    bool Waive(const std::vector<CheckFinding>& findings, const std::string& reason);
    bool TakeBack(const std::vector<CheckFinding>& findings);

private:
    bool Keep(std::vector<Waiver> waivers);

    std::string m_project;
    std::string m_file;  // path text; empty if there is no place for it
    bool m_broken = false;
    std::vector<Waiver> m_waivers;
};
