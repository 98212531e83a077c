// Where on the pipe's circumference a place of the clock face lies.
#pragma once

#include <optional>

// The hour that a point of the dial stands for, 1 to 12. Points and size in pixels, y running down; the
// centre itself stands for none.
//
// The sectors are uneven: hour 1 reaches from straight up to 45 degrees, hour 12 has the 15 degrees before
// straight up, the others have 30. Stored positions were set with these sectors.
std::optional<int> HourOfPoint(int x, int y, int dialWidth, int dialHeight);

// What isn't an hour is 12 o'clock.
int ValidHour(int hour);

// How many sectors a range fills: from start to end inclusive, over 12 if the end lies before the start.
int HoursInRange(int start, int end);
