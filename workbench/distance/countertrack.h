// What the counter of a video told over time: where the camera was, and where it stood still.
#pragma once

#include <optional>
#include <vector>

#include "workbench/distance/textlines.h"

enum class CounterUnit { Metres, Feet };

inline constexpr double MetresPerFoot = 0.3048;  // international foot

struct CounterReading {
    double Time = 0.0;      // seconds
    double Distance = 0.0;  // as the picture shows it, in its unit
    bool Sure = false;      // its shapes are beyond doubt, and so is its place among its neighbours
};

// Where the camera stood for a while.
struct CounterHalt {
    double From = 0.0;  // seconds
    double To = 0.0;
    double Distance = 0.0;  // as the picture shows it
};

struct CounterTrack {
    PictureBox Region;  // of the line that it stands in
    int Decimals = 0;
    CounterUnit Unit = CounterUnit::Metres;
    std::vector<CounterReading> Readings;  // by time
    std::vector<CounterHalt> Halts;        // of at least HaltSeconds, by time
};

inline constexpr double HaltSeconds = 5.0;

double ToMetres(double distance, CounterUnit unit);

// Takes back the sureness of readings that those around don't lead to, and finds the halts.
void FinishTrack(CounterTrack& track);

// Metres at that second, where sure readings close by on both sides agree; else nothing.
std::optional<double> DistanceAt(const CounterTrack& track, double seconds);
// When the camera first came by on its way forward. Nothing beyond what it saw.
std::optional<double> SecondsAt(const CounterTrack& track, double metres);
