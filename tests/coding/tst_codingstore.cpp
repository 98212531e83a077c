// What a coding line leaves in the project, its files and its history.
#include <gtest/gtest.h>

#include <filesystem>

#include "history/steps.h"
#include "tests/history/CHistoryTest.h"
#include "tests/workbench/numberedvideo.h"
#include "workbench/coding/codingstore.h"
#include "workbench/coding/openruns.h"

namespace {

class CodingStore : public CHistoryTest {
protected:
    CodingStore() {
        Folder.WriteFile("job/v.avi", "");
        EXPECT_TRUE(MakeNumberedVideo({.Name = "v",
                                       .Ending = ".avi",
                                       .Options = "-c:v mpeg4 -q:v 3 -g 12",
                                       .Width = 360,
                                       .Height = 288,
                                       .Frames = 100},
                                      Folder.Host("job/v.avi")));
        Section.StartWell = "Y1";
        Section.EndWell = "Y2";
        Section.PipeLength = "30";
        Section.DistanceEnd = 30.0F;
        Section.GpsXStart = 106.5;
        Section.VideoFileList = Folder.Path("job/v.avi");
        EXPECT_TRUE(Database.AddTesting(Section));
        Section.ID = Database.LastInsertId();
    }

    CRecDataArray Records() {
        CRecDataArray records;
        EXPECT_TRUE(Database.LookAtRecords(Section.ID, records, false));
        return records;
    }
    std::vector<_REC_DATA> Open() { return OpenRuns(Database, Records()); }
    std::optional<std::int32_t> Code(const char* line, double seconds = 1.0) {
        const CodingMeaning meaning = UnderstandCoding(ReadCodingLine(line), Database, Section, Open());
        EXPECT_TRUE(meaning.IsComplete()) << line;
        return meaning.Mark == CodingLine::Run::Ends
                   ? EndCodedRun(Database, meaning)
                   : StoreCoded(Database, Section, Section.FirstVideo(), seconds, meaning);
    }
    std::size_t Pictures() const {
        const std::filesystem::path folder = Folder.Host("job/picture");
        return std::filesystem::exists(folder)
                   ? static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}))
                   : 0;
    }
    std::size_t Steps() { return ReadHistory(Database).Steps.size(); }
    void Undo() { EXPECT_EQ(UndoSteps(Database).Result, StepResult::Outcome::Done); }

    _TESTING_DATA Section;
};

}  // namespace

TEST_F(CodingStore, StoresWhatTheFormWouldInOneStep) {
    const std::size_t before = Steps();
    const auto id = Code("PL3 12.4~15 0903 沿接口", 1.48);
    const CRecDataArray records = Records();
    ASSERT_EQ(records.GetSize(), 1);
    const _REC_DATA& record = records[0];
    EXPECT_EQ(id.value_or(-1), record.ID);
    EXPECT_EQ(record.DefectCode, "PL");
    EXPECT_EQ(record.DefectLevel, 3);
    EXPECT_FLOAT_EQ(record.DistanceStart, 12.4F);
    EXPECT_FLOAT_EQ(record.DistanceEnd, 15.0F);
    EXPECT_EQ(record.DirectionStart, 9);
    EXPECT_EQ(record.DirectionEnd, 3);
    EXPECT_EQ(record.Comment, "沿接口");
    EXPECT_DOUBLE_EQ(record.GpsX, 106.5);
    EXPECT_NEAR(record.GetPicTime1(), 1.48, 1e-3);
    EXPECT_EQ(Pictures(), 2U) << "the frame and its twin";
    EXPECT_EQ(Steps(), before + 1);
    Undo();
    EXPECT_TRUE(Records().IsEmpty());
}

TEST_F(CodingStore, LeavesNothingBehindWhereItCannotStore) {
    ASSERT_TRUE(Code("PL3 12.4"));
    const std::size_t files = Pictures();
    Folder.Prompts.Expect(2800);  // nothing wrong, in a section with a defect
    EXPECT_FALSE(Code("GDZC1 0m"));
    EXPECT_EQ(Records().GetSize(), 1);
    EXPECT_EQ(Pictures(), files);
}

TEST_F(CodingStore, ARunStaysOpenUntilItHasAnEnd) {
    const auto first = Code("[PL3 5.0 0903");
    ASSERT_TRUE(Code("[CJ2 8.0"));
    ASSERT_TRUE(Code("SL1 9.0"));
    ASSERT_EQ(Open().size(), 2U);
    Database.Close();
    ASSERT_TRUE(Database.OpenDatabase(Path, CDbPassword));
    ASSERT_EQ(Open().size(), 2U) << "also after the program has ended";
    EXPECT_EQ(Open()[0].ID, first.value_or(-1));

    EXPECT_EQ(Code("]1 12.4"), first);
    ASSERT_EQ(Open().size(), 1U);
    Undo();
    EXPECT_EQ(Open().size(), 2U) << "undoing the end opens it again";
    EXPECT_TRUE(Code("]2 8.0")) << "a run that ends where it began is a place";
    ASSERT_EQ(Open().size(), 1U);
    Database.SaveCopy(Folder.Path("db/copy.mdb"));
    CDbRec copy;
    ASSERT_TRUE(copy.OpenDatabase(Folder.Path("db/copy.mdb"), CDbPassword));
    CRecDataArray records;
    ASSERT_TRUE(copy.LookAtRecords(-1, records, false));
    EXPECT_EQ(OpenRuns(copy, records).size(), 1U) << "a copy of the project knows it too";
}
