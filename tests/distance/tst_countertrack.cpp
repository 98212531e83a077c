// What follows from the readings of a counter: which are sure, where the camera stood, what it saw when.
#include <gtest/gtest.h>

#include "workbench/distance/countertrack.h"

namespace {

// Five readings a second; `speed` in units of the picture a second.
void Drive(CounterTrack& track, double seconds, double speed) {
    double distance = track.Readings.empty() ? 0.0 : track.Readings.back().Distance;
    double time = track.Readings.empty() ? 0.0 : track.Readings.back().Time;
    for (int i = 0; i < static_cast<int>(seconds * 5); ++i) {
        time += 0.2;
        distance += 0.2 * speed;
        track.Readings.push_back({time, distance, true});
    }
}

}  // namespace

TEST(CounterTrack, DoubtsWhatItsNeighboursContradict) {
    CounterTrack track{{}, 2, CounterUnit::Metres, {}, {}};
    Drive(track, 20, 0.2);
    track.Readings[50].Distance += 7.0;  // one digit misread, however clear it looked
    FinishTrack(track);
    EXPECT_FALSE(track.Readings[50].Sure);
    EXPECT_FALSE(track.Readings[48].Sure) << "which of both is right can't be told";
    EXPECT_TRUE(track.Readings[20].Sure);
    EXPECT_FALSE(DistanceAt(track, track.Readings[50].Time));
    EXPECT_NEAR(DistanceAt(track, 3.97).value_or(-1.0), 0.8, 1e-9);
    EXPECT_FALSE(DistanceAt(track, 25.0)) << "behind the last reading";
}

TEST(CounterTrack, FindsHaltsAndTheFirstWayForward) {
    CounterTrack track{{}, 2, CounterUnit::Metres, {}, {}};
    Drive(track, 20, 0.2);
    Drive(track, 6, 0.0);
    Drive(track, 5, -0.2);
    Drive(track, 10, 0.2);
    Drive(track, 4, 0.0);
    FinishTrack(track);
    ASSERT_EQ(track.Halts.size(), 1U) << "four seconds aren't long enough";
    EXPECT_NEAR(track.Halts[0].Distance, 4.0, 0.05);
    EXPECT_NEAR(track.Halts[0].To - track.Halts[0].From, 6.0, 0.5);
    EXPECT_NEAR(SecondsAt(track, 3.5).value_or(0.0), 17.5, 0.2) << "not on the way back, nor the second time";
    EXPECT_NEAR(SecondsAt(track, 4.5).value_or(0.0), 38.5, 0.2);
    EXPECT_FALSE(SecondsAt(track, 9.0));
}

TEST(CounterTrack, ConvertsFeetAndDoesNotBridgeAReset) {
    CounterTrack track{{}, 1, CounterUnit::Feet, {}, {}};
    Drive(track, 20, 1.0);
    for (int i = 0; i < 50; ++i) {
        track.Readings.push_back({20.2 + i * 0.2, i * 0.1, true});
    }
    FinishTrack(track);
    EXPECT_NEAR(DistanceAt(track, 10.0).value_or(-1.0), 10.0 * 0.3048, 1e-6);
    EXPECT_FALSE(DistanceAt(track, 20.1)) << "between 20 ft and the 0 ft that it was set to";
    EXPECT_NEAR(SecondsAt(track, 5.0 * 0.3048).value_or(0.0), 5.0, 0.1);
    EXPECT_NEAR(DistanceAt(track, 25.0).value_or(-1.0), 2.4 * 0.3048, 0.04);
}
