// Restore points: when they are made, which of them stay, and what comes back from them.
#include <gtest/gtest.h>

#include <filesystem>

#include "defects/recordchanges.h"
#include "history/comparison.h"
#include "history/restorepoints.h"
#include "history/steps.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "tests/history/CHistoryTest.h"
#include "tests/support/CFullDisk.h"

namespace {

namespace fs = std::filesystem;
using std::chrono::days;
using std::chrono::hours;

class RestorePoints : public CHistoryTest {
protected:
    std::vector<RestorePoint> Points() { return ListRestorePoints(Path); }
};

TEST_F(RestorePoints, AreMadeOnceADayBeforeTheFirstChange) {
    AddSection("W1");
    EXPECT_TRUE(Points().empty()) << "there was nothing to lose";
    const std::string before = Dump(Database);
    Folder.Clock.Local += days(1);
    AddSection("W2");
    AddSection("W3");
    ASSERT_EQ(Points().size(), 1U);
    EXPECT_EQ(Points()[0].Reason, PointDaily);
    EXPECT_EQ(Points()[0].Time, "2026-03-15 09:26:53");
    EXPECT_EQ(Points()[0].Name, "2026-03-15-092653");
    CDbRec point;
    ASSERT_TRUE(point.OpenDatabase(Points()[0].Path, CDbPassword));
    EXPECT_TRUE(point.IsReadOnly()) << "whatever it is opened for";
    EXPECT_EQ(Dump(point), before);
    EXPECT_TRUE(point.ExecuteAsIs("SELECT 1 FROM sqlite_master WHERE name LIKE 'Aux%'").IsEof());
    EXPECT_TRUE(ListRestorePoints(Folder.Path("elsewhere/p.mdb")).empty()) << "of another file of this name";

    // A full disk keeps nobody from working.
    Folder.Clock.Local += days(1);
    Folder.Prompts.Expect(3381);
    Folder.Prompts.Expect(2007);
    {
        const CFullDisk disk(1);
        _TESTING_DATA section;
        EXPECT_FALSE(Database.AddTesting(section));
    }
    EXPECT_EQ(Points().size(), 1U);
    EXPECT_EQ(std::distance(fs::directory_iterator(Folder.Host("db/_backup")), {}), 1) << "nothing half made";
    Folder.Prompts.ExpectQuestion(3380, false);
    {
        const CFullDisk disk(1);
        EXPECT_FALSE(MakeRestorePoint(Database, PointImport));
    }
}

TEST_F(RestorePoints, AreThinnedByAgeAndSpace) {
    AddSection("W1");
    Folder.Clock.Local -= days(100);
    for (int i = 0; i < 200; ++i) {
        ASSERT_TRUE(MakeRestorePoint(Database, PointImport));
        Folder.Clock.Local += hours(12);
    }
    Folder.Clock.Local -= hours(12);
    const std::vector<RestorePoint> points = Points();
    std::vector<std::string> names;
    for (const RestorePoint& point : points) {
        names.push_back(point.Name);
    }
    // Both of today, then one a day for a month, the first of each, then the first of each month.
    ASSERT_GT(names.size(), 35U);
    EXPECT_EQ(names[0], "2026-03-13-212653");
    EXPECT_EQ(names[1], "2026-03-13-092653");
    EXPECT_EQ(names[2], "2026-03-12-092653");
    EXPECT_EQ(names.back(), "2025-12-04-092653");
    EXPECT_EQ(names.size(), 2U + 31U + 3U);
    ThinRestorePoints(points[0].Bytes * 5 + 1);
    EXPECT_EQ(Points().size(), 5U);
    ThinRestorePoints(0);
    ASSERT_EQ(Points().size(), 1U);
    EXPECT_EQ(Points()[0].Name, names[0]);
}

TEST_F(RestorePoints, BringBackProjectsSectionsAndPictures) {
    const std::int32_t first = AddSection("W1");
    const std::int32_t second = AddSection("W2");
    const _REC_DATA record = AddRecord(first, Folder.WriteFile("v/A.jpg", "picture"));
    const _REC_DATA other = AddRecord(second);
    ASSERT_TRUE(MakeRestorePoint(Database, PointImport));
    const RestorePoint point = Points()[0];
    const std::string then = Dump(Database);
    EXPECT_TRUE(CompareWithPoint(Database, point.Path).empty());

    ASSERT_TRUE(DeleteDefect(Database, record));
    const std::int32_t added = AddRecord(first).ID;
    _REC_DATA changed = other;
    changed.Comment = "changed";
    ASSERT_TRUE(Database.UpdateRecord(changed));
    AddSection("W3");
    const std::vector<SectionDifference> differences = CompareWithPoint(Database, point.Path);
    ASSERT_EQ(differences.size(), 3U);
    EXPECT_EQ(differences[0].Label, "W1 - W1b");
    ASSERT_EQ(differences[0].Rows.size(), 2U);
    EXPECT_EQ(differences[0].Rows[0].Change, RowChange::Removed);
    EXPECT_EQ(differences[0].Rows[0].Record, record.ID);
    EXPECT_EQ(differences[0].Rows[1].Change, RowChange::Added);
    EXPECT_EQ(differences[0].Rows[1].Record, added);
    ASSERT_EQ(differences[1].Rows.size(), 1U);
    ASSERT_EQ(differences[1].Rows[0].Fields.size(), 1U);
    EXPECT_EQ(differences[1].Rows[0].Fields[0].Name, "Comment");
    EXPECT_EQ(differences[1].Rows[0].Fields[0].Now, "changed");
    EXPECT_EQ(differences[2].Rows[0].Record, -1);

    // One section, as a step, with the picture that was deleted.
    EXPECT_FALSE(fs::exists(Folder.Host("v/A.jpg")));
    const std::string now = Dump(Database);
    Folder.Clock.Local += hours(1);
    ASSERT_TRUE(TakeBackSection(Database, point.Path, first));
    EXPECT_EQ(CompareWithPoint(Database, point.Path).size(), 2U);
    EXPECT_EQ(ReadHistory(Database).Steps.back().Name, 3354);
    EXPECT_EQ(ReadHistory(Database).Steps.back().Records, 2);
    EXPECT_EQ(Folder.ReadFile("v/A.jpg"), "picture");
    EXPECT_EQ(UndoSteps(Database).Result, StepResult::Outcome::Done);
    EXPECT_EQ(Dump(Database), now);

    // A whole one, also when the project itself is gone; its pictures come back where they are held.
    fs::remove(Folder.Host("v/A.jpg"));
    Database.Close();
    RestoredPictures pictures = RestoreProject(point, Path, Folder.Path("db/new.mdb"));
    EXPECT_EQ(pictures.BroughtBack, 1);
    EXPECT_EQ(Folder.ReadFile("v/A.jpg"), "picture");
    CDbRec restored;
    ASSERT_TRUE(restored.OpenDatabase(Folder.Path("db/new.mdb"), CDbPassword));
    EXPECT_EQ(Dump(restored), then);
    EXPECT_FALSE(restored.IsReadOnly());
    EXPECT_EQ(UndoSteps(restored).Result, StepResult::Outcome::Nothing);
    EXPECT_THROW((void)RestoreProject(point, Path, Folder.Path("db/new.mdb")), CDbError);
    fs::remove(Folder.Host("db/p.mdb"));
    fs::remove(Folder.Host("v/A.jpg"));
    pictures = RestoreProject(point, Path, Folder.Path("db/again.mdb"));
    EXPECT_EQ(pictures.Missing, 1);
    EXPECT_EQ(Points().size(), 2U) << "and one before the section was taken back";
}

// What a point names is kept, however short the history is.
TEST_F(RestorePoints, KeepHeldPictures) {
    const std::int32_t section = AddSection("W1");
    const _REC_DATA named = AddRecord(section, Folder.WriteFile("v/a.jpg", "named"));
    ASSERT_TRUE(MakeRestorePoint(Database, PointImport));
    const _REC_DATA unnamed = AddRecord(section, Folder.WriteFile("v/b.jpg", "unnamed"));
    ASSERT_TRUE(DeleteDefect(Database, named));
    ASSERT_TRUE(DeleteDefect(Database, unnamed));
    const auto held = [&] {
        return std::distance(fs::directory_iterator(Folder.Host("v/.drovane-held")), {});
    };
    EXPECT_EQ(held(), 2);
    Folder.Clock.Local += days(91);  // the steps are too old then
    AddSection("W2");
    Database.Close();
    EXPECT_EQ(held(), 1);
    ASSERT_TRUE(Database.OpenDatabase(Path, CDbPassword));
    EXPECT_EQ(ReadHistory(Database).Steps.size(), 1U);
    ASSERT_TRUE(TakeBackSection(Database, Points().back().Path, section));
    EXPECT_EQ(Folder.ReadFile("v/a.jpg"), "named");
}

}  // namespace
