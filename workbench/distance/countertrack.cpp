#include "workbench/distance/countertrack.h"

#include <algorithm>
#include <cmath>

#include "workbench/distance/valuepath.h"

namespace {

constexpr double Neighbourhood = 1.5;  // seconds on both sides
constexpr int LeastAgreeing = 3;
constexpr double HaltDrift = 0.03;   // metres within a halt
constexpr double HaltGap = 2.0;      // seconds without a sure reading that don't end it
constexpr double NearTime = 1.0;     // seconds to the readings that tell a distance
constexpr double NearStep = 0.35;    // metres between these, at most
constexpr double LongestLeap = 3.0;  // seconds between readings that the camera went on between

void DoubtLoners(CounterTrack& track) {
    const double step = std::pow(10.0, -track.Decimals);
    const double speed = track.Unit == CounterUnit::Feet ? MostCameraSpeed / MetresPerFoot : MostCameraSpeed;
    const std::vector<CounterReading> all = track.Readings;
    std::size_t from = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        while (all[from].Time < all[i].Time - Neighbourhood) {
            ++from;
        }
        int agree = 0;
        int disagree = 0;
        for (std::size_t j = from; j < all.size() && all[j].Time <= all[i].Time + Neighbourhood; ++j) {
            if (j == i || !all[j].Sure) {
                continue;
            }
            const double most = speed * std::fabs(all[j].Time - all[i].Time) + 1.5 * step;
            (std::fabs(all[j].Distance - all[i].Distance) <= most ? agree : disagree) += 1;
        }
        track.Readings[i].Sure = all[i].Sure && agree >= LeastAgreeing && disagree == 0;
    }
}

void FindHalts(CounterTrack& track) {
    std::optional<CounterHalt> halt;
    const auto end = [&] {
        if (halt && halt->To - halt->From >= HaltSeconds) {
            track.Halts.push_back(*halt);
        }
        halt.reset();
    };
    // A counter of whole tenths may flicker between two of them.
    const double drift = std::max(HaltDrift / (track.Unit == CounterUnit::Feet ? MetresPerFoot : 1.0),
                                  track.Decimals == 1 ? 0.0 : 1.5 * std::pow(10.0, -track.Decimals));
    for (const CounterReading& reading : track.Readings) {
        if (!reading.Sure) {
            continue;
        }
        if (!halt || std::fabs(reading.Distance - halt->Distance) > drift ||
            reading.Time - halt->To > HaltGap) {
            end();
            halt = CounterHalt{reading.Time, reading.Time, reading.Distance};
        }
        halt->To = reading.Time;
    }
    end();
}

}  // namespace

double ToMetres(double distance, CounterUnit unit) {
    return unit == CounterUnit::Feet ? distance * MetresPerFoot : distance;
}

void FinishTrack(CounterTrack& track) {
    DoubtLoners(track);
    track.Halts.clear();
    FindHalts(track);
}

std::optional<double> DistanceAt(const CounterTrack& track, double seconds) {
    const auto after = std::find_if(
        std::lower_bound(track.Readings.begin(), track.Readings.end(), seconds,
                         [](const CounterReading& reading, double time) { return reading.Time < time; }),
        track.Readings.end(), [](const CounterReading& reading) { return reading.Sure; });
    const CounterReading* before = nullptr;
    for (auto at = after; at != track.Readings.begin() && before == nullptr;) {
        --at;
        if (at->Time <= seconds && at->Sure) {
            before = &*at;
        } else if (at->Time < seconds - NearTime) {
            break;
        }
    }
    const bool isAfter = after != track.Readings.end() && after->Time - seconds <= NearTime;
    const bool isBefore = before != nullptr && seconds - before->Time <= NearTime;
    if (isAfter && after->Time - seconds < 1e-3) {
        return ToMetres(after->Distance, track.Unit);
    }
    if (!isAfter || !isBefore) {
        return std::nullopt;
    }
    const double from = ToMetres(before->Distance, track.Unit);
    const double to = ToMetres(after->Distance, track.Unit);
    if (std::fabs(to - from) > NearStep) {
        return std::nullopt;
    }
    // What the picture shows, not what lies between: the value of the nearer one.
    return seconds - before->Time <= after->Time - seconds ? from : to;
}

std::optional<double> SecondsAt(const CounterTrack& track, double metres) {
    const CounterReading* last = nullptr;
    for (const CounterReading& reading : track.Readings) {
        if (!reading.Sure) {
            continue;
        }
        const double here = ToMetres(reading.Distance, track.Unit);
        if (std::fabs(here - metres) < 1e-6) {
            return reading.Time;
        }
        if (last != nullptr && reading.Time - last->Time <= LongestLeap) {
            const double there = ToMetres(last->Distance, track.Unit);
            if (there < metres && metres < here) {
                return last->Time + (reading.Time - last->Time) * (metres - there) / (here - there);
            }
        }
        last = &reading;
    }
    return std::nullopt;
}
