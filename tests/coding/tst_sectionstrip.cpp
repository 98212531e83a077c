// The strip of a section: what is on it, where flags stand, and where the video is.
#include <gtest/gtest.h>

#include "store/CDbRec.h"
#include "tests/support/CTestFolder.h"
#include "workbench/coding/sectionstrip.h"

namespace {

_REC_DATA Record(double time, float metres, const char* type = "JG") {
    _REC_DATA record;
    record.ID = static_cast<std::int32_t>(time * 10) + 1;
    record.DefectCode = "PL";
    record.DefectType = type;
    record.DefectLevel = 3;
    record.DistanceStart = record.DistanceEnd = metres;
    record.Video = "\\job\\A.avi";
    record.AddPicture("\\job\\p.jpg", time);
    return record;
}

CRecDataArray Records(std::initializer_list<_REC_DATA> rows) {
    CRecDataArray records;
    for (const _REC_DATA& row : rows) {
        records.Add(row);
    }
    return records;
}

}  // namespace

TEST(VideoTrack, KnowsOnlyWhatLiesBetweenRecordsThatAgree) {
    const CVideoTrack track(
        Records({Record(10, 5.0F), Record(30, 15.0F), Record(50, 15.0F), Record(70, 20.0F)}), "\\JOB\\a.avi");
    EXPECT_DOUBLE_EQ(track.DistanceAt(20).value_or(-1), 10.0);
    EXPECT_DOUBLE_EQ(track.DistanceAt(70).value_or(-1), 20.0);
    EXPECT_FALSE(track.DistanceAt(9.9).has_value());
    EXPECT_FALSE(track.DistanceAt(70.1).has_value());
    EXPECT_DOUBLE_EQ(track.SecondsAt(15.0).value_or(-1), 30.0) << "the first time there";
    EXPECT_DOUBLE_EQ(track.SecondsAt(17.5).value_or(-1), 60.0);
    EXPECT_FALSE(track.SecondsAt(4.0).has_value());

    const auto known = [](std::initializer_list<_REC_DATA> rows) {
        return CVideoTrack(Records(rows), "\\job\\a.avi").IsKnown();
    };
    EXPECT_FALSE(known({}));
    EXPECT_FALSE(known({Record(10, 5.0F)}));
    EXPECT_FALSE(known({Record(10, 0.0F), Record(20, 0.0F)})) << "distances that nobody typed";
    EXPECT_FALSE(known({Record(10, 9.0F), Record(20, 5.0F), Record(30, 1.0F)})) << "backwards";
    EXPECT_FALSE(CVideoTrack(Records({Record(10, 5.0F), Record(30, 15.0F)}), "\\job\\b.avi").IsKnown());
    const CVideoTrack oneSlip(Records({Record(10, 5.0F), Record(20, 500.0F), Record(30, 15.0F),
                                       Record(40, 20.0F), Record(50, 25.0F), Record(60, 30.0F)}),
                              "\\job\\a.avi");
    EXPECT_DOUBLE_EQ(oneSlip.DistanceAt(20).value_or(-1), 10.0) << "one slip doesn't count";
}

TEST(SectionStrip, ShowsKindsRunsAndTheInspectedStretch) {
    CTestFolder folder;
    CDbRec database;
    ASSERT_TRUE(database.OpenDatabase(folder.MakeProject(), CDbPassword));
    _TESTING_DATA section;
    section.PipeLength = "40";
    section.DistanceEnd = 30.0F;
    section.TestingDirection = "逆流";
    _REC_DATA run = Record(3, 12.0F);
    run.DistanceEnd = 50.0F;  // beyond what was entered: shown all the same
    const _REC_DATA open = Record(2, 8.0F, "GN");
    const PipeStrip strip =
        MakeSectionStrip(section, Records({run, open, Record(1, 0.0F, "JCJ")}), {open}, database);
    EXPECT_DOUBLE_EQ(strip.Length, 50.0);
    EXPECT_DOUBLE_EQ(strip.InspectedTo, 30.0);
    EXPECT_EQ(strip.Direction, PipeStrip::Flow::ToStart);
    section.DistanceEnd = 0.0F;
    section.DetectionLength = "28.5";
    EXPECT_DOUBLE_EQ(MakeSectionStrip(section, {}, {}, database).InspectedTo, 28.5) << "as imported";
    ASSERT_EQ(strip.Flags.size(), 3U);
    EXPECT_EQ(strip.Flags[0].Shape, StripFlag::Form::Diamond);
    EXPECT_EQ(strip.Flags[1].Shape, StripFlag::Form::Round);
    EXPECT_TRUE(strip.Flags[1].OpenRun);
    EXPECT_EQ(strip.Flags[2].Shape, StripFlag::Form::Square);
    EXPECT_NE(strip.Flags[0].Letter, strip.Flags[1].Letter);
    EXPECT_NE(strip.Flags[2].Text.find("12.00~50.00 m"), std::string::npos);
}

TEST(StripLayout, FlagsThatWouldCoverEachOtherPileUpAndOpen) {
    PipeStrip strip;
    strip.Length = 100.0;
    for (const double metres : {10.0, 10.5, 11.0, 60.0}) {
        StripFlag flag;
        flag.From = flag.To = metres;
        flag.Grade = metres == 10.5 ? 4 : 1;
        strip.Flags.push_back(flag);
    }
    StripView view;
    view.Width = 1000;
    const CStripLayout layout(strip, view);
    ASSERT_EQ(layout.Clusters().size(), 2U);
    EXPECT_EQ(layout.Clusters()[0].Flags.size(), 3U);
    EXPECT_EQ(layout.Clusters()[0].Grade, 4);
    EXPECT_NEAR(layout.MetresAt(layout.XOf(60.0)), 60.0, 1e-9);
    EXPECT_EQ(layout.At(layout.Clusters()[0].X, 10, view).Flag, -1);
    EXPECT_EQ(layout.At(layout.XOf(60.0), 10, view).Flag, 3);
    view.Open = 0;
    const std::vector<double> places = layout.OpenPlaces(layout.Clusters()[0]);
    EXPECT_GT(places[1] - places[0], 20.0);
    EXPECT_EQ(layout.At(places[2], 10, view).Flag, 2);
    // Nearer, each stands by itself; and a thousand at one place still fit.
    view.Open = -1;
    view.From = 9.0;
    view.To = 13.0;
    EXPECT_EQ(CStripLayout(strip, view).Clusters().size(), 3U);
    StripCluster many;
    many.Flags.resize(1000);
    many.X = 500.0;
    EXPECT_GE(layout.OpenPlaces(many).front(), layout.Left() - 1e-6);
    EXPECT_LE(layout.OpenPlaces(many).back(), layout.Right() + 1e-6);
    EXPECT_DOUBLE_EQ(CStripLayout({}, {}).ScaleStep(), 0.0);
}
