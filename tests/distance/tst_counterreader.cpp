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
                                    Folder.Host("").string() + "' " + style + " --seconds 45 >/dev/null";
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
    for (const char* style : {"plain", "pixel"}) {
        const CounterResult result = Read(style);
        ASSERT_EQ(result.Outcome, CounterOutcome::Found) << style;
        const Json truth = Json::parse(Folder.ReadFile(std::string(style) + ".json"))["values"];
        int sure = 0;
        for (const CounterReading& reading : result.Track.Readings) {
            EXPECT_TRUE(!reading.Sure || IsRight(truth, reading)) << style << " at " << reading.Time;
            sure += reading.Sure ? 1 : 0;
        }
        EXPECT_GT(sure, 100) << style;
        for (const CounterHalt& halt : result.Track.Halts) {
            EXPECT_GE(halt.To - halt.From, HaltSeconds);
            EXPECT_TRUE(IsRight(truth, {(halt.From + halt.To) / 2, halt.Distance, true}, 0.035)) << halt.From;
        }
        // A box around it leads to the same, one elsewhere to nothing.
        const CounterResult boxed =
            ReadCounter(Folder.Path(std::string(style) + ".mp4"), result.Track.Region);
        EXPECT_EQ(boxed.Outcome, CounterOutcome::Found);
        EXPECT_EQ(ReadCounter(Folder.Path(std::string(style) + ".mp4"), PictureBox{0, 0, 400, 80}).Outcome,
                  CounterOutcome::None);
        EXPECT_EQ(ReadCounter(Folder.Path(std::string(style) + ".mp4"), PictureBox{700, 0, 400, 80}).Outcome,
                  CounterOutcome::None)
            << "beyond the picture";
    }
}

TEST_F(CounterReader, TakesNothingElseForACounter) {
    EXPECT_EQ(Read("clockonly").Outcome, CounterOutcome::None) << "a clock, a date and a name";
    EXPECT_EQ(Read("feet").Outcome, CounterOutcome::None) << "metres would be wrong";
    EXPECT_EQ(ReadCounter(Folder.Path("gone.mp4")).Outcome, CounterOutcome::NoFile);
    EXPECT_EQ(ReadCounter(Folder.WriteFile("text.mp4", "no video")).Outcome, CounterOutcome::NoVideo);
    int asked = 0;
    EXPECT_EQ(ReadCounter(Folder.Path("feet.mp4"), {}, [&] { return ++asked > 3; }).Outcome,
              CounterOutcome::Stopped);
    EXPECT_EQ(asked, 4);
}
