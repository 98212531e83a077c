// Rules on the project as a whole.
#include <algorithm>
#include <map>

#include "assessment/standards.h"
#include "check/checktasks.h"
#include "check/drives.h"
#include "check/rules.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

void CheckProject(const CCheckSnapshot& snapshot, CFindings& findings) {
    if (TrimBlanks(snapshot.Project.ProjectIndex).empty()) {
        findings.Add(RuleNoNumber, std::string(), "ProjectIndex");
    }
    if (TrimBlanks(snapshot.Project.Location).empty()) {
        findings.Add(RuleNoPlace, std::string(), "Location");
    }
    if (!HasEvaluator(snapshot.Route)) {
        findings.Add(RuleNoReport, snapshot.Project.CriterionName);
    }
    const auto isSonar = [&](const SectionRecords& entry) {
        return entry.Section.ID == *snapshot.SonarSection;
    };
    if (snapshot.SonarSection && std::none_of(snapshot.Sections.begin(), snapshot.Sections.end(), isSonar)) {
        findings.Add(RuleSonar, FormatInt(*snapshot.SonarSection));
    }
}

// One of its paths stands for all of a drive.
void CheckDrives(const CCheckSnapshot& snapshot, CFindings& findings) {
    std::map<char, bool> known;  // by the letter as it is written
    std::map<char, std::pair<std::string, std::int64_t>> missing;
    const auto look = [&](const std::string& path) {
        if (path.size() < 2 || path[1] != ':') {
            return;
        }
        const auto [drive, isNew] = known.try_emplace(path[0], false);
        if (isNew) {
            drive->second = MissingDrive(path) != 0;
        }
        if (drive->second) {
            auto& entry = missing.try_emplace(MissingDrive(path), path, 0).first->second;
            ++entry.second;
        }
    };
    for (const SectionRecords& entry : snapshot.Sections) {
        look(entry.Section.FirstVideo());
        for (const _REC_DATA& record : entry.Records) {
            look(record.GetPicture1());
            look(record.GetPicture2());
        }
    }
    for (const auto& [letter, entry] : missing) {
        findings.Add(RuleNoDrive,
                     std::string(1, letter) + ": (" + FormatInt(entry.second) + ") " + entry.first);
    }
}

}  // namespace

void AddProjectTasks(const CCheckSnapshot& snapshot, CheckTasks& tasks) {
    tasks.push_back([&snapshot](CFindings& findings) { CheckProject(snapshot, findings); });
    tasks.push_back([&snapshot](CFindings& findings) { CheckDrives(snapshot, findings); });
}
