// The profile of the silt along a pipe, as a picture for reports.
#pragma once

#include <string>
#include <vector>

#include "store/sonar.h"

// A JPEG of 920 by 520 pixels; empty if it can't be made. Along the pipe run metres, or serial numbers if the
// first and the last cross-section are within 0.1 m; upward millimetres of silt, to the width of the last
// cross-section. What has no place in that, such as everything in a pipe of width 0, isn't drawn. Text needs an
// application of the toolkit; where there is none, one without a display lives as long as this runs.
std::string DrawSonarChart(const std::vector<PipeItem>& items);
