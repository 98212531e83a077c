// Counters of generated videos, whose distances are known. What isn't certain must not be read at all.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/support/CTestFolder.h"
#include "workbench/distance/counterreader.h"

namespace {

using Json = nlohmann::json;

class CounterReader : public testing::Test {
protected:
    // False where the maker can't run.
    CounterResult Read(const std::string& style) {
        const std::string command = std::string(DROVANE_PYTHON) + " '" + DROVANE_COUNTER_VIDEOS + "' '" +
                                    Folder.Host("").string() + "' " + style + " --seconds 30 >/dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0);
        return ReadCounter(Folder.Path(style + ".mp4"));
    }
    // What the picture shows then, and around it: a frame of a change may show either.
    static bool IsRight(const Json& values, const CounterReading& reading, double tolerance = 1e-6) {
        bool right = false;
        for (std::size_t i = 0; i < values.size(); ++i) {
            const double from = values[i][0].get<double>() - 0.041;
            const double to = i + 1 < values.size() ? values[i + 1][0].get<double>() + 0.041 : 1e9;
            right = right || (reading.Time >= from && reading.Time <= to &&
                              std::fabs(values[i][1].get<double>() - reading.Distance) < tolerance);
        }
        return right;
    }

    CTestFolder Folder;
};

}  // namespace

TEST_F(CounterReader, ReadsWhatItIsSureOfWithoutAMistake) {
    // Outlined and bare letters, pixels, thin and low ones, colours, zeros in front, labels, a set back
    // counter.
    for (const char* style : {"pixelpad", "serif", "green", "narrow", "lowrate", "feet", "reset"}) {
        const CounterResult result = Read(style);
        ASSERT_EQ(result.Outcome, CounterOutcome::Found) << style;
        EXPECT_EQ(result.Track.Unit == CounterUnit::Feet, std::string(style) == "feet");
        const Json truth = Json::parse(Folder.ReadFile(std::string(style) + ".json"))["values"];
        int sure = 0;
        for (const CounterReading& reading : result.Track.Readings) {
            EXPECT_TRUE(!reading.Sure || IsRight(truth, reading)) << style << " at " << reading.Time;
            sure += reading.Sure ? 1 : 0;
        }
        EXPECT_GT(sure, 70) << style;
        for (const CounterHalt& halt : result.Track.Halts) {
            EXPECT_GE(halt.To - halt.From, HaltSeconds);
            EXPECT_TRUE(IsRight(truth, {(halt.From + halt.To) / 2, halt.Distance, true}, 0.035)) << halt.From;
        }
    }
    // A box around it leads to the same, one elsewhere to nothing.
    const std::string video = Folder.Path("serif.mp4");
    EXPECT_EQ(ReadCounter(video, {PictureBox{530, 36, 110, 36}, {}, {}}).Outcome, CounterOutcome::Found);
    EXPECT_EQ(ReadCounter(video, {PictureBox{0, 300, 400, 80}, {}, {}}).Outcome, CounterOutcome::None);
    EXPECT_EQ(ReadCounter(video, {PictureBox{700, 0, 400, 80}, {}, {}}).Outcome, CounterOutcome::None)
        << "beyond the picture";
}

TEST_F(CounterReader, LearnsFromTypedValuesWhereThePointStands) {
    EXPECT_EQ(Read("nopoint").Outcome, CounterOutcome::None);
    const Json truth = Json::parse(Folder.ReadFile("nopoint.json"))["values"];
    std::vector<KnownValue> known;
    for (const std::size_t i : {truth.size() / 3, 2 * truth.size() / 3}) {
        known.push_back({truth[i][0].get<double>() + 0.02, truth[i][1].get<double>(), 2});
    }
    const CounterResult result = ReadCounter(Folder.Path("nopoint.mp4"), {{}, known, {}});
    ASSERT_EQ(result.Outcome, CounterOutcome::Found);
    int sure = 0;
    for (const CounterReading& reading : result.Track.Readings) {
        EXPECT_TRUE(!reading.Sure || IsRight(truth, reading)) << reading.Time;
        sure += reading.Sure ? 1 : 0;
    }
    EXPECT_GT(sure, 70);
    // What the picture doesn't show isn't believed.
    known[0].Distance += 3.0;
    EXPECT_EQ(ReadCounter(Folder.Path("nopoint.mp4"), {{}, known, {}}).Outcome, CounterOutcome::None);
}

TEST_F(CounterReader, TakesNothingElseForACounter) {
    EXPECT_EQ(Read("clockonly").Outcome, CounterOutcome::None) << "a clock, a date and a name";
    EXPECT_EQ(ReadCounter(Folder.Path("gone.mp4")).Outcome, CounterOutcome::NoFile);
    EXPECT_EQ(ReadCounter(Folder.WriteFile("text.mp4", "no video")).Outcome, CounterOutcome::NoVideo);
    int asked = 0;
    EXPECT_EQ(ReadCounter(Folder.Path("clockonly.mp4"), {}, [&] { return ++asked > 3; }).Outcome,
              CounterOutcome::Stopped);
    EXPECT_EQ(asked, 4);
}
