// Rules on records.
#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>

#include "assessment/explain/explanation.h"
#include "check/checktasks.h"
#include "check/numbertext.h"
#include "check/rules.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

constexpr double TimeFall = 5.0;      // seconds
constexpr float DistanceRise = 0.5F;  // metres

void CheckDistances(const _TESTING_DATA& section, const _REC_DATA& record, CFindings& findings) {
    const std::optional<double> length = PositiveNumber(section.PipeLength);
    const auto start = static_cast<double>(record.DistanceStart);
    const auto end = static_cast<double>(record.DistanceEnd);
    if (!(start >= 0.0) || !std::isfinite(start) || !std::isfinite(end)) {
        findings.Add(RuleBeyondLength, record, MetresText(record.DistanceStart), "DistanceStart");
        return;
    }
    if (length && std::max(start, end) > *length + DistanceTolerance) {
        const bool byStart = start > *length + DistanceTolerance;
        findings.Add(
            RuleBeyondLength, record,
            MetresText(byStart ? record.DistanceStart : record.DistanceEnd) + " > " + section.PipeLength,
            byStart ? "DistanceStart" : "DistanceEnd");
    }
    if (start > end + DistanceTolerance) {
        findings.Add(RuleStartBehindEnd, record,
                     MetresText(record.DistanceStart) + " > " + MetresText(record.DistanceEnd),
                     "DistanceEnd");
    }
}

void CheckClock(const _REC_DATA& record, CFindings& findings) {
    if (record.DirectionStart < 1 || record.DirectionStart > 12) {
        findings.Add(RuleClock, record, FormatInt(record.DirectionStart), "DirectionStart");
    } else if (record.DirectionEnd > 12) {
        findings.Add(RuleClock, record, FormatInt(record.DirectionEnd), "DirectionEnd");
    }
}

// Whether the comment is the standard's text of another grade of this code, as is left when a grade is
// changed without it.
bool IsTextOfOtherGrade(const CheckedCode& code, const _REC_DATA& record) {
    const std::string_view comment = TrimBlanks(record.Comment);
    bool other = false;
    for (std::size_t i = 0; i < code.Texts.size(); ++i) {
        if (!code.Texts[i].empty() && comment == TrimBlanks(code.Texts[i])) {
            if (i + 1 == record.DefectLevel) {
                return false;
            }
            other = true;
        }
    }
    return other;
}

void CheckByStandard(const CCheckSnapshot& snapshot, const _REC_DATA& record, CFindings& findings) {
    const CheckedCode* code = snapshot.FindCode(record.DefectCode);
    if (code == nullptr) {
        findings.Add(RuleUnknownCode, record, record.DefectCode, "DefectCode");
        return;
    }
    if (IsDefect(record)) {
        const std::size_t grade = record.DefectLevel;
        if (grade < 1 || grade > code->Texts.size() || code->Texts[grade - 1].empty()) {
            findings.Add(RuleGradeOutside, record, FormatInt(record.DefectLevel), "DefectLevel");
        } else if (IsTextOfOtherGrade(*code, record)) {
            findings.Add(RuleOtherComment, record, record.Comment, "Comment");
        }
    }
}

void CheckRecord(const CCheckSnapshot& snapshot, const _TESTING_DATA& section, const _REC_DATA& record,
                 CFindings& findings) {
    CheckByStandard(snapshot, record, findings);
    if (record.IsPipeNormal()) {
        return;
    }
    if (TrimBlanks(record.Comment).empty()) {
        findings.Add(RuleNoComment, record, {}, "Comment");
    }
    if (!IsDefect(record)) {
        return;
    }
    CheckDistances(section, record, findings);
    CheckClock(record, findings);
    if (record.IsJG() && record.Pictures.IsEmpty()) {
        findings.Add(RuleNoPicture, record);
    }
}

void CheckTogether(const SectionRecords& entry, CFindings& findings) {
    const _REC_DATA* normal = nullptr;
    bool defects = false;
    using Place = std::tuple<std::string, float, float, int, int, std::string>;
    std::set<Place> places;
    for (const _REC_DATA& record : entry.Records) {
        normal = record.IsPipeNormal() ? &record : normal;
        defects = defects || IsDefect(record);
        const bool isNew =
            places
                .emplace(LowerCase(record.DefectCode), record.DistanceStart, record.DistanceEnd,
                         record.DirectionStart, record.DirectionEnd, record.JcjNo)
                .second;
        if (!isNew) {
            findings.Add(RuleTwice, record, MetresText(record.DistanceStart), "DefectCode");
        }
    }
    if (normal != nullptr && defects) {
        findings.Add(RuleNormalBesideDefects, *normal, {}, "DefectCode");
    }
}

// By distance, each against the one before in the same video.
void CheckTimes(const SectionRecords& entry, CFindings& findings) {
    std::vector<const _REC_DATA*> order;
    for (const _REC_DATA& record : entry.Records) {
        if (IsDefect(record) && record.GetPicTime1() >= 0.0) {
            order.push_back(&record);
        }
    }
    std::stable_sort(order.begin(), order.end(), [](const _REC_DATA* a, const _REC_DATA* b) {
        return a->DistanceStart < b->DistanceStart;
    });
    for (std::size_t i = 1; i < order.size(); ++i) {
        const _REC_DATA& before = *order[i - 1];
        const _REC_DATA& record = *order[i];
        if (record.DistanceStart - before.DistanceStart >= DistanceRise &&
            before.GetPicTime1() - record.GetPicTime1() > TimeFall &&
            EqualNoCase(before.Video, record.Video)) {
            findings.Add(
                RuleTimeFalls, record,
                FormatNumber(record.GetPicTime1(), 1) + " < " + FormatNumber(before.GetPicTime1(), 1),
                "DistanceStart");
        }
    }
}

void CheckOrder(const CCheckSnapshot& snapshot, const SectionRecords& entry, float K, float T,
                CFindings& findings) {
    if (IsDensityScoring(snapshot.Route) || IsInOrder(entry.Records)) {
        return;
    }
    for (const SectionGrade& grade : GradeSections(snapshot.Route, {entry}, K, T)) {
        if (const auto other = ResultByDistance(snapshot.Route, grade)) {
            const auto number = [](float value) { return FormatNumber(static_cast<double>(value), 3); };
            findings.Add(RuleOrder, entry.Section,
                         "RI " + number(grade.Result.riJG) + " / " + number(other->riJG) + ", MI " +
                             number(grade.Result.riGN) + " / " + number(other->riGN));
        }
    }
}

}  // namespace

void AddRecordTasks(const CCheckSnapshot& snapshot, float K, float T, CheckTasks& tasks) {
    AddForEachSection(snapshot, tasks, [&snapshot, K, T](const SectionRecords& entry, CFindings& findings) {
        for (const _REC_DATA& record : entry.Records) {
            CheckRecord(snapshot, entry.Section, record, findings);
        }
        CheckTogether(entry, findings);
        CheckTimes(entry, findings);
        CheckOrder(snapshot, entry, K, T, findings);
    });
    tasks.push_back([&snapshot](CFindings& findings) {
        for (const _REC_DATA& record : snapshot.Homeless) {
            findings.Add(RuleNoSection, record, FormatInt(record.TestingID));
        }
    });
}
