// The rules of a check: each has a number, which stays its own for ever, a severity, a name, and what it
// means and what to do. Names are the language messages from 3600 on, advices those from 3700 on, by number.
//
// A rule finds what a client sends back, or what makes a result wrong. It is silent on clean data: where it
// has to guess, its limit stands in its advice.
#pragma once

#include <span>
#include <string>

#include "check/finding.h"

enum RuleNumber : int {
    RuleNoWell = 1,
    RuleMissingValue,
    RuleDoubledWells,
    RuleCaseOfWells,
    RuleReversedTwin,
    RuleNoLength,
    RuleInspectedLength,
    RuleNoDiameter,
    RuleOddDiameter,
    RuleImpossibleDate,
    RuleFarDate,
    RuleNoVideo,
    RuleVideoMissing,
    RuleVideoUnreadable,
    RuleVideoTooShort,
    RuleSharedVideo,
    RuleNoRecord,
    RuleNoEndForDensity,
    RuleNoEnd,
    RuleDateForm,

    RuleBeyondLength = 30,
    RuleStartBehindEnd,
    RuleGradeOutside,
    RuleUnknownCode,
    RuleClock,
    RuleNoSection,
    RuleNormalBesideDefects,
    RuleTwice,
    RuleNoComment,
    RuleOtherComment,
    RuleTimeFalls,
    RuleOtherVideo,
    RuleNoPicture,
    RuleOrder,

    RulePictureMissing = 50,
    RulePictureUnreadable,
    RulePictureBlack,
    RulePictureBlurred,
    RulePictureShared,
    RulePictureTwice,
    RulePictureTime,
    RulePictureName,
    RuleNoOriginal,

    RuleNoPosition = 60,
    RuleNoPositions,
    RuleSameEnds,
    RuleLengthOfPositions,
    RuleWellMoves,
    RuleWellDepths,
    RuleFarAway,

    RuleNoNumber = 70,
    RuleNoPlace,
    RuleNoReport,
    RuleSonar,
    RuleNoDrive,

    RuleCodePage = 80,
    RuleControlCharacters,
    RuleDecimals,
    RuleLongText,
};

struct CheckRule {
    int Number = 0;
    CheckSeverity Severity = CheckSeverity::Error;
};

// By number.
std::span<const CheckRule> CheckRules();
CheckSeverity SeverityOf(int rule);
std::string RuleName(int rule);
std::string RuleAdvice(int rule);
// The caption of a column in the language of the program; the column's name if it has none.
std::string FieldName(const std::string& column);
// "Diameter is 0 or no number: DN400".
std::string FindingText(const CheckFinding& finding);
// What stands behind the rule's name: "Diameter: DN400". The name itself if there is nothing.
std::string FindingDetail(const CheckFinding& finding);
