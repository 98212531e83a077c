#include "apps/docxgenerator/configlists.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <optional>
#include <set>

#include "apps/docxgenerator/CConfigFile.h"
#include "assessment/projectstatistics.h"
#include "reports/defecttypes.h"
#include "reports/manholes.h"
#include "reports/reporttexts.h"
#include "reports/tablesort.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/textcodec.h"

namespace {

using TextList = std::vector<std::string>;

constexpr const char* NoValue = "-";
constexpr int FormRowWidth = 8;

void Append(TextList& list, std::initializer_list<std::string> texts) {
    list.insert(list.end(), texts);
}

std::string CountText(std::size_t count) {
    return FormatInt(static_cast<std::int64_t>(count));
}

std::string OrZero(std::string text) {
    return text.empty() ? "0" : text;
}

std::string OrNone(std::string text) {
    return text.empty() ? NoValue : text;
}

void AppendRating(TextList& rows, const ConfigElement& evaluation, std::initializer_list<const char*> names) {
    for (const char* name : names) {
        rows.push_back(OrNone(ValueOf(evaluation, name)));
    }
}

TextList SectionRows(const CConfigFile& config) {
    TextList rows = {CountText(config.Sections().size())};
    for (const ConfigSection& section : config.Sections()) {
        const ConfigElement& evaluation = *section.Evaluation;
        Append(rows, {ValueOf(evaluation, "name"), section.Label(), ValueOf(evaluation, "dia"),
                      ValueOf(evaluation, "length"), ValueOf(evaluation, "mar")});
        AppendRating(rows, evaluation, {"avgJG", "maxJG", "levelJG", "smJG", "riJG"});
        // Told without defects too, unlike the other ratings.
        rows.push_back(OrNone(ValueOf(evaluation, "strRIDesp")));
        AppendRating(rows, evaluation, {"avgGN", "maxGN", "levelGN", "smGN", "riGN", "EvaluatethisGN"});
    }
    return rows;
}

struct IndexNames {
    const char* Index;
    const char* Text;
    int FirstMessage;  // of the texts of the levels
};

constexpr IndexNames StructuralIndex = {"riJG", "EvaluatethisJG", 2339};
constexpr IndexNames FunctionalIndex = {"riGN", "EvaluatethisGN", 2347};

// By what the file says of the level, since the index that it tells is rounded and may lie on the other side
// of a bound. A text of another language file says nothing.
std::string IndexLevel(const ConfigElement& evaluation, const IndexNames& names, double index) {
    constexpr int FirstLabel = 2331;
    constexpr int Levels = 4;
    const std::string told = ValueOf(evaluation, names.Text);
    for (int i = 0; i < Levels && !told.empty(); ++i) {
        if (told == ThroughGbk(LoadMessage(names.FirstMessage + i))) {
            return LoadMessage(FirstLabel + i);
        }
    }
    return FullIndexLevel(static_cast<float>(index));
}

// The number of defects stays 0 for a class without an index: it has no level then.
void ReadIndex(const ConfigElement& evaluation, const IndexNames& names, std::size_t defects,
               std::string& level, std::uint32_t& count) {
    const std::string text = ValueOf(evaluation, names.Index);
    if (text.empty()) {
        return;
    }
    const std::optional<double> index = ParseWholeDouble(text);
    if (!index) {
        throw CConfigError(ConfigFault::NoNumber, {evaluation.Name(), names.Index, text});
    }
    level = IndexLevel(evaluation, names, *index);
    count = static_cast<std::uint32_t>(std::max<std::size_t>(defects, 1));
}

// The statistics of the levels, by the rules that made the file.
ProjectStatistics LevelStatistics(const CConfigFile& config) {
    std::vector<SectionGrade> grades;
    for (const ConfigSection& section : config.Sections()) {
        const auto count = [&](bool (ConfigRecord::*isOfClass)() const) {
            return static_cast<std::size_t>(
                std::count_if(section.Records.begin(), section.Records.end(),
                              [&](const ConfigRecord& record) { return (record.*isOfClass)(); }));
        };
        SectionGrade& grade = grades.emplace_back();
        grade.Section.TestingName = ValueOf(*section.Evaluation, "name");
        grade.Section.StartWell = ValueOf(*section.Evaluation, "strStartWell");
        grade.Section.EndWell = ValueOf(*section.Evaluation, "strEndWell");
        grade.Section.PipeLength = ValueOf(*section.Data, "PIPELENGTH");
        ReadIndex(*section.Evaluation, StructuralIndex, count(&ConfigRecord::IsStructural),
                  grade.Result.riLevelJG, grade.Result.mergedJG);
        ReadIndex(*section.Evaluation, FunctionalIndex, count(&ConfigRecord::IsFunctional),
                  grade.Result.riLevelGN, grade.Result.mergedGN);
    }
    return MakeProjectStatistics(grades);
}

void AppendPipes(TextList& strings, const CConfigFile& config) {
    // The list has no manholes. Like it, these are the first of each pair of manholes, in the same order.
    TextList labels;
    std::set<std::string> known;
    for (const ConfigSection& section : config.Sections()) {
        if (known.insert(section.Label()).second) {
            labels.push_back(section.Label());
        }
    }
    const std::vector<const ConfigElement*> pipes = config.Rows("PipeSections");
    if (pipes.size() != labels.size()) {
        throw CConfigError(ConfigFault::Count,
                           {"PipeSections", CountText(pipes.size()), CountText(labels.size())});
    }
    const std::string diameter = LoadMessage(2475);
    float total = 0.0F;  // the rounding of reports, see AddSections there
    strings.push_back(FormatOneDecimal(static_cast<double>(pipes.size())));
    for (std::size_t i = 0; i < pipes.size(); ++i) {
        const ConfigElement& pipe = *pipes[i];
        const double length = ParseDouble(ValueOf(pipe, "PipeLength"));
        Append(strings,
               {ValueOf(pipe, "Name"), labels[i],
                diameter + " " + OrZero(ValueOf(pipe, "Diameter")) + " mm, " + ValueOf(pipe, "PipeMaterial"),
                FormatNumber(length, 2)});
        total += static_cast<float>(length);
    }
    strings.push_back(FormatOneDecimal(static_cast<double>(total)));
}

void AppendTypes(ReportLists& lists, const CConfigFile& config) {
    for (const ConfigElement* slice : config.Rows("PieCharts")) {
        const std::string name = ValueOf(*slice, "name");
        if (name.empty()) {
            continue;  // a code of the criterion that the format has no element for
        }
        const auto types = KnownDefectTypes();
        const auto type = std::find_if(types.begin(), types.end(),
                                       [&](const DefectType& known) { return name == known.Label; });
        if (type == types.end()) {
            throw CConfigError(ConfigFault::NoDefect, {name});
        }
        lists.Codes.emplace_back(type->Code);
        lists.Names.push_back(name);
        lists.DefectCountsByType.push_back(static_cast<std::uint32_t>(NumberOf(*slice, "value")));
        lists.ProjectStrings.push_back(name);
        const ConfigElement& counts = config.Part(type->Outer, type->Inner);
        for (const char* level : {"level0", "level1", "level2", "level3"}) {
            lists.ProjectStrings.push_back(FormatInt(NumberOf(counts, level)));
        }
    }
}

void AppendDefects(ReportLists& lists, const CConfigFile& config) {
    const std::vector<const ConfigElement*> sentences = config.Rows("defeats123");
    // By section; those that nothing tells the section of come last.
    const std::vector<int>& sections = config.SentenceSections();
    std::vector<std::size_t> order(sentences.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return static_cast<unsigned int>(sections[a]) < static_cast<unsigned int>(sections[b]);
    });
    TextList& strings = lists.ProjectStrings;
    strings.push_back(CountText(sentences.size()));
    lists.DefectCountsByLevel.assign(Grades, 0);
    for (const std::size_t i : order) {
        const ConfigElement& sentence = *sentences[i];
        const ConfigRecord* record = config.SentenceRecords()[i];
        const int section = sections[i];
        const std::int64_t level = NumberOf(sentence, "level");
        if (level >= 1 && level <= static_cast<std::int64_t>(Grades)) {
            ++lists.DefectCountsByLevel[static_cast<std::size_t>(level) - 1];
        }
        const std::string name =
            section < 0 ? std::string()
                        : ValueOf(*config.Sections()[static_cast<std::size_t>(section)].Evaluation, "name");
        const std::string clock =
            record == nullptr ? ValueOf(sentence, "location") : "\n(" + ValueOf(*record->Row, "pos") + ")";
        Append(strings,
               {name, ValueOf(sentence, "GetSEWellName"), OrZero(ValueOf(sentence, "Diameter")),
                ValueOf(sentence, "PipeMaterial"),
                record == nullptr ? std::string() : ValueOf(*record->Row, "Length"),
                ValueOf(sentence, "place"), ValueOf(sentence, "Name") + clock, FormatInt(level), ""});
    }
}

void AppendRow(TextList& rows, const ConfigRecord& record) {
    const ConfigElement& row = *record.Row;
    Append(rows, {record.Position(), ValueOf(row, "strFullName"), ValueOf(row, "strEvaluateValue"),
                  ValueOf(row, "strDefectLevel"), ValueOf(row, "strComment"), ValueOf(row, "pic1"),
                  ValueOf(row, "pic2"), ValueOf(row, "pos")});
}

void AppendForms(ReportLists& lists, const CConfigFile& config) {
    TextList forms;
    std::size_t number = 0;
    for (auto section = config.Sections().rbegin(); section != config.Sections().rend(); ++section) {
        TextList rows;
        for (const ConfigRecord& record : section->Records) {
            AppendRow(record.IsManhole() ? lists.WellPictureRows : rows, record);
        }
        if (rows.empty()) {
            continue;
        }
        TableSort(rows, FormRowWidth, 0, 0, -1, false, false, false);
        ++number;
        forms.push_back(CountText(rows.size() / FormRowWidth));
        const auto data = [&](const char* name) { return ValueOf(*section->Data, name); };
        const std::string detection = data("CHECKLENGTH");
        Append(forms,
               {data("strTestingName"), data("FileNameVIDEO"), ValueOf(*section->Evaluation, "strStartWell"),
                ValueOf(*section->Evaluation, "strEndWell"), data("strLayingTime"), data("strDepthStart"),
                data("strDepthEnd"), data("strPipeType"), data("strPipeMaterial"), data("strPipeDiameter"),
                data("strTestingDirection"), data("PIPELENGTH"),
                detection.empty() ? data("PIPELENGTH") : detection, data("xiufu"), data("yanghu"),
                data("strLocation"), data("checkTime")});
        std::move(rows.begin(), rows.end(), std::back_inserter(forms));
    }
    lists.ProjectStrings.push_back(CountText(number));
    std::move(forms.begin(), forms.end(), std::back_inserter(lists.ProjectStrings));
}

ManholeCounts ReadManholes(const CConfigFile& config) {
    const std::vector<const ConfigElement*> rows = config.Rows("Jcjs");
    if (rows.size() != ManholeTypes) {
        throw CConfigError(ConfigFault::Count, {"Jcjs", CountText(rows.size()), CountText(ManholeTypes)});
    }
    ManholeCounts counts{};
    for (std::size_t type = 0; type < ManholeTypes; ++type) {
        for (std::size_t column = 0; column < ManholeColumns; ++column) {
            const std::string name = "icol" + CountText(column);
            counts[type][column] = static_cast<int>(NumberOf(*rows[type], name.c_str()));
        }
    }
    return counts;
}

}  // namespace

ReportLists ListsFromConfig(const CConfigFile& config) {
    ReportLists lists;
    lists.SectionRows = SectionRows(config);
    ProjectStatistics statistics = LevelStatistics(config);
    lists.ShortRows = std::move(statistics.ShortRows);
    lists.LevelCountRows = std::move(statistics.LevelCountRows);
    lists.LevelLengthRows = std::move(statistics.LevelLengthRows);

    const ConfigElement& project = config.Project();
    Append(lists.ProjectStrings,
           {ValueOf(project, "strProjectName"), "", ValueOf(project, "Location"),
            ValueOf(project, "checkDate"), ValueOf(project, "TestingCompany"), ValueOf(project, "Tester")});
    AppendPipes(lists.ProjectStrings, config);
    AppendTypes(lists, config);
    AppendDefects(lists, config);
    AppendForms(lists, config);
    lists.WellDefectRows = {"0"};
    lists.WellTotalRows = WellTotalRows(ReadManholes(config));
    return lists;
}
