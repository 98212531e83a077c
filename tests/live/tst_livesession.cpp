#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <limits>

#include "live/CLiveSession.h"
#include "shell/language.h"
#include "shell/settings.h"
#include "shell/textcodec.h"
#include "tests/support/CFullDisk.h"
#include "tests/support/CTestFolder.h"

namespace {

class CNoChannel : public CLiveChannel {
public:
    bool RaiseRunning() override { return false; }
    Claimed Claim() override { return Claimed::Yes; }
    std::string Problem() const override { return {}; }
    void Release() override {}
    bool Answer(LiveSender sender, std::string_view text) override {
        Answers.emplace_back(sender, Utf8FromGbk(text));
        return true;
    }

    std::vector<std::pair<LiveSender, std::string>> Answers;
};

class LiveSession : public testing::Test {
protected:
    LiveSession() { SetWorkFolder(Folder.Path("work") + "\\"); }

    static LiveRecord Record(int number) {
        LiveRecord record;
        record.Video = "\\job\\v.avi";
        record.Picture = "\\job\\" + std::to_string(number) + ".jpg";
        record.PictureTime = number;
        record.Start = 1.5F;
        record.End = 2.257F;
        record.Texts = {"编号", "顺流", "任务", "地点", "A'1", "B2", "雨水", "PVC", "600", "公司", "人"};
        return record;
    }
    static bool Take(CLiveSession& session, int number, LiveSender sender = 7) {
        return session.Take(MakeLiveBlock(Record(number)), sender, 113.5, 23.5);
    }
    static _REC_DATA Row(const CLiveSession& session, const char* code = "PL") {
        _REC_DATA row;
        row.DefectCode = code;
        row.DefectLevel = 2;
        row.DistanceStart = session.Record().Start;
        row.DistanceEnd = session.Record().End;
        row.Video = session.Record().Video;
        row.AddPicture(session.Record().Picture, session.Record().PictureTime);
        row.Comment = "注";
        return row;
    }
    bool Open(CLiveSession& session, bool add = true) {
        return session.OpenProject(m_project, [add](_TESTING_DATA&) { return add; });
    }

    CTestFolder Folder;
    CNoChannel Channel;
    const std::string m_project = Folder.MakeProject();
};

}  // namespace

TEST(LiveRecords, TheBlockIsReadByItsOffsets) {
    std::string block(1256, '\0');
    const auto put = [&block](std::size_t at, const std::string& bytes) {
        std::copy(bytes.begin(), bytes.end(), block.begin() + static_cast<std::ptrdiff_t>(at));
    };
    put(0, GbkFromUtf8("D:/视频/a.avi"));
    put(261, std::string(261, 'p'));  // 260 are read
    const double time = 12.5;
    const float start = 3.25F;
    const float end = std::numeric_limits<float>::quiet_NaN();
    std::memcpy(block.data() + 528, &time, 8);
    std::memcpy(block.data() + 536, &start, 4);
    std::memcpy(block.data() + 540, &end, 4);
    for (std::size_t i = 0; i < 11; ++i) {
        put(552 + i * 64, i == 3 ? std::string(64, 'x') : std::to_string(i) + std::string("\0rest", 5));
    }
    const LiveRecord record = ReadLiveRecord(block);
    EXPECT_EQ(record.Video, "D:\\视频\\a.avi");
    EXPECT_EQ(record.Picture, std::string(260, 'p'));
    EXPECT_EQ(record.PictureTime, 12.5);
    EXPECT_EQ(record.Start, 3.25F);
    EXPECT_EQ(record.End, 0.0F);
    EXPECT_EQ(record.Texts[3], std::string(64, 'x'));
    EXPECT_EQ(record.Texts[10], "10");
    EXPECT_EQ(SectionOf(record).StartWell + SectionOf(record).Tester, "410");
    EXPECT_EQ(ReadLiveRecord("short").Video, "");
    EXPECT_EQ(ReadLiveRecord(MakeLiveBlock(record)).Texts, record.Texts);
}

TEST_F(LiveSession, FromRecordToRowToAnswer) {
    CLiveSession session(Channel);
    ASSERT_TRUE(Take(session, 1));
    EXPECT_FALSE(Open(session, false));
    EXPECT_FALSE(session.IsOpen());
    ASSERT_TRUE(Open(session));
    ASSERT_TRUE(session.Store(Row(session), "破裂"));
    ASSERT_EQ(Channel.Answers.size(), 1U);
    EXPECT_EQ(Channel.Answers[0].first, 7U);
    const auto label = [](int number) { return LoadMessage(number); };
    EXPECT_EQ(Channel.Answers[0].second, "\r\n\r\n" + label(2420) + "PL\r\n\r\n" + label(2421) +
                                             "破裂\r\n\r\n" + label(2422) + "2\r\n\r\n" + label(2423) +
                                             "1.5\r\n\r\n" + label(2424) + "2.26\r\n\r\n" + label(2425) +
                                             "注\r\n\r\n");
    EXPECT_FALSE(session.HasRecord());
    EXPECT_EQ(session.WaitingCount(), 0);
    CTestingDataArray sections;
    CRecDataArray rows;
    ASSERT_TRUE(session.Database().ReadTestings(sections) && session.Database().ReadRecords(-1, rows, false));
    ASSERT_EQ(sections.GetSize(), 1);
    EXPECT_EQ(sections[0].Label(), "A'1 - B2");
    EXPECT_EQ(sections[0].GpsXStart, 113.5);
    ASSERT_EQ(rows.GetSize(), 1);
    EXPECT_EQ(rows[0].TestingID, sections[0].ID);
    EXPECT_EQ(rows[0].GetPicture1(), "\\job\\1.jpg");
    // Neither is a row that a full disk has no room for; it can be tried again.
    ASSERT_TRUE(Take(session, 4));
    Folder.Prompts.Expect(2014);
    {
        const CFullDisk full(1000);
        EXPECT_FALSE(session.Store(Row(session), "x"));
    }
    EXPECT_EQ(Channel.Answers.size(), 1U);
    EXPECT_EQ(session.Record().PictureTime, 4);
    ASSERT_TRUE(session.Store(Row(session), "x"));
    EXPECT_EQ(Channel.Answers.size(), 2U);
    // "Nothing wrong" doesn't go beside a defect: not stored, not answered, still in hand.
    ASSERT_TRUE(Take(session, 2));
    Folder.Prompts.Expect(2800);
    EXPECT_FALSE(session.Store(Row(session, "GDZC"), "x"));
    EXPECT_TRUE(session.HasRecord());
    EXPECT_EQ(Channel.Answers.size(), 2U);
    session.Close();

    // The same manholes with another video are another section.
    ASSERT_TRUE(Open(session));
    session.Close();
    LiveRecord other = Record(3);
    other.Video = "\\job\\other.avi";
    ASSERT_TRUE(session.Take(MakeLiveBlock(other), 7, 0, 0));
    Folder.Prompts.Expect(2427);
    EXPECT_FALSE(Open(session));
}

TEST_F(LiveSession, WhatWasTakenOutlivesTheProgram) {
    {
        CLiveSession session(Channel);
        for (const int number : {1, 2, 3}) {
            ASSERT_TRUE(Take(session, number));
        }
        EXPECT_EQ(session.Record().PictureTime, 3);
        EXPECT_EQ(session.WaitingCount(), 2);
        ASSERT_TRUE(Open(session));
        ASSERT_TRUE(session.Store(Row(session), "x"));
        ASSERT_TRUE(session.TakeUpNext());
        EXPECT_EQ(session.Record().PictureTime, 1);
    }
    std::string list = Folder.ReadFile("work/live-records.txt");
    // A run that ended between the row and its mark, another one in the midst of a line.
    {
        CDbRec database;
        ASSERT_TRUE(database.OpenDatabase(m_project, CDbPassword));
        _REC_DATA row;
        row.TestingID = 1;
        row.DefectCode = "PL";
        row.Video = Record(1).Video;
        row.AddPicture(Record(1).Picture, 1);
        ASSERT_TRUE(database.AddRecord(row));
    }
    list += "* 1 1 " + m_project + "\n* 2 1 " + m_project + "\n+ 9 0 0 5c74";
    Folder.WriteFile("work/live-records.txt", list);
    CLiveSession session(Channel);
    EXPECT_EQ(session.WaitingCount(), 2);
    ASSERT_TRUE(session.TakeUpNext());
    EXPECT_EQ(session.Record().PictureTime, 2);
    EXPECT_EQ(session.Longitude(), 113.5);
    EXPECT_EQ(session.WaitingCount(), 0);
    ASSERT_TRUE(Open(session));
    ASSERT_TRUE(session.Store(Row(session), "x"));
    EXPECT_FALSE(session.TakeUpNext());
    EXPECT_EQ(Channel.Answers.size(), 1U);  // the sender of the second run isn't there any more
    ASSERT_TRUE(Take(session, 5));
    // Two windows don't share the list.
    CLiveSession other(Channel);
    EXPECT_EQ(other.WaitingCount(), 0);
    EXPECT_FALSE(Take(other, 6));
}

TEST_F(LiveSession, WhatCantBePutOnTheListIsntTaken) {
    CLiveSession session(Channel);
    ASSERT_TRUE(Take(session, 1));
    const std::string list = Folder.ReadFile("work/live-records.txt");
    {
        const CFullDisk full(list.size() + 100);
        EXPECT_FALSE(Take(session, 2));
    }
    EXPECT_EQ(session.Record().PictureTime, 1);
    EXPECT_EQ(Folder.ReadFile("work/live-records.txt"), list);
    EXPECT_TRUE(Take(session, 3));
    EXPECT_EQ(session.WaitingCount(), 1);
    // The project is in use by another window: nothing is stored or answered.
    CDbRec other;
    ASSERT_TRUE(other.OpenDatabase(m_project, CDbPassword));
    Folder.Prompts.Expect(2000);
    EXPECT_FALSE(Open(session));
    EXPECT_TRUE(session.HasRecord());
}
