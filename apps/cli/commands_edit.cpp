// Changes of single sections and records, through the same operations as the windows.
#include <cmath>
#include <limits>
#include <ostream>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/commands.h"
#include "apps/cli/wherechoice.h"
#include "bulk/edits.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"
#include "store/CDbRec.h"
#include "store/records/fields.h"

namespace {

_REC_DATA FindRecord(CDbRec& database, std::int32_t id) {
    CRecDataArray records;
    if (!database.ReadRecords(-1, records, false)) {
        throw std::runtime_error("the records can't be read");
    }
    for (const _REC_DATA& record : records) {
        if (record.ID == id) {
            return record;
        }
    }
    throw std::runtime_error("no record with the ID " + FormatInt(id));
}

void SetValue(std::string& member, const std::string&, const std::string& text) {
    member = text;
}

template <class Integer>
void SetValue(Integer& member, const std::string& name,
              const std::string& text) requires std::is_integral_v<Integer> {
    const std::optional<std::int64_t> value = ParseWholeInt(text);
    if (!value || *value < std::numeric_limits<Integer>::min() ||
        *value > std::numeric_limits<Integer>::max()) {
        throw std::runtime_error(name + ": no usable whole number: " + text);
    }
    member = static_cast<Integer>(*value);
}

template <class Float>
void SetValue(Float& member, const std::string& name,
              const std::string& text) requires std::is_floating_point_v<Float> {
    const std::optional<double> value = ParseWholeDouble(text);
    if (!value || std::fabs(*value) > static_cast<double>(std::numeric_limits<Float>::max())) {
        throw std::runtime_error(name + ": no usable number: " + text);
    }
    member = static_cast<Float>(*value);
}

template <class Record>
bool SetField(Record& record, std::span<const FieldOf<Record>> fields, const std::string& name,
              const std::string& text) {
    for (const auto& field : fields) {
        if (field.Role == FieldRole::Value && EqualNoCase(name, field.Name)) {
            std::visit([&](auto member) { SetValue(record.*member, name, text); }, field.Member);
            return true;
        }
    }
    return false;
}

// Pictures stand in a list, but are edited by their columns.
bool SetPictureField(_REC_DATA& record, const std::string& name, const std::string& text) {
    for (int i = 0; i < 2; ++i) {
        const bool path = EqualNoCase(name, "Picture" + FormatInt(i + 1));
        if (!path && !EqualNoCase(name, "PicTimeInVideo" + FormatInt(i + 1))) {
            continue;
        }
        if (record.Pictures.GetSize() <= i) {
            record.Pictures.SetSize(i + 1);
        }
        _PIC_DATA& picture = record.Pictures[i];
        if (path) {
            picture.Picture = text;
        } else {
            SetValue(picture.PicTimeInVideo, name, text);
        }
        return true;
    }
    return false;
}

bool SetAnyField(_TESTING_DATA& section, const std::string& name, const std::string& text) {
    return SetField(section, TestingFields(), name, text);
}

bool SetAnyField(_REC_DATA& record, const std::string& name, const std::string& text) {
    return SetPictureField(record, name, text) || SetField(record, RecordFields(), name, text);
}

template <class Record>
void SetFields(Record& record, const CArguments& arguments) {
    for (std::size_t i = 1; i < arguments.Places().size(); ++i) {
        const std::string& word = arguments.Places()[i];
        const std::size_t equals = word.find('=');
        if (equals == std::string::npos) {
            throw CUsageError("FIELD=VALUE is needed instead of " + word);
        }
        const std::string name = word.substr(0, equals);
        if (!SetAnyField(record, name, word.substr(equals + 1))) {
            throw std::runtime_error(name + " isn't a field that can be changed");
        }
    }
}

// A project that is open, and which of its rows the call is about.
class CTarget {
public:
    CTarget(const CommandContext& context, const char* option, bool withFields)
        : Arguments(context.Words, {option}, {}) {
        Arguments.ExpectPlaces(withFields ? 2 : 1, withFields ? std::string::npos : 1);
        ID = Arguments.RequireId(option);
        OpenProject(Database, context, Arguments.Places()[0]);
    }

    CArguments Arguments;
    CDbRec Database;
    std::int32_t ID = 0;
};

FieldChange ReadChange(const std::string& word) {
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos) {
        throw CUsageError("FIELD=VALUE is needed instead of " + word);
    }
    std::string name = word.substr(0, equals);
    for (const QueryName& known : FieldNames()) {
        if (!known.OfRecord && EqualNoCase(known.Name, name)) {
            name = known.Column;
        }
    }
    for (const char* column : BulkSectionColumns()) {
        if (EqualNoCase(column, name)) {
            return {column, word.substr(equals + 1)};
        }
    }
    throw CUsageError(name + " isn't a field that can be changed in many sections");
}

}  // namespace

int RunEditSections(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--where"}, {"--dry-run"});
    arguments.ExpectPlaces(2, std::string::npos);
    (void)arguments.Require("--where");
    std::vector<FieldChange> changes;
    for (std::size_t i = 1; i < arguments.Places().size(); ++i) {
        changes.push_back(ReadChange(arguments.Places()[i]));
    }
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    CQueryRows rows;
    std::vector<const _TESTING_DATA*> sections;
    for (const std::int32_t id : ChosenRows(database, arguments, rows).Sections) {
        sections.push_back(rows.FindSection(id));
    }
    const SectionPlan plan = PlanSectionEdits(sections, changes);
    if (!plan.Refused.empty()) {
        throw std::runtime_error(plan.Refused);
    }
    if (!arguments.Has("--dry-run") && !ApplyEdits(database, plan.Edits)) {
        return 1;
    }
    std::size_t changed = 0;
    for (const PlannedEdit<_TESTING_DATA>& edit : plan.Edits) {
        for (const PlannedField& field : edit.Fields) {
            context.Out << "section " << edit.Changed.ID << ": " << field.Column << " \"" << field.Before
                        << "\" becomes \"" << field.After << "\"\n";
        }
        if (!edit.Fields.empty()) {
            ++changed;
        }
    }
    context.Out << changed << " of " << sections.size() << " sections\n";
    return 0;
}

int RunGpsCalc(const CommandContext& context) {
    CTarget target(context, "--section", false);
    return target.Database.RecalcRecordGps(target.ID) ? 0 : 1;
}

int RunDeleteSection(const CommandContext& context) {
    CTarget target(context, "--section", false);
    return target.Database.DeleteTesting(FindSection(target.Database, target.ID)) ? 0 : 1;
}

int RunDeleteRecord(const CommandContext& context) {
    CTarget target(context, "--record", false);
    return target.Database.DeleteRecord(FindRecord(target.Database, target.ID).ID) ? 0 : 1;
}

int RunEditSection(const CommandContext& context) {
    CTarget target(context, "--section", true);
    _TESTING_DATA section = FindSection(target.Database, target.ID);
    SetFields(section, target.Arguments);
    return target.Database.UpdateTesting(section) ? 0 : 1;
}

int RunEditRecord(const CommandContext& context) {
    CTarget target(context, "--record", true);
    _REC_DATA record = FindRecord(target.Database, target.ID);
    SetFields(record, target.Arguments);
    return target.Database.UpdateRecord(record) ? 0 : 1;
}
