#include <gtest/gtest.h>

#include <algorithm>

#include "shell/newpipedefaults.h"
#include "store/sectionform.h"
#include "tests/store/storedsection.h"
#include "tests/support/CTestFolder.h"

namespace {

using Id = SectionControl;

class SectionFormTest : public testing::Test {
protected:
    SectionFormTest() { SetNewPipeDefaults({}); }
    ~SectionFormTest() override { SetNewPipeDefaults({}); }

    CTestFolder Folder;
};

TEST_F(SectionFormTest, VideoTitlesGiveManholes) {
    struct Case {
        const char* Title;
        const char* Start;
        const char* End;
        bool Whole;
    };
    for (const Case& c : {Case{"W12-W13", "W12", "W13", true}, Case{"W12", "W12", "E", false},
                          Case{" W12 ", " W12 ", "E", false}, Case{"-A", "", "A", true},
                          Case{"A- ", "A", "E", false}, Case{" 望 - 川-2 ", "望", "川-2", true}}) {
        std::string start = "former";
        std::string end = "former";
        EXPECT_EQ(SplitVideoTitle(c.Title, start, end), c.Whole) << c.Title;
        EXPECT_EQ(start, c.Start) << c.Title;
        EXPECT_EQ(end, c.End) << c.Title;
    }
}

TEST_F(SectionFormTest, DatesComeBackInOneForm) {
    const std::string now = "2026/03/14 09:26:53";
    const std::pair<const char*, std::string> cases[] = {{"2021-3-5 8:07:09", "2021/03/05 08:07:09"},
                                                         {"2024/02/29", "2024/02/29 00:00:00"},
                                                         {"2021-12-31T23:59", "2021/12/31 00:00:00"},
                                                         {"2021/3/5", now},
                                                         {"2021/02/29 08:00:00", now},
                                                         {"2021/03-05 08:00:00", now},
                                                         {"99999999999-1-1 1:1:1", now}};
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(FormatTestingDate(ReadTestingDate(text)), expected) << text;
    }
}

TEST_F(SectionFormTest, AnEditKeepsWhatTheFormDoesNotShow) {
    const _TESTING_DATA stored = StoredSection();
    SectionForm form = MakeSectionForm({stored}, false);
    SectionTexts texts;
    ShowSectionForm(form, texts);
    EXPECT_EQ(texts[Id::StartLongitude] + " " + texts[Id::EndLatitude] + " " + texts[Id::PipeLength],
              "121.4737021 -90 12.3");
    EXPECT_EQ(form.DetectionLength, "12.3");
    ASSERT_FALSE(ReadSectionForm(texts, form));
    ASSERT_FALSE(CheckSectionForm(form));
    const std::vector<_TESTING_DATA> result = MakeSections(form, {stored});
    ASSERT_EQ(result.size(), 1U);
    const _TESTING_DATA& section = result[0];
    EXPECT_EQ(section.ID, 7);
    EXPECT_EQ(section.TestingOrder, 3);
    EXPECT_EQ(section.Comment + section.LayingTime + section.DepthStart, "kept19901.5");
    EXPECT_EQ(section.GpsXStart, stored.GpsXStart);
    EXPECT_EQ(section.VideoFileList, "\\v\\W1-W2.avi");
    EXPECT_EQ(section.PipeLength + " " + section.DetectionLength, "12.3 12.3");
    EXPECT_EQ(section.DistanceEnd, 12.3F);
    EXPECT_EQ(section.DistanceStart, 0.0F);
}

TEST_F(SectionFormTest, TheFirstBadNumberEndsTheReading) {
    SectionForm form = MakeSectionForm({StoredSection()}, false);
    SectionTexts texts;
    ShowSectionForm(form, texts);
    texts[Id::StartLongitude] = " 1e2 ";
    texts[Id::EndLongitude] = "180.5";
    texts[Id::EndLatitude] = "1";
    texts[Id::Name] = "new";
    std::optional<SectionProblem> problem = ReadSectionForm(texts, form);
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->Message, 3031);
    EXPECT_EQ(problem->Text, "终点经度必须在 -180 到 180 之间。");
    EXPECT_EQ(problem->Control, Id::EndLongitude);
    EXPECT_EQ(form.StartLongitude, 100.0);
    EXPECT_EQ(form.EndLongitude, -121.5);
    EXPECT_EQ(form.EndLatitude, -90.0);
    EXPECT_EQ(form.TestingName, "段");

    // What wasn't read stays as typed when the form is shown again.
    ShowSectionForm(form, texts, problem->Control);
    EXPECT_EQ(texts[Id::StartLongitude], "100");
    EXPECT_EQ(texts[Id::EndLongitude], "180.5");
    EXPECT_EQ(texts[Id::Name], "new");

    texts[Id::EndLongitude] = "-180";
    for (const char* length : {"", "12m", "1e39", "nan"}) {
        texts[Id::PipeLength] = length;
        problem = ReadSectionForm(texts, form);
        ASSERT_TRUE(problem) << length;
        EXPECT_EQ(problem->Text, "管长必须是数字。");
        EXPECT_EQ(form.PipeLength, 12.3F) << length;
    }
    EXPECT_EQ(form.TestingName, "new");
    texts[Id::PipeLength] = "12.25";
    ASSERT_FALSE(ReadSectionForm(texts, form));
    EXPECT_EQ(MakeSections(form, {})[0].PipeLength, "12.2");
}

TEST_F(SectionFormTest, ChecksComeInOrder) {
    SectionForm form = MakeSectionForm({}, true);
    EXPECT_EQ(form.TestingDirection + form.PipeType + form.PipeMaterial, "顺流雨水混凝土管");
    EXPECT_EQ(form.PipeDiameter, "0");
    const auto expectProblem = [&](int message, int control, int row) {
        const std::optional<SectionProblem> problem = CheckSectionForm(form);
        ASSERT_TRUE(problem) << message;
        EXPECT_EQ(problem->Message, message);
        EXPECT_EQ(problem->Control, control) << message;
        EXPECT_EQ(problem->Row, row) << message;
    };
    expectProblem(2166, Id::Name, -1);
    // The others stand below it.
    EXPECT_EQ(std::ranges::count(CheckSectionForm(form)->Text, '\n'), 3) << CheckSectionForm(form)->Text;
    form.TestingName = "段";
    expectProblem(2167, Id::Videos, -1);
    ASSERT_TRUE(AddVideos(form, {"\\v\\A-B.avi", "\\v\\-A.avi", "\\V\\a-b.AVI"}));
    ASSERT_EQ(form.Videos.size(), 2U);
    EXPECT_EQ(form.SelectedRow, 1);
    StoreWells(form, {"typed", "A"});
    expectProblem(2168, Id::StartWell, 1);
    RemoveSelectedVideo(form);
    EXPECT_EQ(ShownWells(form), (WellPair{"A", "B"}));
    expectProblem(2170, Id::PipeLength, -1);
    CalculatePipeLength(form);
    EXPECT_EQ(form.PipeLength, 0.0F);
    form.EndLatitude = 0.001;  // at the equator a degree is (6356725 + 21412) * pi / 180 m
    CalculatePipeLength(form);
    EXPECT_EQ(form.PipeLength, 111.32F);
    expectProblem(2171, Id::Diameter, -1);
    form.PipeDiameter = "DN300";
    expectProblem(2171, Id::Diameter, -1);
    form.PipeDiameter = "300mm";
    EXPECT_FALSE(CheckSectionForm(form));
}

TEST_F(SectionFormTest, AskingForTheSecondManholeCanEndTheAdding) {
    SectionForm form = MakeSectionForm({}, true);
    Folder.Prompts.ExpectQuestion(2181, true);
    Folder.Prompts.ExpectQuestion(2181, false);
    ASSERT_TRUE(AddVideos(form, {"\\v\\A-.avi", "\\v\\B.avi", "\\v\\C-D.avi"}));
    EXPECT_EQ(form.Videos, std::vector<std::string>{"\\v\\A-.avi"});
    EXPECT_EQ(ShownWells(form), (WellPair{"A", "E"}));
    EXPECT_FALSE(AddVideos(form, {"\\v\\a-.avi"}));

    // Where several splits are possible, the operator takes one.
    Folder.Prompts.GiveChoice(1);
    ASSERT_TRUE(AddVideos(form, {"\\v\\WS-A1-WS-A2.avi"}));
    EXPECT_EQ(ShownWells(form), (WellPair{"WS-A1", "WS-A2"}));
}

}  // namespace
