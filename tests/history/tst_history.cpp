// Undo and redo on real projects with real picture files.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "defects/picturesteps.h"
#include "defects/recordchanges.h"
#include "history/steps.h"
#include "shell/CHostFiles.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/stepnames.h"
#include "tests/history/CHistoryTest.h"
#include "tests/support/CFullDisk.h"

namespace {

namespace fs = std::filesystem;
using Outcome = StepResult::Outcome;

class HistoryTest : public CHistoryTest {
protected:
    // All files of the folder of pictures and what is in them; without those that are held.
    std::map<std::string, std::string> Pictures() const {
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::directory_iterator(Folder.Host("v"))) {
            if (entry.is_regular_file()) {
                files[entry.path().filename()] = ReadHostFile(entry.path());
            }
        }
        return files;
    }
    int HeldFiles() const {
        const fs::path folder = Folder.Host("v/.drovane-held");
        return fs::exists(folder) ? static_cast<int>(std::distance(fs::directory_iterator(folder), {})) : 0;
    }
    // With a picture that came into being with it.
    _REC_DATA AddPictured(std::int32_t section, const std::string& name) {
        const std::string picture = Folder.WriteFile("v/" + name, "picture " + name);
        NoteMadeForUndo(Database, {picture});
        return AddRecord(section, picture);
    }
    std::vector<HistoryStep> Steps() { return ReadHistory(Database).Steps; }
    Outcome Undo(int count = 1) { return UndoSteps(Database, count).Result; }
    Outcome Redo(int count = 1) { return RedoSteps(Database, count).Result; }
};

TEST_F(HistoryTest, BringsBackADeletedSectionAlsoTomorrow) {
    const std::int32_t first = AddSection("W1");
    const std::int32_t second = AddSection("W2");
    AddRecord(first);
    AddRecord(second);
    const std::string before = Dump();
    _TESTING_DATA section;
    section.ID = first;
    Folder.Clock.Local += std::chrono::hours(1);  // creation times must be the old ones
    ASSERT_TRUE(Database.DeleteTesting(section));
    const std::string after = Dump();
    ASSERT_NE(before, after);
    Open();
    const std::vector<HistoryStep> steps = Steps();
    ASSERT_EQ(steps.size(), 5U);
    EXPECT_EQ(steps.back().Name, StepDeleteSection);
    EXPECT_EQ(steps.back().Section, first);
    EXPECT_EQ(StepPlace(steps.back()), "W1 - W1b");
    EXPECT_EQ(steps.back().Sections, 1);
    EXPECT_EQ(steps.back().Records, 1);
    EXPECT_EQ(StepPlace(steps[2]), "W1 - W1b  PL 12.4 m");

    EXPECT_EQ(Undo(), Outcome::Done);
    EXPECT_EQ(Dump(), before);
    Open();
    EXPECT_EQ(Redo(), Outcome::Done);
    EXPECT_EQ(Dump(), after);
    EXPECT_EQ(Redo(), Outcome::Nothing);
    EXPECT_EQ(Undo(6), Outcome::Nothing);
    EXPECT_EQ(Dump(), after) << "all of them or none";
    EXPECT_EQ(Undo(5), Outcome::Done);
    EXPECT_EQ(Redo(2), Outcome::Done);
    AddSection("W3");  // what was undone can't be done again now
    EXPECT_EQ(Redo(), Outcome::Nothing);
    EXPECT_EQ(Steps().size(), 3U);
    EXPECT_EQ(GoToStep(Database, 0).Result, Outcome::Done);
    EXPECT_EQ(Steps().front().Undone, true);
}

TEST_F(HistoryTest, TellsWhatNoLongerFits) {
    const std::int32_t first = AddSection("W1");
    const _REC_DATA record = AddRecord(first);
    Database.Close();
    {
        CDbRec other;  // a program that keeps no journal
        ASSERT_TRUE(other.OpenDatabase(Path, CDbPassword, CDbBase::Access::Making));
        _REC_DATA changed = record;
        changed.Comment = "X";
        ASSERT_TRUE(other.UpdateRecord(changed));
    }
    Open();
    const std::string before = Dump();
    StepResult result = UndoSteps(Database);
    EXPECT_EQ(result.Result, Outcome::Unfit);
    EXPECT_NE(result.Why.find("1"), std::string::npos) << result.Why;
    EXPECT_EQ(Dump(), before);

    // A section that has got a record in that way isn't taken from under it.
    Database.Close();
    {
        CDbRec other;
        ASSERT_TRUE(other.OpenDatabase(Path, CDbPassword, CDbBase::Access::Making));
        ASSERT_TRUE(other.UpdateRecord(record));
        _REC_DATA more = record;
        ASSERT_TRUE(other.AddRecord(more));
    }
    Open();
    EXPECT_EQ(Undo(), Outcome::Done);
    EXPECT_EQ(Undo(), Outcome::Unfit);
    EXPECT_EQ(Redo(), Outcome::Done);
}

TEST_F(HistoryTest, BelongsToOneFile) {
    AddSection("W1");
    Database.SaveCopy(Folder.Path("db/saved.mdb"));
    Database.Close();
    fs::copy_file(Folder.Host("db/p.mdb"), Folder.Host("db/copy.mdb"));
    fs::rename(Folder.Host("db/p.mdb"), Folder.Host("db/renamed.mdb"));

    Path = Folder.Path("db/renamed.mdb");
    Open();
    EXPECT_EQ(Undo(), Outcome::Done) << "a renamed file is the same one";

    Path = Folder.Path("db/copy.mdb");
    Open();
    EXPECT_TRUE(ReadHistory(Database).Foreign);
    EXPECT_TRUE(Steps().empty());
    EXPECT_EQ(Undo(), Outcome::Nothing);
    AddSection("W2");
    EXPECT_TRUE(ReadHistory(Database).Former);
    EXPECT_EQ(Steps().size(), 1U);
    EXPECT_EQ(Undo(2), Outcome::Nothing);

    Path = Folder.Path("db/saved.mdb");
    Open();
    EXPECT_TRUE(Database.ExecuteAsIs("SELECT 1 FROM sqlite_master WHERE name LIKE 'Aux%'").IsEof());

    Path = Folder.Path("db/copy.mdb");
    Open();
    ASSERT_TRUE(ForgetHistory(Database));
    EXPECT_TRUE(Steps().empty());
    EXPECT_EQ(Undo(), Outcome::Nothing);
    for (const char* const table : {"Aux_Testing", "Aux_Record", "Aux_Attrib", "Aux_Picture"}) {
        EXPECT_TRUE(Database.ExecuteAsIs(std::string("SELECT 1 FROM ") + table).IsEof()) << table;
    }
}

TEST_F(HistoryTest, PicturesComeAndGoWithTheirRows) {
    const std::int32_t section = AddSection("W1");
    const _REC_DATA record = AddPictured(section, "A.jpg");
    const auto both = Pictures();
    ASSERT_TRUE(DeleteDefect(Database, record));
    EXPECT_TRUE(Pictures().empty());
    EXPECT_EQ(HeldFiles(), 1);
    EXPECT_EQ(Undo(), Outcome::Done);
    EXPECT_EQ(Pictures(), both) << "under the name that it had";
    EXPECT_EQ(HeldFiles(), 0);
    EXPECT_EQ(Undo(), Outcome::Done);
    EXPECT_TRUE(Pictures().empty()) << "the picture was made with the record";
    Open();
    EXPECT_EQ(Redo(), Outcome::Done);
    EXPECT_EQ(Pictures(), both);

    // Drawn on twice, without any change of the row.
    for (const char* const drawn : {"drawn", "drawn twice"}) {
        ASSERT_TRUE(KeepAsStep(Database, StepDrawPicture, PictureFate::Replaced, record.GetPicture1(),
                               section, record.ID));
        ASSERT_TRUE(HostFiles().WriteFile(record.GetPicture1(), drawn));
    }
    const auto drawn = Pictures();
    EXPECT_EQ(Steps().back().Record, record.ID);
    EXPECT_EQ(Undo(2), Outcome::Done);
    EXPECT_EQ(Pictures(), both);
    EXPECT_EQ(Redo(2), Outcome::Done);
    EXPECT_EQ(Pictures(), drawn);

    // Another file stands where the picture stood: neither is lost.
    ASSERT_TRUE(DeleteDefect(Database, record));
    Folder.WriteFile("v/A.jpg", "somebody else's");
    EXPECT_EQ(Undo(), Outcome::Unfit);
    EXPECT_EQ(Pictures()["A.jpg"], "somebody else's");
    fs::remove(Folder.Host("v/A.jpg"));
    fs::rename(Folder.Host("v/.drovane-held"), Folder.Host("v/elsewhere"));
    EXPECT_EQ(Undo(), Outcome::Unfit) << "the picture is gone";
    fs::rename(Folder.Host("v/elsewhere"), Folder.Host("v/.drovane-held"));
    EXPECT_EQ(Undo(), Outcome::Done);
    EXPECT_EQ(Pictures(), drawn);
    ASSERT_TRUE(ForgetHistory(Database));
    EXPECT_EQ(HeldFiles(), 0);
    EXPECT_EQ(Pictures(), drawn);
}

TEST_F(HistoryTest, FinishesWhatACrashLeft) {
    const std::int32_t section = AddSection("W1");
    const _REC_DATA record = AddPictured(section, "a.jpg");
    const auto before = Pictures();
    // The row is gone, the file isn't yet.
    ASSERT_TRUE(KeepForUndo(Database, {record.GetPicture1()}));
    ASSERT_TRUE(Database.DeleteRecord(record.ID));
    Open();
    EXPECT_TRUE(Pictures().empty());
    EXPECT_EQ(Undo(), Outcome::Done);
    EXPECT_EQ(Pictures(), before);
    // It was going to be drawn on.
    ASSERT_TRUE(KeepAsStep(Database, StepDrawPicture, PictureFate::Replaced, record.GetPicture1(), section,
                           record.ID));
    EXPECT_EQ(Steps().size(), 3U);
    Open();
    EXPECT_EQ(Steps().size(), 2U) << "nothing was drawn";
    EXPECT_EQ(HeldFiles(), 0);
    EXPECT_EQ(Pictures(), before);
    // Held, and the change never came.
    ASSERT_TRUE(KeepForUndo(Database, {record.GetPicture1()}));
    EXPECT_EQ(HeldFiles(), 1);
    DropKept(Database);
    EXPECT_EQ(HeldFiles(), 0);
    EXPECT_EQ(Undo(2), Outcome::Done);
}

// In one run that never closes the project, too.
TEST_F(HistoryTest, KeepsTheNewestSteps) {
    for (int i = 0; i < 1300; ++i) {
        AddSection("W" + std::to_string(i));
    }
    EXPECT_LE(Steps().size(), 1256U);
    Open();
    EXPECT_EQ(Steps().size(), 1000U);
    EXPECT_EQ(Undo(1001), Outcome::Nothing);
    EXPECT_EQ(Undo(1000), Outcome::Done);
    EXPECT_EQ(Redo(1000), Outcome::Done);
}

TEST_F(HistoryTest, AFullDiskLeavesTheChangeWithItsStepOrNeither) {
    const std::int32_t section = AddSection("W1");
    std::string before = Dump();
    std::size_t steps = Steps().size();
    int failed = 0;
    int stored = 0;
    Folder.Prompts.Allow(2008);
    for (int i = 0; i < 60; ++i) {
        // Room for none, some or all of the pages that the change and its step need.
        const auto size = static_cast<rlim_t>(fs::file_size(Folder.Host("db/p.mdb")));
        _TESTING_DATA changed;
        changed.ID = section;
        changed.Comment = std::string(6000, static_cast<char>('a' + i % 26));
        bool done = false;
        {
            const CFullDisk disk(size + static_cast<rlim_t>(i % 12) * 2048);
            done = Database.UpdateTesting(changed);
        }
        const std::string now = Dump();
        EXPECT_EQ(done, now != before);
        EXPECT_EQ(Steps().size() - steps, done ? 1U : 0U);
        (done ? stored : failed) += 1;
        before = now;
        steps = Steps().size();
    }
    EXPECT_GT(failed, 5);
    EXPECT_GT(stored, 5);
    EXPECT_EQ(Undo(static_cast<int>(steps)), Outcome::Done);
    EXPECT_EQ(Redo(static_cast<int>(steps)), Outcome::Done);
    EXPECT_EQ(Dump(), before);
}

}  // namespace
