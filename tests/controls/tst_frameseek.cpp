// Frame seeks against a player whose every answer is scripted.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>

#include "controls/CFrameSeek.h"
#include "controls/CSeekPlayer.h"

namespace {

// Knows the times of its frames, and does what the library does to commands, when it is told to.
class CScriptedPlayer final : public CSeekPlayer {
public:
    std::vector<double> Frames;
    std::size_t Shown = 0;
    double Coarse = 0.0;  // so many seconds behind an aim the nearest frame is that decodes by itself
    double NeededLead = 0.0;
    bool CanSeek = true;
    std::map<std::string, std::string> Properties;
    std::vector<std::string> Commands;

    void Command(const std::vector<std::string>& words, Done done) override {
        Commands.push_back(words[0]);
        const bool ok = words[0] != "seek" || CanSeek;
        m_tasks.push_back([this, words, done, ok] {
            if (ok) {
                Obey(words);
            }
            if (done) {
                done(ok);
            }
        });
    }
    void Set(const char* property, const std::string& value) override { Properties[property] = value; }
    void GetNumber(const char*, NumberReply reply) override {
        m_tasks.push_back([this, reply] { reply(Frames[Shown]); });
    }
    std::uint64_t NewPictures() const override { return m_pictures; }

    // Answers until nothing is left to answer.
    void Run(CFrameSeek& seek) {
        while (!m_tasks.empty()) {
            const auto task = m_tasks.front();
            m_tasks.erase(m_tasks.begin());
            task();
            if (m_restart) {
                m_restart = false;
                seek.TakeRestart();
            }
        }
    }

private:
    void Obey(const std::vector<std::string>& words) {
        const auto last = Frames.size() - 1;
        if (words[0] == "seek") {
            const double lead = std::strtod(Properties["hr-seek-demuxer-offset"].c_str(), nullptr);
            const double aim = std::strtod(words[1].c_str(), nullptr) + (lead < NeededLead ? Coarse : 0.0);
            const auto at = std::ranges::lower_bound(Frames, aim - 0.005);
            Shown = std::min(static_cast<std::size_t>(at - Frames.begin()), last);
        } else if (words[0] == "frame-back-step") {
            Shown -= Shown > 0 ? 1 : 0;
        } else if (Shown < last) {
            ++Shown;
        }
        ++m_pictures;
        m_restart = true;
    }

    std::vector<std::function<void()>> m_tasks;
    std::uint64_t m_pictures = 0;
    bool m_restart = false;
};

class FrameSeek : public testing::Test {
protected:
    FrameSeek() {
        Seek.OnArrived = [this](const CFrameSeek::Arrival& arrival) { Arrivals.push_back(arrival); };
    }
    // Frames at these times; the head tells 25 frames a second.
    void Load(std::vector<double> frames, bool hasIndex = true) {
        Player.Frames = std::move(frames);
        Player.Shown = 0;
        Arrivals.clear();
        Seek.Begin({Player.Frames.front(), 25.0, Player.Frames.back() + 0.04, hasIndex});
    }
    double Arrive() {
        Player.Run(Seek);
        EXPECT_FALSE(Seek.IsBusy());
        return Arrivals.empty() ? -1.0 : Arrivals.back().Time.value_or(-2.0);
    }
    static std::vector<double> Row(int count, double first = 0.0) {
        std::vector<double> frames;
        for (int i = 0; i < count; ++i) {
            frames.push_back(first + i * 0.04);
        }
        return frames;
    }

    CScriptedPlayer Player;
    CFrameSeek Seek{Player};
    std::vector<CFrameSeek::Arrival> Arrivals;
};

TEST_F(FrameSeek, EveryPositionMeansTheLastFrameNotBehindIt) {
    std::vector<double> uneven = {0.0};
    for (const double gap : {0.04, 0.005, 0.04, 0.2, 0.012, 0.04, 1.5, 0.04, 0.01, 0.04}) {
        uneven.push_back(uneven.back() + gap);
    }
    for (const std::vector<double>& frames : {Row(50), Row(50, 1.4), uneven}) {
        Load(frames);
        Seek.TakeTime(frames[2]);  // from it on an uneven row is known as such
        for (double position = frames.front(); position < frames.back() + 0.1; position += 0.0171) {
            // Told with three decimals, as the program's positions come.
            const double told = std::round(position * 1000) / 1000;
            Seek.GoTo(told);
            const double time = Arrive();
            const auto behind = std::ranges::upper_bound(frames, told + 0.01 + 0.0003);
            ASSERT_NE(std::ranges::find(frames, time), frames.end());
            EXPECT_LE(time, *(behind - 1)) << told;
            EXPECT_GE(time, *(std::ranges::upper_bound(frames, told) - 1)) << told;
        }
    }
    // In an even row one command is enough.
    Load(Row(50));
    Player.Commands.clear();
    Seek.GoTo(0.8);
    EXPECT_DOUBLE_EQ(Arrive(), 0.8);
    EXPECT_EQ(Player.Commands, std::vector<std::string>{"seek"});
}

TEST_F(FrameSeek, AWayThatEndsBehindThePositionIsTakenAnewFromFartherBefore) {
    Load(Row(400), false);
    Player.Coarse = 0.5;
    Player.NeededLead = 8.0;
    Seek.GoTo(10.0);
    EXPECT_NEAR(Arrive(), 10.0, 1e-9);
}

TEST_F(FrameSeek, OfManyWishesTheLastOneCountsAndStepsDoNotPileUp) {
    Load(Row(50));
    for (const double position : {0.2, 0.4, 0.6, 1.2}) {
        Seek.GoTo(position);
    }
    EXPECT_NEAR(Arrive(), 1.2, 1e-9);
    ASSERT_EQ(Arrivals.size(), 2U);
    EXPECT_FALSE(Arrivals[0].IsLast);
    EXPECT_TRUE(Arrivals[1].IsLast);
    EXPECT_FALSE(Arrivals[1].CountsAsPosition);

    for (int i = 0; i < 10; ++i) {
        Seek.StepBack();
    }
    EXPECT_NEAR(Arrive(), 1.12, 1e-9);
    EXPECT_TRUE(Arrivals.back().CountsAsPosition);
    Seek.GoTo(0.0);
    (void)Arrive();
    Seek.StepBack();
    EXPECT_EQ(Arrive(), 0.0);
}

TEST_F(FrameSeek, WhatCannotBeSoughtInStaysWhereItIsAndAnswersOfAFormerFileFindNobody) {
    Load(Row(50));
    Seek.TakeTime(0.24);
    Player.CanSeek = false;
    Seek.GoTo(1.0);
    EXPECT_EQ(Arrive(), 0.24);
    EXPECT_TRUE(Arrivals.back().CountsAsPosition);

    Player.CanSeek = true;
    Seek.GoTo(1.0);
    Seek.End();
    Arrivals.clear();
    Player.Run(Seek);
    EXPECT_TRUE(Arrivals.empty());
    EXPECT_FALSE(Seek.IsBusy());
}

}  // namespace
