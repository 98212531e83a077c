// The small texts that several parts of a report share.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "store/records/records.h"

// Towards zero. What the type can't hold stops at its ends; what is no number is 0.
std::int32_t Truncated(double value);

// Where along the pipe: one distance, or "start - end" if they differ by a centimetre or more, cut and not
// rounded.
std::string PositionText(const _REC_DATA& record);
// Both hours on the clock face, "0309".
std::string ClockText(const _REC_DATA& record);
// Metres along the pipe with one decimal.
std::string LengthText(const _REC_DATA& record);

// Of a date and time.
std::string DateText(std::string_view dateTime);
std::string DiameterText(const _TESTING_DATA& section);  // "0" if there is none

// The record that says that nothing is wrong shows neither name nor score nor grade.
bool IsNormalName(std::string_view fullName);
