// What the form of a pipe section holds and decides. It serves two ends: one new section for each of several
// videos, and the change of one section.
//
// Controls are named by their ids. Reading the form takes them in a fixed order, and the first number that
// isn't one, or lies outside its range, ends the reading: what comes behind it keeps its former value, and
// the form goes on with that.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/records/records.h"

struct SectionControl {
    static constexpr int StartLongitude = 1038;
    static constexpr int StartLatitude = 1039;
    static constexpr int EndLongitude = 1040;
    static constexpr int EndLatitude = 1041;
    static constexpr int Name = 1044;
    static constexpr int TaskNo = 1065;
    static constexpr int Direction = 1066;
    static constexpr int TaskName = 1067;
    static constexpr int Location = 1068;
    static constexpr int StartWell = 1069;
    static constexpr int PipeType = 1070;
    static constexpr int Material = 1071;
    static constexpr int Diameter = 1072;
    static constexpr int Company = 1073;
    static constexpr int Tester = 1074;
    static constexpr int EndWell = 1076;
    static constexpr int PipeLength = 1078;
    static constexpr int Videos = 1083;
    static constexpr int DetectionLength = 1084;
    static constexpr int Date = 1086;
};

struct WellPair {
    std::string Start;
    std::string End;

    bool operator==(const WellPair&) const = default;
};

struct SectionForm {
    double StartLongitude = 0.0;  // degrees
    double StartLatitude = 0.0;
    double EndLongitude = 0.0;
    double EndLatitude = 0.0;
    float PipeLength = 0.0F;  // metres
    std::string TestingName;
    std::string TestingDirection;
    std::string Location;
    std::string PipeDiameter;
    std::string PipeMaterial;
    std::string PipeType;
    std::string TaskIndex;
    std::string TaskName;
    std::string Tester;
    std::string TestingCompany;
    std::string DetectionLength;
    std::chrono::local_seconds Date{};
    // Rows of the video list and, parallel to them, their manholes.
    std::vector<std::string> Videos;
    std::vector<WellPair> Wells;
    int SelectedRow = -1;  // whose manholes are shown
};

// What stands in the text controls, by id.
using SectionTexts = std::map<int, std::string>;

// Why the form can't be taken as it is.
struct SectionProblem {
    int Message = 0;
    std::string Text;  // of the message
    int Control = 0;   // where the operator can mend it
    int Row = -1;      // of the video list, if it is about one
    WellPair Wells;    // that the row's file name gives
};

// The values that the form proposes for a control; empty if it proposes none.
std::span<const char* const> SectionProposals(int control);

// Manholes out of the title of a video file: "W12-W13" gives both. Where the second is missing it becomes
// "E", and the result is false.
bool SplitVideoTitle(std::string_view title, std::string& start, std::string& end);

// Reads dates with "-" or "/"; parts that are missing count 0. Nothing if it is shorter than a date, or none.
std::optional<std::chrono::local_seconds> ParseTestingDate(std::string_view text);
// The same; the present time instead of nothing.
std::chrono::local_seconds ReadTestingDate(std::string_view text);
std::string FormatTestingDate(std::chrono::local_seconds date);

// The form as it opens. The first of `sections`, if any, gives the values.
SectionForm MakeSectionForm(const std::vector<_TESTING_DATA>& sections, bool isNew);

// Brings values to `texts`, up to the control `unread`, if that isn't 0: what couldn't be read stays as
// typed.
void ShowSectionForm(const SectionForm& form, SectionTexts& texts, int unread = 0);
// The other way.
std::optional<SectionProblem> ReadSectionForm(const SectionTexts& texts, SectionForm& form);

// The values of the last new section, also where they are empty; coordinates that are show 0.
void OfferNewPipeDefaults(SectionTexts& texts);
void KeepNewPipeDefaults(const SectionTexts& texts);

// The manholes of the selected row; empty texts if none is.
WellPair ShownWells(const SectionForm& form);
void StoreWells(SectionForm& form, const WellPair& typed);

// Paths that the list holds already are passed over. Asks with 3337 where a name can be split in several
// ways. Asks with 2181 where a file name doesn't hold two manholes; Cancel leaves out this one and those
// behind it. Selects the last one added.
bool AddVideos(SectionForm& form, const std::vector<std::string>& paths);
void RemoveSelectedVideo(SectionForm& form);

// The distance between the manholes, rounded to centimetres. Both must lie in the same hemisphere.
void CalculatePipeLength(SectionForm& form);

// 2166 to 2171; its text tells of all that is missing, the rest of it of the first. The manholes are checked
// as the file names tell them, whatever was typed.
std::optional<SectionProblem> CheckSectionForm(const SectionForm& form);
// The section with the distances that OK would store for its pipe length, and all else as it is: imported
// sections have none until then, so that no defect but one at 0 m can be stored in them. Nothing if it has no
// pipe length.
std::optional<_TESTING_DATA> WithPipeLength(const _TESTING_DATA& section);
// One section for each video. What the form doesn't show stays as in the first of `sections`.
std::vector<_TESTING_DATA> MakeSections(const SectionForm& form, const std::vector<_TESTING_DATA>& sections);
