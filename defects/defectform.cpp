#include "defects/defectform.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <variant>

#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"
#include "store/CDbRec.h"

namespace {

constexpr int MessageNoNumber = 3170;
constexpr int MessageOutOfRange = 3171;
// As they are stored.
constexpr int MetreDigits = 3;
constexpr int DegreeDigits = 12;
constexpr std::string_view ManholeMark = "(JCJ_";

using Id = DefectControl;
using Metres = float _REC_DATA::*;
using Degrees = double _REC_DATA::*;

struct Field {
    int Control;
    int Caption;  // message number
    std::string DefectNumbers::*Typed;
    std::variant<Metres, Degrees> Member;
    double Most = 0.0;  // of degrees, on both sides of 0
};

// In the order of reading.
const std::array<Field, 4> Fields{{
    {Id::StartDistance, 208, &DefectNumbers::StartDistance, &_REC_DATA::DistanceStart},
    {Id::Longitude, 209, &DefectNumbers::Longitude, &_REC_DATA::GpsX, 180.0},
    {Id::Latitude, 210, &DefectNumbers::Latitude, &_REC_DATA::GpsY, 90.0},
    {Id::EndDistance, 212, &DefectNumbers::EndDistance, &_REC_DATA::DistanceEnd},
}};

std::optional<float> ReadMetres(std::string_view typed) {
    const std::optional<double> value = ParseWholeDouble(typed);
    if (!value || !std::isfinite(static_cast<float>(*value))) {
        return std::nullopt;
    }
    return static_cast<float>(*value);
}

std::string MetresText(float metres) {
    return FormatNumber(metres, MetreDigits);
}

DefectProblem NoNumber(const Field& field) {
    return {MessageNoNumber, FillText(LoadMessage(MessageNoNumber), {LoadMessage(field.Caption)}),
            field.Control};
}

std::optional<DefectProblem> ReadField(const Field& field, const std::string& typed, _REC_DATA& record) {
    if (const Metres* metres = std::get_if<Metres>(&field.Member)) {
        const std::optional<float> value = ReadMetres(typed);
        if (!value) {
            return NoNumber(field);
        }
        record.*(*metres) = *value;
        return std::nullopt;
    }
    const std::optional<double> value = ParseWholeDouble(typed);
    if (!value) {
        return NoNumber(field);
    }
    if (std::fabs(*value) > field.Most) {
        return DefectProblem{
            MessageOutOfRange,
            FillText(LoadMessage(MessageOutOfRange),
                     {LoadMessage(field.Caption), FormatNumber(-field.Most, 1), FormatNumber(field.Most, 1)}),
            field.Control};
    }
    record.*std::get<Degrees>(field.Member) = *value;
    return std::nullopt;
}

std::optional<DefectProblem> Problem(int message, int control) {
    return DefectProblem{message, LoadMessage(message), control};
}

}  // namespace

std::vector<DefectChoice> DefectChoices(const CDbCriterion& criterion) {
    std::vector<DefectChoice> choices;
    for (std::size_t i = 0; i < criterion.DefectLabels.size(); ++i) {
        if (criterion.DefectLabels[i].find(ManholeMark) == std::string::npos) {
            choices.push_back({criterion.DefectLabels[i], criterion.DefectCodes[i]});
        }
    }
    return choices;
}

int FindChoice(const std::vector<DefectChoice>& choices, std::string_view code) {
    const auto found = std::find_if(choices.begin(), choices.end(), [code](const DefectChoice& choice) {
        return EqualNoCase(choice.Code, code);
    });
    return found == choices.end() ? -1 : static_cast<int>(found - choices.begin());
}

DefectNumbers ShowNumbers(const _REC_DATA& record) {
    return {MetresText(record.DistanceStart), FormatNumber(record.GpsX, DegreeDigits),
            FormatNumber(record.GpsY, DegreeDigits), MetresText(record.DistanceEnd)};
}

std::optional<DefectProblem> ReadNumbers(const DefectNumbers& typed, _REC_DATA& record) {
    for (const Field& field : Fields) {
        if (auto problem = ReadField(field, typed.*field.Typed, record)) {
            return problem;
        }
    }
    return std::nullopt;
}

std::optional<std::string> DraggedEnd(const DefectNumbers& typed, float formerEnd) {
    const std::optional<float> start = ReadMetres(typed.StartDistance);
    if (!start || *start <= ReadMetres(typed.EndDistance).value_or(formerEnd)) {
        return std::nullopt;
    }
    return typed.StartDistance;  // rounded, it could lie before the start
}

std::optional<DefectProblem> CheckDefect(int name, int grade, const _REC_DATA& record, float sectionLength) {
    if (name < 0 || grade < 0) {
        return Problem(2103, name < 0 ? Id::Name : Id::Grade);
    }
    if (record.DistanceStart > record.DistanceEnd) {
        return Problem(2104, Id::EndDistance);
    }
    if (record.DistanceEnd > sectionLength || record.DistanceStart > sectionLength) {
        return Problem(2107, record.DistanceStart > sectionLength ? Id::StartDistance : Id::EndDistance);
    }
    return std::nullopt;
}

void CompleteRecord(const CDbRec& database, std::int32_t id, _REC_DATA& record) {
    record.ID = id;
    record.TestingID = id;
    record.DefectType = database.GetDefectType(record.DefectCode);
    const bool manhole = record.IsJCJ();
    if (!manhole) {
        record.JcjNo.clear();
    }
    for (const auto member : {&_REC_DATA::JcjType, &_REC_DATA::JcjUnderRoad, &_REC_DATA::JcjMaterial,
                              &_REC_DATA::JcjCoverMaterial}) {
        record.*member = manhole ? std::max(record.*member, 0) : 0;
    }
}
