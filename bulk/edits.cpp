#include "bulk/edits.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "history/restorepoints.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/records/fields.h"
#include "store/sectionform.h"
#include "store/stepnames.h"

namespace {

constexpr int MessageNoDate = 3935;
constexpr int MessageNoWell = 3936;
constexpr int MessageNoGrade = 3937;
constexpr int MessageNoClock = 3938;
constexpr int MessageNotOfManholes = 3939;

using Id = SectionControl;

struct FormColumn {
    const char* Column;
    int Control;
};

constexpr FormColumn OfForm[] = {
    {"TestingName", Id::Name},         {"TaskIndex", Id::TaskNo},
    {"TaskName", Id::TaskName},        {"TestingDirection", Id::Direction},
    {"Location", Id::Location},        {"PipeType", Id::PipeType},
    {"PipeMaterial", Id::Material},    {"PipeDiameter", Id::Diameter},
    {"TestingCompany", Id::Company},   {"Tester", Id::Tester},
    {"PipeLength", Id::PipeLength},    {"DetectionLength", Id::DetectionLength},
    {"GpsXStart", Id::StartLongitude}, {"GpsYStart", Id::StartLatitude},
    {"GpsXEnd", Id::EndLongitude},     {"GpsYEnd", Id::EndLatitude},
};

constexpr const char* SectionColumns[] = {
    "Tester",      "TestingCompany",  "Location",         "TaskIndex",    "TaskName",
    "TestingName", "TestingDate",     "PipeType",         "PipeMaterial", "PipeDiameter",
    "PipeLength",  "DetectionLength", "TestingDirection", "StartWell",    "EndWell",
    "GpsXStart",   "GpsYStart",       "GpsXEnd",          "GpsYEnd",
};
constexpr const char* RecordColumns[] = {"DefectLevel", "Comment", "DirectionStart", "DirectionEnd"};

int ControlOf(const std::string& column) {
    const auto* const found = std::find_if(std::begin(OfForm), std::end(OfForm),
                                           [&](const FormColumn& one) { return column == one.Column; });
    return found == std::end(OfForm) ? 0 : found->Control;
}

// A section with which the form has no quarrel, so that what it says is about what is changed.
_TESTING_DATA GoodSection() {
    _TESTING_DATA section;
    section.TestingName = "-";
    section.StartWell = "A";
    section.EndWell = "B";
    section.VideoFileList = "A-B.avi";
    section.PipeLength = section.DetectionLength = "1";
    section.PipeDiameter = "1";
    return section;
}

// The values as the form would store them; why not, if it wouldn't.
std::string FormValues(const std::vector<FieldChange>& changes, _TESTING_DATA& values) {
    values = GoodSection();
    SectionForm form = MakeSectionForm({values}, false);
    SectionTexts texts;
    ShowSectionForm(form, texts);
    for (const FieldChange& change : changes) {
        if (const int control = ControlOf(change.Column); control != 0) {
            texts[control] = change.Value;
        }
    }
    std::optional<SectionProblem> problem = ReadSectionForm(texts, form);
    problem = problem ? problem : CheckSectionForm(form);
    if (problem) {
        return problem->Text;
    }
    values = MakeSections(form, {values}).front();
    for (const FieldChange& change : changes) {
        const bool start = change.Column == "StartWell";
        if (start || change.Column == "EndWell") {
            (start ? values.StartWell : values.EndWell) = change.Value;
            if (TrimBlanks(change.Value).empty()) {
                return LoadMessage(MessageNoWell);
            }
        } else if (change.Column == "TestingDate") {
            const auto parsed = ParseTestingDate(change.Value);
            if (!parsed) {
                return FillText(LoadMessage(MessageNoDate), {change.Value});
            }
            values.TestingDate = FormatTestingDate(*parsed);
        }
    }
    return {};
}

template <class Record>
const FieldOf<Record>* FindField(std::span<const FieldOf<Record>> fields, const std::string& column) {
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [&](const FieldOf<Record>& field) { return column == field.Name; });
    return found == fields.end() ? nullptr : &*found;
}

std::string Shown(const _TESTING_DATA& section, const FieldOf<_TESTING_DATA>& field) {
    if (const auto* text = std::get_if<std::string _TESTING_DATA::*>(&field.Member)) {
        return section.*(*text);
    }
    if (const auto* number = std::get_if<double _TESTING_DATA::*>(&field.Member)) {
        return FormatNumber(section.*(*number), 9);
    }
    return {};
}

PlannedEdit<_TESTING_DATA> PlanSection(const _TESTING_DATA& section, const std::vector<FieldChange>& changes,
                                       const _TESTING_DATA& values) {
    PlannedEdit<_TESTING_DATA> edit;
    edit.Changed = section;
    for (const FieldChange& change : changes) {
        const auto* field = FindField(TestingFields(), change.Column);
        std::visit([&](auto member) { edit.Changed.*member = values.*member; }, field->Member);
        if (change.Column == "PipeLength") {
            edit.Changed.DistanceStart = 0.0F;  // as the form does
            edit.Changed.DistanceEnd = values.DistanceEnd;
        }
        if (std::string before = Shown(section, *field), after = Shown(edit.Changed, *field);
            before != after) {
            edit.Fields.push_back({change.Column, std::move(before), std::move(after)});
        }
    }
    return edit;
}

// The number if it is a whole one within the limits.
std::optional<std::uint8_t> Whole(const std::string& text, int least, int most) {
    const auto number = ParseWholeInt(std::string(TrimBlanks(text)));
    return number && *number >= least && *number <= most ? std::optional(static_cast<std::uint8_t>(*number))
                                                         : std::nullopt;
}

std::string PlanClock(const FieldChange& change, _REC_DATA& record) {
    const bool start = change.Column == "DirectionStart";
    const auto hour = Whole(change.Value, start ? 1 : 0, 12);
    if (!hour) {
        return LoadMessage(MessageNoClock);
    }
    (start ? record.DirectionStart : record.DirectionEnd) = *hour;
    return {};
}

std::string PlanGrade(const FieldChange& change, const std::vector<std::string>& texts, bool keepComment,
                      _REC_DATA& record) {
    const auto grade = Whole(change.Value, 1, static_cast<int>(texts.size()));
    if (!grade || texts[*grade - 1U].empty()) {
        return FillText(LoadMessage(MessageNoGrade), {record.DefectCode + " " + change.Value});
    }
    const std::size_t former = record.DefectLevel;
    if (!keepComment && former >= 1 && former <= texts.size() && record.Comment == texts[former - 1]) {
        record.Comment = texts[*grade - 1U];
    }
    record.DefectLevel = *grade;
    return {};
}

std::string PlanField(CDbRec& database, const FieldChange& change, bool keepComment, _REC_DATA& record) {
    if (change.Column == "Comment") {
        record.Comment = change.Value;
        return {};
    }
    if (record.IsJCJ() || record.IsPipeNormal()) {
        return LoadMessage(MessageNotOfManholes);
    }
    if (change.Column != "DefectLevel") {
        return PlanClock(change, record);
    }
    std::vector<std::string> texts;
    if (!database.LoadDefectLevels(record.DefectCode, &texts, nullptr)) {
        return FillText(LoadMessage(MessageNoGrade), {record.DefectCode + " " + change.Value});
    }
    return PlanGrade(change, texts, keepComment, record);
}

void AddDifferences(const _REC_DATA& before, PlannedEdit<_REC_DATA>& edit) {
    const auto add = [&](const char* column, const std::string& then, const std::string& now) {
        if (then != now) {
            edit.Fields.push_back({column, then, now});
        }
    };
    const _REC_DATA& after = edit.Changed;
    add("DefectLevel", FormatInt(before.DefectLevel), FormatInt(after.DefectLevel));
    add("Comment", before.Comment, after.Comment);
    add("DirectionStart", FormatInt(before.DirectionStart), FormatInt(after.DirectionStart));
    add("DirectionEnd", FormatInt(before.DirectionEnd), FormatInt(after.DirectionEnd));
}

template <class Row>
bool Apply(CDbRec& database, const std::vector<PlannedEdit<Row>>& edits, bool (CDbRec::*update)(const Row&),
           int message) {
    const bool any = std::any_of(edits.begin(), edits.end(), [](const PlannedEdit<Row>& edit) {
        return edit.Refused.empty() && !edit.Fields.empty();
    });
    if (!any) {
        return true;
    }
    if (!MakeRestorePoint(database, PointBulkEdit)) {
        return false;
    }
    const CDbStep step(database, StepBulkEdit);
    try {
        CDbBatch batch(database);
        for (const PlannedEdit<Row>& edit : edits) {
            if (edit.Refused.empty() && !edit.Fields.empty() && !(database.*update)(edit.Changed)) {
                return false;
            }
        }
        batch.Commit();
        return true;
    } catch (const CDbError& error) {
        ShowFailure(message, error);
        return false;
    }
}

}  // namespace

std::span<const char* const> BulkSectionColumns() {
    return SectionColumns;
}

std::span<const char* const> BulkRecordColumns() {
    return RecordColumns;
}

SectionPlan PlanSectionEdits(const std::vector<const _TESTING_DATA*>& sections,
                             const std::vector<FieldChange>& changes) {
    SectionPlan plan;
    _TESTING_DATA values;
    plan.Refused = FormValues(changes, values);
    if (plan.Refused.empty()) {
        for (const _TESTING_DATA* section : sections) {
            plan.Edits.push_back(PlanSection(*section, changes, values));
        }
    }
    return plan;
}

RecordEdits PlanRecordEdits(CDbRec& database, const std::vector<const _REC_DATA*>& records,
                            const std::vector<FieldChange>& changes) {
    const bool keepComment = std::any_of(
        changes.begin(), changes.end(), [](const FieldChange& change) { return change.Column == "Comment"; });
    RecordEdits edits;
    for (const _REC_DATA* record : records) {
        PlannedEdit<_REC_DATA> edit;
        edit.Changed = *record;
        for (const FieldChange& change : changes) {
            const std::string refused = PlanField(database, change, keepComment, edit.Changed);
            edit.Refused = edit.Refused.empty() ? refused : edit.Refused;
        }
        AddDifferences(*record, edit);
        edits.push_back(std::move(edit));
    }
    return edits;
}

bool ApplyEdits(CDbRec& database, const SectionEdits& edits) {
    return Apply(database, edits, &CDbRec::UpdateTesting, 2008);
}

bool ApplyEdits(CDbRec& database, const RecordEdits& edits) {
    return Apply(database, edits, &CDbRec::UpdateRecord, 2015);
}
