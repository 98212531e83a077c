#include "check/rules.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "shell/language.h"

namespace {

constexpr int FirstName = 3600;
constexpr int FirstAdvice = 3700;

using enum CheckSeverity;

// By number.
constexpr CheckRule Table[] = {
    {RuleNoWell, Error},
    {RuleMissingValue, Warning},
    {RuleDoubledWells, Warning},
    {RuleCaseOfWells, Warning},
    {RuleReversedTwin, Hint},
    {RuleNoLength, Error},
    {RuleInspectedLength, Warning},
    {RuleNoDiameter, Error},
    {RuleOddDiameter, Warning},
    {RuleImpossibleDate, Error},
    {RuleFarDate, Hint},
    {RuleNoVideo, Warning},
    {RuleVideoMissing, Error},
    {RuleVideoUnreadable, Error},
    {RuleVideoTooShort, Warning},
    {RuleSharedVideo, Warning},
    {RuleNoRecord, Warning},
    {RuleNoEndForDensity, Error},
    {RuleNoEnd, Hint},
    {RuleDateForm, Warning},
    {RuleBeyondLength, Error},
    {RuleStartBehindEnd, Error},
    {RuleGradeOutside, Error},
    {RuleUnknownCode, Error},
    {RuleClock, Warning},
    {RuleNoSection, Error},
    {RuleNormalBesideDefects, Error},
    {RuleTwice, Warning},
    {RuleNoComment, Warning},
    {RuleOtherComment, Warning},
    {RuleTimeFalls, Warning},
    {RuleOtherVideo, Warning},
    {RuleNoPicture, Warning},
    {RuleOrder, Warning},
    {RulePictureMissing, Error},
    {RulePictureUnreadable, Error},
    {RulePictureBlack, Warning},
    {RulePictureBlurred, Hint},
    {RulePictureShared, Warning},
    {RulePictureTwice, Warning},
    {RulePictureTime, Warning},
    {RulePictureName, Error},
    {RuleNoOriginal, Warning},
    {RuleNoPosition, Warning},
    {RuleNoPositions, Hint},
    {RuleSameEnds, Warning},
    {RuleLengthOfPositions, Warning},
    {RuleWellMoves, Warning},
    {RuleWellDepths, Hint},
    {RuleFarAway, Hint},
    {RuleNoNumber, Warning},
    {RuleNoPlace, Warning},
    {RuleNoReport, Error},
    {RuleSonar, Hint},
    {RuleNoDrive, Error},
    {RuleCodePage, Warning},
    {RuleControlCharacters, Warning},
    {RuleDecimals, Hint},
    {RuleLongText, Warning},
};

constexpr std::pair<std::string_view, int> Captions[] = {
    {"StartWell", 3801},
    {"EndWell", 3802},
    {"PipeType", 3803},
    {"PipeMaterial", 3804},
    {"TestingDirection", 3805},
    {"TestingDate", 3806},
    {"Location", 3807},
    {"TestingCompany", 3808},
    {"Tester", 3809},
    {"PipeLength", 3810},
    {"PipeDiameter", 3811},
    {"DetectionLength", 3812},
    {"VideoFileList", 3813},
    {"DistanceEnd", 3814},
    {"DistanceStart", 3815},
    {"DefectLevel", 3816},
    {"DefectCode", 3817},
    {"DirectionStart", 3818},
    {"DirectionEnd", 3819},
    {"Comment", 3820},
    {"Picture1", 3821},
    {"Picture2", 3822},
    {"ProjectIndex", 3823},
    {"ProjectName", 3824},
    {"TaskIndex", 3825},
    {"TaskName", 3826},
    {"TestingName", 3827},
    {"DepthStart", 3828},
    {"DepthEnd", 3829},
    {"JcjNo", 3830},
    {"Video", 3831},
    {"ManholeDepth", 3832},
    {"LayingTime", 3833},
    {"EngineeringUnits", 3834},
    {"GpsXStart", 3877},
    {"GpsYStart", 3878},
    {"GpsXEnd", 3879},
    {"GpsYEnd", 3881},
};

}  // namespace

std::span<const CheckRule> CheckRules() {
    return Table;
}

CheckSeverity SeverityOf(int rule) {
    const auto* const found =
        std::lower_bound(std::begin(Table), std::end(Table), rule,
                         [](const CheckRule& row, int number) { return row.Number < number; });
    return found == std::end(Table) || found->Number != rule ? Hint : found->Severity;
}

std::string RuleName(int rule) {
    return LoadMessage(FirstName + rule);
}

std::string RuleAdvice(int rule) {
    return LoadMessage(FirstAdvice + rule);
}

std::string FieldName(const std::string& column) {
    const auto found = std::find_if(std::begin(Captions), std::end(Captions),
                                    [&](const auto& caption) { return caption.first == column; });
    return found == std::end(Captions) ? column : LoadMessage(found->second);
}

std::string FindingText(const CheckFinding& finding) {
    std::string text = RuleName(finding.Rule);
    if (!finding.Field.empty()) {
        text += " [" + FieldName(finding.Field) + "]";
    }
    return finding.Value.empty() ? text : text + ": " + finding.Value;
}

std::string FindingDetail(const CheckFinding& finding) {
    if (finding.Field.empty()) {
        return finding.Value.empty() ? RuleName(finding.Rule) : finding.Value;
    }
    const std::string field = FieldName(finding.Field);
    return finding.Value.empty() ? field : field + ": " + finding.Value;
}
