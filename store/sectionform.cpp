#include "store/sectionform.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <utility>
#include <variant>

#include "geo/position/GeoPoint.h"
#include "shell/CClock.h"
#include "shell/CPrompts.h"
#include "shell/language.h"
#include "shell/newpipedefaults.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"

namespace {

constexpr int MessageNoNumber = 3030;
constexpr int MessageOutOfRange = 3031;
constexpr int MessageWhichWells = 3337;
constexpr std::size_t ShortestDate = 10;
constexpr int DegreeDigits = 12;  // as they are stored
constexpr int MetreDigits = 3;

using Id = SectionControl;
using Text = std::string SectionForm::*;
using Degrees = double SectionForm::*;
using Metres = float SectionForm::*;

struct Field {
    int Control;
    std::variant<Text, Degrees, Metres> Member;
    int NameMessage = 0;  // of numbers
    double Most = 0.0;    // of degrees, on both sides of 0
};

// In the order of reading.
const std::array<Field, 15> Fields{{
    {Id::StartLongitude, &SectionForm::StartLongitude, 3032, 180.0},
    {Id::StartLatitude, &SectionForm::StartLatitude, 3033, 90.0},
    {Id::EndLongitude, &SectionForm::EndLongitude, 3034, 180.0},
    {Id::EndLatitude, &SectionForm::EndLatitude, 3035, 90.0},
    {Id::Name, &SectionForm::TestingName},
    {Id::Direction, &SectionForm::TestingDirection},
    {Id::Location, &SectionForm::Location},
    {Id::Diameter, &SectionForm::PipeDiameter},
    {Id::Material, &SectionForm::PipeMaterial},
    {Id::PipeType, &SectionForm::PipeType},
    {Id::TaskNo, &SectionForm::TaskIndex},
    {Id::TaskName, &SectionForm::TaskName},
    {Id::Tester, &SectionForm::Tester},
    {Id::Company, &SectionForm::TestingCompany},
    {Id::PipeLength, &SectionForm::PipeLength, 3036},
}};

constexpr std::array<std::pair<int, std::string NewPipeDefaults::*>, 12> DefaultFields{{
    {Id::Name, &NewPipeDefaults::SectionName},
    {Id::StartLongitude, &NewPipeDefaults::StartLongitude},
    {Id::StartLatitude, &NewPipeDefaults::StartLatitude},
    {Id::EndLongitude, &NewPipeDefaults::EndLongitude},
    {Id::EndLatitude, &NewPipeDefaults::EndLatitude},
    {Id::TaskNo, &NewPipeDefaults::TaskNo},
    {Id::TaskName, &NewPipeDefaults::TaskName},
    {Id::Location, &NewPipeDefaults::Place},
    {Id::Diameter, &NewPipeDefaults::PipeDiameter},
    {Id::PipeLength, &NewPipeDefaults::PipeLength},
    {Id::Company, &NewPipeDefaults::Company},
    {Id::Tester, &NewPipeDefaults::Tester},
}};

constexpr std::array<const char*, 2> Directions{"顺流", "逆流"};
constexpr std::array<const char*, 3> PipeTypes{"雨水", "污水", "雨污合流"};
constexpr std::array<const char*, 20> Materials{
    "混凝土管",       "钢筋混凝土管",   "塑料管",           "PVC管",
    "铸铁管",         "钢管",           "聚乙烯塑钢缠绕管", "III级钢筋混凝土管",
    "HDPE塑钢缠绕管", "HDPE增强缠绕管", "HDPE双平壁钢管",   "HDPE双壁缠绕管",
    "HDPE增强中空管", "HDPE双壁波纹管", "HDPE单壁波纹管",   "钢带增强PE螺旋管",
    "PVC双壁波纹管",  "凯装PE排水管",   "砖土管",           "其他"};

bool IsSpace(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

// Year to second. The first place that doesn't match ends it; the rest counts 0.
std::array<int, 6> ScanDate(std::string_view text, char separator) {
    const std::array<char, 6> behind{separator, separator, ' ', ':', ':', '\0'};
    std::array<int, 6> parts{};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        while (!text.empty() && IsSpace(text.front())) {
            text.remove_prefix(1);
        }
        const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
        if (digits == 0) {
            break;
        }
        parts[i] = ParseInt(text.substr(0, digits));
        text.remove_prefix(digits);
        if (behind[i] != ' ') {  // a blank stands for any number of them
            if (text.empty() || text.front() != behind[i]) {
                break;
            }
            text.remove_prefix(1);
        }
    }
    return parts;
}

std::optional<std::chrono::local_seconds> MakeDate(const std::array<int, 6>& parts) {
    using namespace std::chrono;
    const auto [y, mo, d, h, mi, s] = parts;
    if (y < 1601 || y > 9999 || mo > 12 || d > 31 || h > 23 || mi > 59 || s > 59) {
        return std::nullopt;
    }
    const year_month_day date{year{y}, month{static_cast<unsigned>(mo)}, day{static_cast<unsigned>(d)}};
    return date.ok() ? std::optional(local_seconds(local_days{date} + hours{h} + minutes{mi} + seconds{s}))
                     : std::nullopt;
}

std::string NumberText(const SectionForm& form, const Field& field) {
    if (const Degrees* degrees = std::get_if<Degrees>(&field.Member)) {
        return FormatNumber(form.*(*degrees), DegreeDigits);
    }
    return FormatNumber(form.*std::get<Metres>(field.Member), MetreDigits);
}

SectionProblem Problem(int message, int control, int row = -1, const WellPair& wells = {}) {
    return {message, LoadMessage(message), control, row, wells};
}

SectionProblem NumberProblem(int message, const Field& field, std::vector<std::string> values) {
    SectionProblem problem = Problem(message, field.Control);
    values.insert(values.begin(), LoadMessage(field.NameMessage));
    problem.Text = FillText(problem.Text, values);
    return problem;
}

std::optional<SectionProblem> ReadNumber(const std::string& text, const Field& field, SectionForm& form) {
    const std::optional<double> value = ParseWholeDouble(text);
    const Degrees* degrees = std::get_if<Degrees>(&field.Member);
    if (!value || (degrees == nullptr && !std::isfinite(static_cast<float>(*value)))) {
        return NumberProblem(MessageNoNumber, field, {});
    }
    if (degrees != nullptr && std::fabs(*value) > field.Most) {
        return NumberProblem(MessageOutOfRange, field,
                             {FormatNumber(-field.Most, 1), FormatNumber(field.Most, 1)});
    }
    if (degrees != nullptr) {
        form.*(*degrees) = *value;
    } else {
        form.*std::get<Metres>(field.Member) = static_cast<float>(*value);
    }
    return std::nullopt;
}

bool HasRow(const SectionForm& form) {
    return form.SelectedRow >= 0 && form.SelectedRow < static_cast<int>(form.Wells.size());
}

}  // namespace

std::span<const char* const> SectionProposals(int control) {
    switch (control) {
        case Id::Direction:
            return Directions;
        case Id::PipeType:
            return PipeTypes;
        case Id::Material:
            return Materials;
        default:
            return {};
    }
}

bool SplitVideoTitle(std::string_view title, std::string& start, std::string& end) {
    const std::size_t dash = title.find('-');
    end.clear();
    if (dash == std::string_view::npos) {
        start = title;
    } else {
        start = TrimBlanks(title.substr(0, dash));
        end = TrimBlanks(title.substr(dash + 1));
    }
    const bool whole = !end.empty();
    if (!whole) {
        end = "E";
    }
    return whole;
}

std::optional<std::chrono::local_seconds> ParseTestingDate(std::string_view text) {
    if (GbkLength(text) < ShortestDate) {
        return std::nullopt;
    }
    const std::size_t dash = text.find('-');
    const bool dashes = dash != std::string_view::npos && dash > 0;
    return MakeDate(ScanDate(text, dashes ? '-' : '/'));
}

std::chrono::local_seconds ReadTestingDate(std::string_view text) {
    const std::optional<std::chrono::local_seconds> date = ParseTestingDate(text);
    return date ? *date : Clock().LocalNow();
}

std::string FormatTestingDate(std::chrono::local_seconds date) {
    return FormatTime(date, "%Y/%m/%d %H:%M:%S");
}

SectionForm MakeSectionForm(const std::vector<_TESTING_DATA>& sections, bool isNew) {
    _TESTING_DATA source;
    source.TestingDate = FormatTestingDate(Clock().LocalNow());
    if (!sections.empty()) {
        source = sections.front();
    }
    SectionForm form;
    form.StartLongitude = source.GpsXStart;
    form.StartLatitude = source.GpsYStart;
    form.EndLongitude = source.GpsXEnd;
    form.EndLatitude = source.GpsYEnd;
    form.PipeLength = static_cast<float>(ParseDouble(source.PipeLength));
    form.TestingName = source.TestingName;
    form.TestingDirection = source.TestingDirection;
    form.Location = source.Location;
    form.PipeDiameter = source.PipeDiameter;
    form.PipeMaterial = source.PipeMaterial;
    form.PipeType = source.PipeType;
    form.TaskIndex = source.TaskIndex;
    form.TaskName = source.TaskName;
    form.Tester = source.Tester;
    form.TestingCompany = source.TestingCompany;
    form.DetectionLength = source.DetectionLength.empty() ? source.PipeLength : source.DetectionLength;
    form.Date = ReadTestingDate(source.TestingDate);
    if (isNew) {
        if (form.PipeDiameter.empty()) {
            form.PipeDiameter = "0";
        }
        const auto propose = [](std::string& value, int control) {
            if (value.empty()) {
                value = SectionProposals(control).front();
            }
        };
        propose(form.PipeType, Id::PipeType);
        propose(form.TestingDirection, Id::Direction);
        propose(form.PipeMaterial, Id::Material);
    } else {
        form.Videos.push_back(source.FirstVideo());
        form.Wells.push_back({source.StartWell, source.EndWell});
        form.SelectedRow = 0;
    }
    return form;
}

void ShowSectionForm(const SectionForm& form, SectionTexts& texts, int unread) {
    for (const Field& field : Fields) {
        if (field.Control == unread) {
            return;
        }
        const Text* text = std::get_if<Text>(&field.Member);
        texts[field.Control] = text != nullptr ? form.*(*text) : NumberText(form, field);
    }
}

std::optional<SectionProblem> ReadSectionForm(const SectionTexts& texts, SectionForm& form) {
    for (const Field& field : Fields) {
        const std::string& typed = texts.at(field.Control);
        if (const Text* text = std::get_if<Text>(&field.Member)) {
            form.*(*text) = typed;
        } else if (std::optional<SectionProblem> problem = ReadNumber(typed, field, form)) {
            return problem;
        }
    }
    return std::nullopt;
}

void OfferNewPipeDefaults(SectionTexts& texts) {
    const NewPipeDefaults values = GetNewPipeDefaults();
    for (const auto& [control, field] : DefaultFields) {
        texts[control] = values.*field;
    }
    // On a first start; nobody knows the places of manholes by heart.
    for (const int control : {Id::StartLongitude, Id::StartLatitude, Id::EndLongitude, Id::EndLatitude}) {
        if (texts[control].empty()) {
            texts[control] = "0";
        }
    }
}

void KeepNewPipeDefaults(const SectionTexts& texts) {
    NewPipeDefaults values;
    for (const auto& [control, field] : DefaultFields) {
        values.*field = texts.at(control);
    }
    SetNewPipeDefaults(values);
}

WellPair ShownWells(const SectionForm& form) {
    return HasRow(form) ? form.Wells[static_cast<std::size_t>(form.SelectedRow)] : WellPair();
}

void StoreWells(SectionForm& form, const WellPair& typed) {
    if (HasRow(form)) {
        form.Wells[static_cast<std::size_t>(form.SelectedRow)] = typed;
    }
}

namespace {

// "WS-A1-WS-A2" can be split at each of its "-", and only the operator knows where. The first is offered
// first.
WellPair ChooseWells(const std::string& title, const WellPair& first) {
    std::vector<WellPair> pairs;
    std::vector<std::string> options;
    for (std::size_t at = title.find('-'); at != std::string::npos; at = title.find('-', at + 1)) {
        WellPair pair{std::string(TrimBlanks(std::string_view(title).substr(0, at))),
                      std::string(TrimBlanks(std::string_view(title).substr(at + 1)))};
        if (!pair.Start.empty() && !pair.End.empty()) {
            options.push_back(pair.Start + "  —  " + pair.End);
            pairs.push_back(std::move(pair));
        }
    }
    if (pairs.size() < 2) {
        return first;
    }
    const std::string text = FillText(LoadMessage(MessageWhichWells), {title});
    return pairs[Prompts().Choose(MessageWhichWells, text, options)];
}

}  // namespace

bool AddVideos(SectionForm& form, const std::vector<std::string>& paths) {
    const std::size_t before = form.Videos.size();
    for (const std::string& path : paths) {
        if (std::any_of(form.Videos.begin(), form.Videos.end(),
                        [&](const std::string& row) { return EqualNoCase(row, path); })) {
            continue;
        }
        WellPair wells;
        const std::string title = GetFileTitle(path);
        if (!SplitVideoTitle(title, wells.Start, wells.End)) {
            if (!AskOkCancel(2181)) {
                break;
            }
        } else {
            wells = ChooseWells(title, wells);
        }
        form.Videos.push_back(path);
        form.Wells.push_back(std::move(wells));
    }
    if (form.Videos.size() == before) {
        return false;
    }
    form.SelectedRow = static_cast<int>(form.Videos.size()) - 1;
    return true;
}

void RemoveSelectedVideo(SectionForm& form) {
    if (HasRow(form)) {
        form.Videos.erase(form.Videos.begin() + form.SelectedRow);
        form.Wells.erase(form.Wells.begin() + form.SelectedRow);
        form.SelectedRow = form.Videos.empty() ? -1 : 0;
    }
}

void CalculatePipeLength(SectionForm& form) {
    const double distance = GeoDistance(GeoPoint(form.StartLongitude, form.StartLatitude),
                                        GeoPoint(form.EndLongitude, form.EndLatitude));
    form.PipeLength = static_cast<float>(RoundTo(distance, 2));
}

namespace {

std::optional<SectionProblem> CheckWells(const SectionForm& form) {
    for (std::size_t row = 0; row < form.Videos.size(); ++row) {
        WellPair wells;
        (void)SplitVideoTitle(GetFileTitle(form.Videos[row]), wells.Start, wells.End);
        if (wells.Start.empty()) {
            return Problem(2168, Id::StartWell, static_cast<int>(row), wells);
        }
        if (wells.End.empty()) {
            return Problem(2169, Id::EndWell, static_cast<int>(row), wells);
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<SectionProblem> CheckSectionForm(const SectionForm& form) {
    std::vector<SectionProblem> problems;
    if (form.TestingName.empty()) {
        problems.push_back(Problem(2166, Id::Name));
    }
    if (form.Videos.empty()) {
        problems.push_back(Problem(2167, Id::Videos));
    }
    if (const std::optional<SectionProblem> wells = CheckWells(form)) {
        problems.push_back(*wells);
    }
    if (form.PipeLength == 0.0F) {
        problems.push_back(Problem(2170, Id::PipeLength));
    }
    if (ParseInt(form.PipeDiameter) == 0) {
        problems.push_back(Problem(2171, Id::Diameter));
    }
    if (problems.empty()) {
        return std::nullopt;
    }
    // All at once, so that the operator doesn't run into one after the other.
    for (std::size_t i = 1; i < problems.size(); ++i) {
        problems.front().Text += "\r\n" + problems[i].Text;
    }
    return problems.front();
}

std::optional<_TESTING_DATA> WithPipeLength(const _TESTING_DATA& section) {
    SectionForm form = MakeSectionForm({section}, false);
    SectionTexts texts;
    ShowSectionForm(form, texts);
    if (ReadSectionForm(texts, form) || !(form.PipeLength > 0.0F)) {
        return std::nullopt;
    }
    _TESTING_DATA changed = section;
    changed.DistanceStart = 0.0F;
    changed.DistanceEnd = form.PipeLength;
    return changed;
}

std::vector<_TESTING_DATA> MakeSections(const SectionForm& form, const std::vector<_TESTING_DATA>& sections) {
    _TESTING_DATA record;
    if (!sections.empty()) {
        record = sections.front();
    }
    record.GpsXStart = form.StartLongitude;
    record.GpsYStart = form.StartLatitude;
    record.GpsXEnd = form.EndLongitude;
    record.GpsYEnd = form.EndLatitude;
    record.TestingName = form.TestingName;
    record.TestingDate = FormatTestingDate(form.Date);
    record.TaskIndex = form.TaskIndex;
    record.TestingDirection = form.TestingDirection;
    record.TaskName = form.TaskName;
    record.Location = form.Location;
    record.PipeType = form.PipeType;
    record.PipeMaterial = form.PipeMaterial;
    record.TestingCompany = form.TestingCompany;
    record.Tester = form.Tester;
    record.PipeLength = FormatFixed(form.PipeLength, 1);
    record.DetectionLength = form.DetectionLength.empty() ? record.PipeLength : form.DetectionLength;
    record.PipeDiameter = form.PipeDiameter;
    record.DistanceStart = 0.0F;
    record.DistanceEnd = form.PipeLength;

    std::vector<_TESTING_DATA> result;
    for (std::size_t row = 0; row < form.Videos.size(); ++row) {
        record.StartWell = form.Wells[row].Start;
        record.EndWell = form.Wells[row].End;
        record.VideoFileList = form.Videos[row];
        result.push_back(record);
    }
    return result;
}
