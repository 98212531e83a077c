// Rules on pipe sections.
#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <unordered_map>

#include "check/checktasks.h"
#include "check/numbertext.h"
#include "check/rules.h"
#include "shell/CClock.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/sectionform.h"

namespace {

using std::chrono::days;
using std::chrono::local_seconds;

constexpr double LeastDiameter = 100.0;  // millimetres
constexpr double MostDiameter = 5000.0;
constexpr days FarDays{90};
constexpr int DatesForMiddle = 3;  // fewer have no middle

void CheckValues(const CCheckSnapshot& snapshot, const SectionRecords& entry, CFindings& findings) {
    const _TESTING_DATA& section = entry.Section;
    for (const auto& [column, value] :
         {std::pair("StartWell", &section.StartWell), {"EndWell", &section.EndWell}}) {
        if (TrimBlanks(*value).empty()) {
            findings.Add(RuleNoWell, section, {}, column);
        }
    }
    for (const auto& [column, value] : {std::pair("PipeType", &section.PipeType),
                                        {"PipeMaterial", &section.PipeMaterial},
                                        {"TestingDirection", &section.TestingDirection},
                                        {"TestingDate", &section.TestingDate},
                                        {"Location", &section.Location},
                                        {"TestingCompany", &section.TestingCompany},
                                        {"Tester", &section.Tester}}) {
        if (TrimBlanks(*value).empty()) {
            findings.Add(RuleMissingValue, section, {}, column);
        }
    }
    if (entry.Records.IsEmpty() && !snapshot.IsSonar(section)) {
        findings.Add(RuleNoRecord, section);
    }
}

void CheckPipe(const CCheckSnapshot& snapshot, const SectionRecords& entry, CFindings& findings) {
    const _TESTING_DATA& section = entry.Section;
    const std::optional<double> length = PositiveNumber(section.PipeLength);
    if (!length) {
        findings.Add(RuleNoLength, section, section.PipeLength, "PipeLength");
    }
    const std::optional<double> inspected = PositiveNumber(section.DetectionLength);
    if (length && inspected && *inspected > *length + DistanceTolerance) {
        findings.Add(RuleInspectedLength, section, section.DetectionLength + " > " + section.PipeLength,
                     "DetectionLength");
    }
    const std::optional<double> diameter = PositiveNumber(section.PipeDiameter);
    if (!diameter) {
        findings.Add(RuleNoDiameter, section, section.PipeDiameter, "PipeDiameter");
    } else if (*diameter < LeastDiameter || *diameter > MostDiameter) {
        findings.Add(RuleOddDiameter, section, section.PipeDiameter, "PipeDiameter");
    }
    if (section.DistanceEnd == 0.0F) {
        findings.Add(IsDensityScoring(snapshot.Route) ? RuleNoEndForDensity : RuleNoEnd, section, {},
                     "DistanceEnd");
    }
}

// A text that the program doesn't read as a date, though a person does: "2025.1.5", "20250105".
std::optional<local_seconds> DateOfAnyForm(const std::string& text) {
    return ParseTestingDate(CanonicalDate(text));
}

bool IsImpossible(local_seconds date) {
    constexpr local_seconds first = std::chrono::local_days{std::chrono::year{1980} / 1 / 1};
    return date < first || date > Clock().LocalNow() + days{1};
}

void CheckDate(const SectionRecords& entry, CFindings& findings) {
    const std::string& text = entry.Section.TestingDate;
    if (TrimBlanks(text).empty()) {
        return;
    }
    const std::optional<local_seconds> date = DateOfAnyForm(text);
    if (!date || IsImpossible(*date)) {
        findings.Add(RuleImpossibleDate, entry.Section, text, "TestingDate");
    } else if (!HasDateForm(text)) {
        findings.Add(RuleDateForm, entry.Section, text, "TestingDate");
    }
}

void CheckFarDates(const CCheckSnapshot& snapshot, CFindings& findings) {
    std::vector<std::pair<local_seconds, const _TESTING_DATA*>> dates;
    for (const SectionRecords& entry : snapshot.Sections) {
        const std::optional<local_seconds> date = DateOfAnyForm(entry.Section.TestingDate);
        if (date && !IsImpossible(*date)) {
            dates.emplace_back(*date, &entry.Section);
        }
    }
    if (dates.size() < DatesForMiddle) {
        return;
    }
    const auto middle = dates.begin() + static_cast<std::ptrdiff_t>(dates.size() / 2);
    auto sorted = dates;
    std::nth_element(sorted.begin(), sorted.begin() + (middle - dates.begin()), sorted.end());
    const local_seconds median = sorted[dates.size() / 2].first;
    for (const auto& [date, section] : dates) {
        if (date - median > FarDays || median - date > FarDays) {
            findings.Add(RuleFarDate, *section, section->TestingDate, "TestingDate");
        }
    }
}

void CheckWells(const CCheckSnapshot& snapshot, CFindings& findings) {
    std::unordered_map<std::string, const _TESTING_DATA*> byLabel;  // lower-cased
    std::unordered_map<std::string, std::string> spelling;          // of each manhole, by its lower case
    for (const SectionRecords& entry : snapshot.Sections) {
        const _TESTING_DATA& section = entry.Section;
        if (section.StartWell.empty() || section.EndWell.empty()) {
            continue;
        }
        const std::string start = LowerCase(section.StartWell);
        const std::string end = LowerCase(section.EndWell);
        bool otherCase = false;
        for (const auto& [column, well, lower] :
             {std::tuple("StartWell", &section.StartWell, &start), {"EndWell", &section.EndWell, &end}}) {
            const auto known = spelling.try_emplace(*lower, *well).first;
            if (known->second != *well && !otherCase) {
                otherCase = true;
                findings.Add(RuleCaseOfWells, section, *well + " / " + known->second, column);
            }
        }
        const auto [twin, isNew] = byLabel.try_emplace(start + '\n' + end, &section);
        if (!isNew && twin->second->Label() == section.Label()) {
            findings.Add(RuleDoubledWells, section, section.Label());
        }
        if (const auto reversed = byLabel.find(end + '\n' + start);
            reversed != byLabel.end() && start != end && reversed->second != &section) {
            findings.Add(RuleReversedTwin, section, reversed->second->Label());
        }
    }
}

std::vector<std::string> VideosOf(const _TESTING_DATA& section) {
    std::vector<std::string> videos;
    std::string_view rest = section.VideoFileList;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('*'), rest.size());
        if (end > 0) {
            videos.push_back(LowerCase(rest.substr(0, end)));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return videos;
}

void CheckVideos(const CCheckSnapshot& snapshot, CFindings& findings) {
    std::unordered_map<std::string, const _TESTING_DATA*> ownerOf;
    for (const SectionRecords& entry : snapshot.Sections) {
        const std::vector<std::string> videos = VideosOf(entry.Section);
        if (videos.empty() && !snapshot.IsSonar(entry.Section)) {
            findings.Add(RuleNoVideo, entry.Section, {}, "VideoFileList");
        }
        bool shared = false;
        for (const std::string& video : videos) {
            const auto [owner, isNew] = ownerOf.try_emplace(video, &entry.Section);
            if (!isNew && owner->second != &entry.Section && !shared) {
                shared = true;
                findings.Add(RuleSharedVideo, entry.Section, owner->second->Label(), "VideoFileList");
            }
        }
        for (const _REC_DATA& record : entry.Records) {
            if (!record.Video.empty() && !record.IsJCJ() &&
                std::find(videos.begin(), videos.end(), LowerCase(record.Video)) == videos.end()) {
                findings.Add(RuleOtherVideo, record, record.Video, "Video");
            }
        }
    }
}

}  // namespace

void AddSectionTasks(const CCheckSnapshot& snapshot, CheckTasks& tasks) {
    AddForEachSection(snapshot, tasks, [&snapshot](const SectionRecords& entry, CFindings& findings) {
        CheckValues(snapshot, entry, findings);
        CheckPipe(snapshot, entry, findings);
        CheckDate(entry, findings);
    });
    tasks.push_back([&snapshot](CFindings& findings) { CheckFarDates(snapshot, findings); });
    tasks.push_back([&snapshot](CFindings& findings) { CheckWells(snapshot, findings); });
    tasks.push_back([&snapshot](CFindings& findings) { CheckVideos(snapshot, findings); });
}
