// A section of a project as the strip that is drawn of it.
#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "controls/paint/pipestrip.h"
#include "store/records/records.h"

class CDbCriterion;

// `openRuns` are records of the section whose end is still to come.
PipeStrip MakeSectionStrip(const _TESTING_DATA& section, const CRecDataArray& records,
                           const std::vector<_REC_DATA>& openRuns, const CDbCriterion& criterion);

// Where in the pipe the camera was at which second of the video, as far as the records of that video say:
// each has a time, from the player, and a distance, which was typed. Between two of them the camera is taken
// to have moved evenly; before the first and behind the last nobody knows.
class CVideoTrack {
public:
    CVideoTrack() = default;
    // Records that contradict most of the others, being further back at a later time, don't count. If too
    // many do, or all lie at one distance, nothing is known.
    CVideoTrack(const CRecDataArray& records, std::string_view video);

    bool IsKnown() const { return m_points.size() > 1; }
    std::optional<double> DistanceAt(double seconds) const;  // metres
    // The first second at which the camera is there.
    std::optional<double> SecondsAt(double metres) const;

private:
    std::vector<std::pair<double, double>> m_points;  // seconds rising, metres never falling
};
