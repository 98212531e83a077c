// Rules on positions and depths of manholes.
#include <algorithm>
#include <cmath>
#include <set>
#include <unordered_map>

#include "check/checktasks.h"
#include "check/numbertext.h"
#include "check/rules.h"
#include "geo/position/GeoPoint.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

constexpr double WellRadius = 10.0;        // metres within which positions are of one manhole
constexpr double DepthTolerance = 0.1;     // metres
constexpr double LengthShare = 0.2;        // both must be passed
constexpr double LengthDifference = 15.0;  // metres
constexpr double FarDistance = 5000.0;     // metres
constexpr std::size_t LeastForFar = 3;     // sections with a position

// Cells of the search for neighbours, at least FarDistance wide up to 60 degrees of latitude.
constexpr double CellLatitude = 0.05;
constexpr double CellLongitude = 0.1;

bool IsPosition(double longitude, double latitude) {
    return std::isfinite(longitude) && std::isfinite(latitude) && (longitude != 0.0 || latitude != 0.0);
}

bool HasStart(const _TESTING_DATA& section) {
    return IsPosition(section.GpsXStart, section.GpsYStart);
}

bool HasEnd(const _TESTING_DATA& section) {
    return IsPosition(section.GpsXEnd, section.GpsYEnd);
}

std::string MetresOf(double metres) {
    return FormatNumber(metres, 1) + " m";
}

void CheckPresence(const CCheckSnapshot& snapshot, CFindings& findings) {
    const bool any = std::any_of(
        snapshot.Sections.begin(), snapshot.Sections.end(),
        [](const SectionRecords& entry) { return HasStart(entry.Section) || HasEnd(entry.Section); });
    if (!any) {
        if (!snapshot.Sections.empty()) {
            findings.Add(RuleNoPositions);
        }
        return;
    }
    for (const SectionRecords& entry : snapshot.Sections) {
        if (!HasStart(entry.Section) || !HasEnd(entry.Section)) {
            findings.Add(RuleNoPosition, entry.Section, {},
                         HasStart(entry.Section) ? "EndWell" : "StartWell");
        }
    }
}

void CheckLength(const SectionRecords& entry, CFindings& findings) {
    const _TESTING_DATA& section = entry.Section;
    if (!HasStart(section) || !HasEnd(section)) {
        return;
    }
    if (section.GpsXStart == section.GpsXEnd && section.GpsYStart == section.GpsYEnd) {
        findings.Add(RuleSameEnds, section);
        return;
    }
    const std::optional<double> length = PositiveNumber(section.PipeLength);
    const double distance =
        GeoDistance({section.GpsXStart, section.GpsYStart}, {section.GpsXEnd, section.GpsYEnd});
    if (length && std::abs(distance - *length) > std::max(*length * LengthShare, LengthDifference)) {
        findings.Add(RuleLengthOfPositions, section, section.PipeLength + " m / " + MetresOf(distance),
                     "PipeLength");
    }
}

// Each manhole is told once, at the first section that says something else than those before.
void CheckWells(const CCheckSnapshot& snapshot, CFindings& findings) {
    std::unordered_map<std::string, GeoPoint> placeOf;
    std::unordered_map<std::string, double> depthOf;
    std::set<std::string> toldPlaces;
    std::set<std::string> toldDepths;
    for (const SectionRecords& entry : snapshot.Sections) {
        const _TESTING_DATA& section = entry.Section;
        const auto look = [&](const std::string& well, bool placed, double longitude, double latitude,
                              const std::string& depth, const char* column, const char* depthColumn) {
            if (well.empty()) {
                return;
            }
            const std::string key = LowerCase(well);
            if (placed) {
                const GeoPoint here(longitude, latitude);
                const auto [known, isNew] = placeOf.try_emplace(key, here);
                const double distance = isNew ? 0.0 : GeoDistance(known->second, here);
                if (distance > WellRadius && toldPlaces.insert(key).second) {
                    findings.Add(RuleWellMoves, section, well + ": " + MetresOf(distance), column);
                }
            }
            if (const std::optional<double> number = PositiveNumber(depth)) {
                const auto [known, isNew] = depthOf.try_emplace(key, *number);
                if (!isNew && std::abs(known->second - *number) > DepthTolerance &&
                    toldDepths.insert(key).second) {
                    findings.Add(RuleWellDepths, section,
                                 well + ": " + depth + " / " + FormatNumber(known->second, 2), depthColumn);
                }
            }
        };
        look(section.StartWell, HasStart(section), section.GpsXStart, section.GpsYStart, section.DepthStart,
             "StartWell", "DepthStart");
        look(section.EndWell, HasEnd(section), section.GpsXEnd, section.GpsYEnd, section.DepthEnd, "EndWell",
             "DepthEnd");
    }
}

class CNeighbours {
public:
    explicit CNeighbours(const CCheckSnapshot& snapshot) {
        for (const SectionRecords& entry : snapshot.Sections) {
            if (HasStart(entry.Section)) {
                m_cells[Cell(entry.Section, 0, 0)].push_back(&entry.Section);
                ++m_count;
            }
        }
    }
    std::size_t Count() const { return m_count; }

    bool HasNear(const _TESTING_DATA& section) const {
        const GeoPoint here(section.GpsXStart, section.GpsYStart);
        for (int dx = -1; dx <= 1; ++dx) {
            for (int dy = -1; dy <= 1; ++dy) {
                const auto cell = m_cells.find(Cell(section, dx, dy));
                if (cell != m_cells.end() &&
                    std::any_of(cell->second.begin(), cell->second.end(), [&](const _TESTING_DATA* other) {
                        return other != &section &&
                               GeoDistance(here, {other->GpsXStart, other->GpsYStart}) <= FarDistance;
                    })) {
                    return true;
                }
            }
        }
        return false;
    }

private:
    static std::int64_t Cell(const _TESTING_DATA& section, int dx, int dy) {
        const auto number = [](double degrees, double width) {
            return static_cast<std::int64_t>(std::floor(std::clamp(degrees, -1000.0, 1000.0) / width));
        };
        return (number(section.GpsXStart, CellLongitude) + dx) * 1000000 +
               number(section.GpsYStart, CellLatitude) + dy;
    }

    std::unordered_map<std::int64_t, std::vector<const _TESTING_DATA*>> m_cells;
    std::size_t m_count = 0;
};

void CheckFar(const CCheckSnapshot& snapshot, CFindings& findings) {
    const CNeighbours neighbours(snapshot);
    if (neighbours.Count() < LeastForFar) {
        return;
    }
    for (const SectionRecords& entry : snapshot.Sections) {
        if (HasStart(entry.Section) && !neighbours.HasNear(entry.Section)) {
            findings.Add(
                RuleFarAway, entry.Section,
                FormatNumber(entry.Section.GpsXStart, 6) + ", " + FormatNumber(entry.Section.GpsYStart, 6),
                "StartWell");
        }
    }
}

}  // namespace

void AddPositionTasks(const CCheckSnapshot& snapshot, CheckTasks& tasks) {
    tasks.push_back([&snapshot](CFindings& findings) { CheckPresence(snapshot, findings); });
    AddForEachSection(snapshot, tasks, CheckLength);
    tasks.push_back([&snapshot](CFindings& findings) { CheckWells(snapshot, findings); });
    tasks.push_back([&snapshot](CFindings& findings) { CheckFar(snapshot, findings); });
}
