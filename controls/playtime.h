// Times of a video as an operator reads them.
#pragma once

#include <string>

// "02:05.040", from an hour on "1:02:05.040". Rounded to milliseconds; what isn't a time is "00:00.000".
std::string FormatPlayTime(double seconds);
