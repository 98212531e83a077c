#include "assessment/explain/explanationtext.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <span>
#include <string_view>

#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"
#include "store/CDbRec.h"
#include "store/recordtexts.h"

namespace {

constexpr int MessageStructural = 3504;
constexpr int MessageFunctional = 3505;
constexpr int MessageNotCounted = 3506;
constexpr int MessageWeights = 3507;
constexpr int MessageOrder = 3508;
constexpr int MessageTogether = 3509;
constexpr int MessageLength = 3510;
constexpr int MessageDiameter = 3511;
constexpr int MessageFirstBand = 3540;
constexpr int MessageMiddleBand = 3541;
constexpr int MessageLastBand = 3542;
constexpr int MessageAlone = 3543;
constexpr int MessageAloneBehind = 3544;
constexpr int MessageMerged = 3545;
constexpr int MessageNoScore = 3546;
constexpr int MessageItemNear = 3547;
constexpr int MessageItem = 3548;
constexpr int MessageFirstItemNear = 3549;
constexpr int MessageFirstItem = 3550;
constexpr int MessageManhole = 3551;
constexpr int MessageNoDefect = 3552;
constexpr int MessageOtherGroup = 3553;
constexpr int MessageWithout = 3554;
constexpr int MessageMilder = 3555;
constexpr int MessageGraver = 3556;
constexpr int MessageInOrder = 3557;
constexpr int MessageSameAnyway = 3558;
constexpr int MessageByDistance = 3559;
constexpr int MessageLine = 3563;
constexpr int MessageLineOrder = 3564;
constexpr int MessageMergedCount = 3571;
constexpr int MessageCount = 3572;
constexpr int MessageRecord = 3573;

struct ValueText {
    std::string_view Name;
    int What;
    int How;
};

constexpr ValueText FullValues[] = {
    {"sumNear", 3517, 3531}, {"sumFar", 3515, 3530}, {"sumNearLen", 3518, 3531}, {"sumFarLen", 3516, 0},
    {"max", 3519, 0},        {"avg", 3520, 3532},    {"condition", 3521, 3533},  {"sm", 3522, 3534},
};
constexpr ValueText DensityValues[] = {
    {"sum", 3525, 3537}, {"max", 3519, 0}, {"avg", 3526, 3538}, {"condition", 3521, 3539}};
constexpr ValueText IndexValues[] = {{"K", 3513, 3528}, {"E", 3512, 3527}, {"T", 3514, 3529}};
constexpr ValueText RepairIndex = {"ri", 3523, 3535};
constexpr ValueText MaintenanceIndex = {"ri", 3524, 3536};

std::string Number(float value, int digits = 3) {
    return FormatNumber(static_cast<double>(value), digits);
}

std::string Text(int message) {
    return message == 0 ? std::string() : LoadMessage(message);
}

class CRows {
public:
    CRows(const Explanation& explanation, const CDbRec& database, const CTestingDataArray& sections)
        : m_explanation(explanation), m_database(database), m_sections(sections) {
        for (const _REC_DATA& record : explanation.Grade.Records) {
            m_records[record.ID] = &record;
        }
    }

    std::vector<ExplanationRow> Make() {
        AddPipe();
        AddGroup(true);
        AddGroup(false);
        AddNotCounted();
        AddWeights();
        AddOrder();
        return std::move(m_rows);
    }

private:
    void AddHeading(int message, std::string value = {}, std::string how = {}) {
        m_rows.push_back({Text(message), std::move(value), std::move(how), true});
    }
    void AddRecord(std::int32_t id, std::string value, std::string how) {
        const auto record = m_records.find(id);
        const std::int32_t section = record == m_records.end() ? -1 : record->second->TestingID;
        m_rows.push_back({"    " + NameOf(id), std::move(value), std::move(how), false, section, id});
    }
    void AddValue(const std::string& what, std::string value, std::string how) {
        m_rows.push_back({"    " + what, std::move(value), std::move(how)});
    }

    std::string NameOf(std::int32_t id) const {
        const auto found = m_records.find(id);
        if (found == m_records.end()) {
            return FormatInt(id);
        }
        const _REC_DATA& record = *found->second;
        return FillText(LoadMessage(MessageRecord),
                        {DefectName(m_database, record.DefectCode) + " " + FormatInt(record.DefectLevel),
                         Number(record.DistanceStart, 2)});
    }

    void AddPipe() {
        const SectionGrade& grade = m_explanation.Grade;
        if (m_explanation.Sections.size() > 1) {
            AddHeading(MessageTogether);
            for (const std::int32_t id : m_explanation.Sections) {
                const auto section =
                    std::find_if(m_sections.begin(), m_sections.end(),
                                 [id](const _TESTING_DATA& candidate) { return candidate.ID == id; });
                if (section != m_sections.end()) {
                    m_rows.push_back({"    " + section->TestingName, section->Label(), {}, false, id});
                }
            }
        }
        AddValue(Text(MessageLength), Number(grade.Length, 2), {});
        AddValue(Text(MessageDiameter), Number(grade.Diameter), {});
    }

    void AddGroup(bool structural) {
        const _EVALUATE_DATA& result = m_explanation.Grade.Result;
        const DerivedGroup& group =
            structural ? m_explanation.HowItCame.Structural : m_explanation.HowItCame.Functional;
        const std::string count = FormatInt(structural ? result.countJG : result.countGN);
        const bool full = std::any_of(group.Values.begin(), group.Values.end(),
                                      [](const DerivedValue& value) { return value.Name == "sm"; });
        AddHeading(structural ? MessageStructural : MessageFunctional,
                   (structural ? "RI " : "MI ") + Number(structural ? result.riJG : result.riGN) + "   " +
                       (structural ? result.riLevelJG : result.riLevelGN),
                   full ? FillText(LoadMessage(MessageMergedCount),
                                   {count, FormatInt(static_cast<std::int64_t>(group.Items.size()))})
                        : FillText(LoadMessage(MessageCount), {count}));
        if (group.Items.empty()) {
            return;  // all values are 0
        }
        for (const DerivedRecord& record : m_explanation.HowItCame.Records) {
            if (record.Reason == CountReason::Counted && record.Structural == structural) {
                AddCounted(record, group);
            }
        }
        for (std::size_t i = 0; full && i < group.Items.size(); ++i) {
            AddItem(group.Items[i], i == 0);
        }
        for (const DerivedValue& value : group.Values) {
            AddStep(value, full, structural);
        }
        AddBands(structural ? "JG" : "GN");
    }

    void AddCounted(const DerivedRecord& record, const DerivedGroup& group) {
        const float score = m_records.at(record.ID)->Evaluate;
        std::string how;
        if (record.MergedInto >= 0) {
            how = FillText(LoadMessage(MessageMerged),
                           {Number(score), NameOf(record.MergedInto), Number(record.Gap, 2)});
        } else if (record.Gap == 0.0F || group.Items.front().ID == record.ID) {
            how = FillText(LoadMessage(MessageAlone), {Number(score)});
        } else {
            how = FillText(LoadMessage(MessageAloneBehind), {Number(score), Number(record.Gap, 2)});
        }
        AddRecord(record.ID, {}, record.Weightless ? LoadMessage(MessageNoScore) : how);
    }

    void AddItem(const DerivedItem& item, bool first) {
        const int message = first ? (item.Near ? MessageFirstItemNear : MessageFirstItem)
                                  : (item.Near ? MessageItemNear : MessageItem);
        AddRecord(item.ID, Number(item.Start, 2) + " – " + Number(item.End, 2) + " m",
                  FillText(LoadMessage(message), {Number(item.Score), Number(item.Gap, 2)}));
    }

    void AddStep(const DerivedValue& value, bool full, bool structural) {
        if (value.Name == "ri") {
            const ValueText& text = structural ? RepairIndex : MaintenanceIndex;
            AddValue(Text(text.What), Number(value.Value), Text(text.How));
            return;
        }
        for (const auto texts :
             {std::span<const ValueText>(IndexValues),
              full ? std::span<const ValueText>(FullValues) : std::span<const ValueText>(DensityValues)}) {
            for (const ValueText& text : texts) {
                if (text.Name == value.Name) {
                    AddValue(Text(text.What), Number(value.Value), Text(text.How));
                    return;
                }
            }
        }
    }

    void AddBands(std::string_view kind) {
        const _EVALUATE_DATA& result = m_explanation.Grade.Result;
        for (const DerivedBand& band : m_explanation.HowItCame.Bands) {
            if (!band.Name.ends_with(kind)) {
                continue;
            }
            const bool structural = kind == "JG";
            const bool index = band.Name.starts_with("ri");
            const std::string& level = index ? (structural ? result.riLevelJG : result.riLevelGN)
                                             : (structural ? result.levelJG : result.levelGN);
            const int what = index ? (structural ? RepairIndex : MaintenanceIndex).What : 3521;
            AddValue(Text(what), Number(band.Value), BandText(band, level));
        }
    }

    static std::string BandText(const DerivedBand& band, const std::string& level) {
        const std::string lower = Number(band.Lower);
        const std::string upper = Number(band.Upper);
        const std::string better = Number(band.Value - band.Lower);
        const std::string worse = Number(band.Upper - band.Value);
        if (std::isinf(band.Upper)) {
            return FillText(LoadMessage(MessageLastBand), {level, lower, better});
        }
        return band.Band == 0
                   ? FillText(LoadMessage(MessageFirstBand), {level, upper, worse})
                   : FillText(LoadMessage(MessageMiddleBand), {level, lower, upper, better, worse});
    }

    void AddNotCounted() {
        bool first = true;
        for (const DerivedRecord& record : m_explanation.HowItCame.Records) {
            if (record.Reason == CountReason::Counted) {
                continue;
            }
            if (first) {
                AddHeading(MessageNotCounted);
                first = false;
            }
            const int reason = record.Reason == CountReason::Manhole    ? MessageManhole
                               : record.Reason == CountReason::NoDefect ? MessageNoDefect
                                                                        : MessageOtherGroup;
            AddRecord(record.ID, {}, LoadMessage(reason));
        }
    }

    void AddWeights() {
        if (m_explanation.Weights.empty()) {
            return;
        }
        AddHeading(MessageWeights);
        for (const RecordWeight& weight : m_explanation.Weights) {
            const auto tell = [](int message, const WhatIf& outcome) {
                return FillText(LoadMessage(message), {Number(outcome.Index), outcome.Level});
            };
            std::string how = tell(MessageWithout, weight.Without);
            for (const auto& [message, outcome] :
                 {std::pair(MessageMilder, &weight.Milder), std::pair(MessageGraver, &weight.Graver)}) {
                if (*outcome) {
                    how += "; " + tell(message, **outcome);
                }
            }
            AddRecord(weight.ID, weight.Structural ? "RI" : "MI", how);
        }
    }

    void AddOrder() {
        AddHeading(MessageOrder);
        std::string text = LoadMessage(m_explanation.InOrder ? MessageInOrder : MessageSameAnyway);
        if (const auto& other = m_explanation.ByDistance) {
            text = FillText(LoadMessage(MessageByDistance),
                            {Number(other->riJG), other->riLevelJG, Number(other->riGN), other->riLevelGN});
        }
        AddValue({}, {}, text);
    }

    const Explanation& m_explanation;
    const CDbRec& m_database;
    const CTestingDataArray& m_sections;
    std::map<std::int32_t, const _REC_DATA*> m_records;
    std::vector<ExplanationRow> m_rows;
};

}  // namespace

std::vector<ExplanationRow> ExplanationRows(const Explanation& explanation, const CDbRec& database,
                                            const CTestingDataArray& sections) {
    return CRows(explanation, database, sections).Make();
}

std::string GradeLine(const SectionGrade& grade, const std::optional<_EVALUATE_DATA>& byDistance) {
    const _EVALUATE_DATA& result = grade.Result;
    const std::string line = FillText(LoadMessage(MessageLine), {Number(result.riJG), result.riLevelJG,
                                                                 Number(result.riGN), result.riLevelGN});
    return byDistance ? line + "      " + LoadMessage(MessageLineOrder) : line;
}
