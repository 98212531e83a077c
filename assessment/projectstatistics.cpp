#include "assessment/projectstatistics.h"

#include <array>
#include <cmath>
#include <initializer_list>

#include "shell/language.h"
#include "shell/numbers.h"

namespace {

using TextList = std::vector<std::string>;

constexpr std::size_t Levels = 4;
constexpr int FirstLabel = 2331;  // texts of the levels, from best to worst

constexpr const char* NoValue = "-";

// Sections of one class: all of them, those of each level, and those without a defect of the class.
struct LevelTally {
    struct Entry {
        std::uint32_t Count = 0;
        double Length = 0.0;  // metres
    };
    Entry All;
    std::array<Entry, Levels> OfLevel;
    Entry WithoutDefect;

    void Add(const TextList& labels, const std::string& level, bool hasDefects, double length) {
        AddTo(All, length);
        if (!hasDefects) {
            AddTo(WithoutDefect, length);
            return;
        }
        for (std::size_t i = 0; i < Levels; ++i) {
            if (level == labels[i]) {
                AddTo(OfLevel[i], length);
                return;
            }
        }
    }

private:
    static void AddTo(Entry& entry, double length) {
        ++entry.Count;
        entry.Length += length;
    }
};

void Append(TextList& list, std::initializer_list<std::string> texts) {
    list.insert(list.end(), texts);
}

std::string TwoDigits(float value) {
    return FormatNumber(static_cast<double>(value), 2);
}

// A project whose sections have no length divides by zero; that shows as what it is.
std::string Percent(double part, double whole) {
    const double value = part * 100.0 / whole;
    return (std::isfinite(value) ? FormatOneDecimal(value) : FormatFixed(value, 1)) + "%";
}

double TextLength(const SectionGrade& grade) {
    return ParseDouble(grade.Section.PipeLength);
}

void AppendRating(TextList& rows, bool hasDefects, std::initializer_list<std::string> texts) {
    if (hasDefects) {
        Append(rows, texts);
    } else {
        rows.insert(rows.end(), texts.size(), NoValue);
    }
}

void AppendSectionRow(TextList& rows, const SectionGrade& grade) {
    const _TESTING_DATA& section = grade.Section;
    const _EVALUATE_DATA& r = grade.Result;
    Append(rows, {section.TestingName, section.Label(), FormatNumber(ParseDouble(section.PipeDiameter), 2),
                  FormatOneDecimal(TextLength(grade)), section.PipeMaterial});
    AppendRating(rows, r.countJG != 0,
                 {TwoDigits(r.avgJG), TwoDigits(r.maxJG), r.levelJG, TwoDigits(r.smJG), TwoDigits(r.riJG),
                  r.EvaluatethisJG});
    AppendRating(rows, r.countGN != 0,
                 {TwoDigits(r.avgGN), TwoDigits(r.maxGN), r.levelGN, TwoDigits(r.smGN), TwoDigits(r.riGN),
                  r.EvaluatethisGN});
}

void AppendShortRow(TextList& rows, const SectionGrade& grade) {
    const _EVALUATE_DATA& r = grade.Result;
    Append(rows, {grade.Section.TestingName, grade.Section.Label()});
    AppendRating(rows, r.mergedJG != 0, {r.riLevelJG, FormatInt(r.mergedJG)});
    AppendRating(rows, r.mergedGN != 0, {r.riLevelGN, FormatInt(r.mergedGN)});
}

void Summarize(ProjectSummary& summary, const SectionGrade& grade) {
    ++summary.Sections;
    if (!grade.Records.IsEmpty()) {
        ++summary.WithRecords;
    }
    if (grade.Result.countJG != 0) {
        ++summary.StructuralSections;
    } else if (grade.Result.countGN != 0) {
        ++summary.FunctionalSections;
    }
    summary.SumJG += grade.Result.countJG;
    summary.SumGN += grade.Result.countGN;
}

void AppendCounts(TextList& rows, const LevelTally& tally) {
    const auto share = [&](const LevelTally::Entry& entry) {
        return tally.All.Count != 0 ? Percent(entry.Count, tally.All.Count) : NoValue;
    };
    for (const LevelTally::Entry& entry : tally.OfLevel) {
        rows.push_back(share(entry));
    }
    rows.push_back(share(tally.WithoutDefect));
}

void AppendLengths(TextList& rows, const LevelTally& tally, double wholeLength) {
    for (const LevelTally::Entry& entry : tally.OfLevel) {
        AppendRating(
            rows, entry.Count != 0,
            {FormatInt(entry.Count), FormatNumber(entry.Length, 3), Percent(entry.Length, wholeLength)});
    }
}

TextList CountedRows(std::size_t rows) {
    return {FormatInt(static_cast<std::int64_t>(rows))};
}

// What the rows of both density standards begin with.
void AppendGroupHead(TextList& rows, const SectionGrade& group) {
    const _TESTING_DATA& section = group.Section;
    Append(rows, {section.TestingName, section.Label(), section.PipeMaterial,
                  FormatNumber(ParseDouble(section.PipeDiameter), 2), TwoDigits(group.Length), "",
                  TwoDigits(group.Result.paramK), TwoDigits(group.Result.paramE)});
}

void AppendGroupRatings(TextList& rows, const _EVALUATE_DATA& r) {
    Append(rows, {TwoDigits(r.conditionJG), TwoDigits(r.conditionGN), TwoDigits(r.riJG), TwoDigits(r.riGN),
                  r.EvaluatethisJG, r.EvaluatethisGN});
}

}  // namespace

ProjectStatistics MakeProjectStatistics(const std::vector<SectionGrade>& grades) {
    ProjectStatistics statistics;
    statistics.SectionRows = CountedRows(grades.size());
    statistics.ShortRows = CountedRows(grades.size());
    TextList labels;
    for (int i = 0; i < static_cast<int>(Levels); ++i) {
        labels.push_back(LoadMessage(FirstLabel + i));
    }
    LevelTally structural;
    LevelTally functional;
    for (const SectionGrade& grade : grades) {
        const _EVALUATE_DATA& r = grade.Result;
        AppendSectionRow(statistics.SectionRows, grade);
        Summarize(statistics.Summary, grade);
        AppendShortRow(statistics.ShortRows, grade);
        structural.Add(labels, r.riLevelJG, r.mergedJG != 0, TextLength(grade));
        functional.Add(labels, r.riLevelGN, r.mergedGN != 0, TextLength(grade));
    }
    AppendCounts(statistics.LevelCountRows, structural);
    AppendCounts(statistics.LevelCountRows, functional);
    statistics.LevelLengthRows.push_back(FormatNumber(structural.All.Length, 3));
    AppendLengths(statistics.LevelLengthRows, structural, structural.All.Length);
    AppendLengths(statistics.LevelLengthRows, functional, structural.All.Length);
    return statistics;
}

std::vector<std::string> MakeGroupRowsGZ(const std::vector<SectionGrade>& groups) {
    TextList rows = CountedRows(groups.size());
    for (const SectionGrade& group : groups) {
        AppendGroupHead(rows, group);
        rows.push_back(TwoDigits(group.Result.paramT));
        AppendGroupRatings(rows, group.Result);
    }
    return rows;
}

std::vector<std::string> MakeGroupRowsSH(const std::vector<SectionGrade>& groups) {
    TextList rows = CountedRows(groups.size());
    for (const SectionGrade& group : groups) {
        AppendGroupHead(rows, group);
        AppendGroupRatings(rows, group.Result);
    }
    return rows;
}
