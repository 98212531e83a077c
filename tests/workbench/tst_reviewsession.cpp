#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "reports/CRecExport.h"
#include "tests/support/CTestFolder.h"
#include "workbench/CReviewSession.h"

namespace {

// Lists, a player and timers that only note what becomes of them. Timers never fire by themselves, like those
// of a thread that stalls.
class CNotedScreen : public CReviewScreen {
public:
    void FillSections(CDbRec& database) override {
        ++Fills;
        Section = -1;
        (void)database.ReadTestings(m_sections);
    }
    void FillDefects(CDbRec& database, std::int32_t sectionId) override {
        Record = -1;
        (void)database.ReadRecords(sectionId, m_records, false);
    }
    void ClearDefects() override { m_records.RemoveAll(); }
    const CTestingDataArray& Sections() const override { return m_sections; }
    const CRecDataArray& Records() const override { return m_records; }
    const _TESTING_DATA* SelectedSection() const override { return Find(m_sections, Section); }
    const _REC_DATA* SelectedRecord() const override { return Find(m_records, Record); }
    bool SelectSection(std::int32_t id) override {
        Section = id;
        return SelectedSection() != nullptr;
    }
    bool SelectRecord(std::int32_t id) override {
        Record = id;
        return SelectedRecord() != nullptr;
    }
    void LoadVideo(std::string_view pathText) override {
        ++Loads;
        Url = pathText;
        Position = 0.0;
    }
    std::string Video() const override { return Url; }
    double Duration() const override { return Url.empty() ? 0.0 : 10.0; }
    void Seek(double seconds) override { Position = seconds; }
    void ShowPicture(std::string_view pathText) override { Picture = pathText; }
    void ShowMarkers(const Markers& markers) override { Flags = markers.Flags; }
    void ShowState() override {}
    void StartTimer(Timer timer) override { Running[timer] = true; }
    void StopTimer(Timer timer) override { Running[timer] = false; }

    std::int32_t Section = -1;
    std::int32_t Record = -1;
    int Fills = 0;
    int Loads = 0;
    std::string Url;
    std::string Picture;
    double Position = 0.0;
    std::vector<std::uint8_t> Flags;
    std::map<Timer, bool> Running;

private:
    template <class Array>
    static auto Find(const Array& rows, std::int32_t id) -> decltype(&rows[0]) {
        for (const auto& row : rows) {
            if (row.ID == id) {
                return &row;
            }
        }
        return nullptr;
    }

    CTestingDataArray m_sections;
    CRecDataArray m_records;
};

class ReviewSession : public testing::Test {
protected:
    ReviewSession() {
        CDbRec database;
        EXPECT_TRUE(database.OpenDatabase(Project, CDbPassword));
        for (const char* video : {"a.avi", "b.avi"}) {
            _TESTING_DATA section;
            section.VideoFileList = video;
            EXPECT_TRUE(database.AddTesting(section));
            AddRecord(database, database.LastInsertId(), video, 2.0);
        }
        database.Close();
        EXPECT_TRUE(Session.Open(Project));
        Session.FlushSelections();
    }
    static void AddRecord(CDbRec& database, std::int32_t section, const char* video, double time) {
        _REC_DATA record;
        record.TestingID = section;
        record.Video = video;
        record.Pictures.Add({std::string(video) + ".jpg", time});
        EXPECT_TRUE(database.AddRecord(record));
    }
    void Stand(std::int32_t section, std::int32_t record) {
        Screen.Section = section;
        Session.OnSectionChanged();
        Session.FlushSelections();
        Screen.Record = record;
        Session.OnDefectChanged();
        Session.FlushSelections();
    }

    CTestFolder Folder;
    std::string Project = Folder.MakeProject();
    CNotedScreen Screen;
    CReviewSession Session{Screen};
};

}  // namespace

// A key that overtakes the timers would else store a record of one section with another's video.
TEST_F(ReviewSession, CommandsActOnTheSelectionThatIsSeen) {
    Stand(1, 1);
    EXPECT_EQ(Screen.Url, "a.avi");
    EXPECT_EQ(Screen.Position, 2.0);
    Screen.Section = 2;
    Session.OnSectionChanged();
    EXPECT_EQ(Screen.Url, "a.avi");
    Session.FlushSelections();
    EXPECT_EQ(Screen.Url, "b.avi");
    EXPECT_EQ(Screen.Records()[0].Video, "b.avi");
    EXPECT_FALSE(Screen.Running[CReviewScreen::Timer::Section]);
    Session.OnTimer(CReviewScreen::Timer::Duration);
    EXPECT_EQ(Screen.Flags[2], 1);
    Session.SelectAtSecond(2);
    Session.FlushSelections();
    EXPECT_EQ(Screen.Position, 2.0);
    EXPECT_EQ(Screen.Picture, "b.avi.jpg");
}

TEST_F(ReviewSession, AfterACommandOneStandsWhereOneStoodOrOnWhatWasMade) {
    Stand(1, 1);
    Screen.Seek(4.5);
    const int loads = Screen.Loads;
    const int fills = Screen.Fills;
    const auto run = [&](const std::function<void(CDbRec&)>& command) {
        const CReviewSession::Place place = Session.GetPlace();
        command(*Session.Database());
        Session.Return(place);
    };
    run([](CDbRec&) {});
    EXPECT_EQ(Screen.Fills, fills);
    run([](CDbRec& database) { database.Execute("update Testing set TestingName = \"x\" where ID = 1"); });
    EXPECT_EQ(Screen.SelectedSection()->TestingName, "x");
    EXPECT_EQ(Screen.Record, 1);
    run([](CDbRec& database) { AddRecord(database, 1, "a.avi", 4.5); });
    EXPECT_EQ(Screen.SelectedRecord()->GetPicTime1(), 4.5);
    EXPECT_EQ(Screen.Flags[4], 1);
    run([&](CDbRec& database) { EXPECT_TRUE(database.DeleteRecord(Screen.Record)); });
    EXPECT_EQ(Screen.SelectedRecord(), nullptr);
    EXPECT_EQ(Screen.Flags[4], 0);
    // Told steps that read the lists anew lose the place only until the end.
    run([&](CDbRec&) { Session.RefreshLists(); });
    EXPECT_EQ(Screen.Section, 1);
    EXPECT_EQ(Screen.Position, 4.5);
    EXPECT_EQ(Screen.Loads, loads);
    EXPECT_FALSE(Screen.Running[CReviewScreen::Timer::Section]);

    run([&](CDbRec& database) {
        Session.UnloadVideo();
        EXPECT_TRUE(database.DeleteTesting(*Screen.SelectedSection()));
    });
    EXPECT_EQ(Screen.SelectedSection(), nullptr);
    EXPECT_EQ(Screen.Url, "");
    run([](CDbRec& database) {
        _TESTING_DATA section;
        section.VideoFileList = "c.avi";
        EXPECT_TRUE(database.AddTesting(section));
    });
    EXPECT_EQ(Screen.Url, "c.avi");
}

TEST_F(ReviewSession, WhatIsOpenIsSavedAsACopyWhenItsFileHasGone) {
    namespace fs = std::filesystem;
    Stand(1, 1);
    fs::rename(Folder.Host("db/p.mdb"), Folder.Host("db/away.mdb"));
    // Not wanted now: that is told once. But without a copy the next change is refused, not lost.
    Folder.Prompts.ExpectQuestion(3330, true);
    Folder.Prompts.GivePath("");
    Session.OfferCopyIfGone();
    Folder.Prompts.ExpectQuestion(3330, true);
    Folder.Prompts.GivePath(Folder.Path("db/copy.mdb"));
    Session.OfferCopyIfGone();
    EXPECT_EQ(Session.ProjectPath(), Folder.Path("db/copy.mdb"));
    EXPECT_EQ(Screen.Section, 1);
    EXPECT_EQ(Screen.Record, 1);
    Session.OfferCopyIfGone();
    AddRecord(*Session.Database(), 1, "a.avi", 1.0);
}
