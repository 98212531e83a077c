// Every fault is planted into a project without any, and found once, and nothing else is.
#include <filesystem>
#include <functional>

#include "defects/picturesteps.h"
#include "shell/language.h"
#include "store/sqltext.h"
#include "store/stepnames.h"
#include "tests/check/CCheckTest.h"

namespace {

namespace fs = std::filesystem;

class Check : public CCheckTest {
protected:
    struct Fault {
        std::vector<int> Rules;
        std::function<void(CDbRec&)> Plant;
        const char* Standard = "GB";
    };

    static std::function<void(CDbRec&)> Sql(std::vector<std::string> statements) {
        return [statements = std::move(statements)](CDbRec& database) {
            for (const std::string& statement : statements) {
                database.Execute(statement);
            }
        };
    }
    // `column` of the first section, or of the first record.
    static std::function<void(CDbRec&)> Section(const std::string& column, const std::string& value) {
        return Sql({"update Testing set " + column + " = '" + EscapeSqlText(value) + "' where ID = 1"});
    }
    static std::function<void(CDbRec&)> Record(const std::string& column, const std::string& value) {
        return Sql({"update Record set " + column + " = '" + EscapeSqlPath(value) + "' where ID = 1"});
    }
    std::function<void(CDbRec&)> Video(const std::string& path) const {
        return Sql({"update Testing set VideoFileList = '" + path + "' where ID = 1",
                    "update Record set Video = '" + EscapeSqlPath(path) + "' where TestingID = 1"});
    }
    std::function<void(CDbRec&)> PictureOfVideo(const std::string& video) const {
        return [this, video](CDbRec& database) {
            ASSERT_TRUE(GrabFrame(Folder.Path(video), 1.0, Folder.Path("job/1/other.jpg")));
            Record("Picture1", Folder.Path("job/1/other.jpg"))(database);
        };
    }
    std::function<void(CDbRec&)> CopyOfPicture(int section, int record, const std::string& target) const {
        return [this, section, record, target](CDbRec& database) {
            fs::create_directories(Folder.Host(target).parent_path());
            fs::copy_file(Folder.Host(PictureOf(section, record)), Folder.Host(target),
                          fs::copy_options::overwrite_existing);
            Record("Picture1", Folder.Path(target))(database);
        };
    }
    void ExpectFaults(const std::vector<Fault>& faults) {
        for (std::size_t i = 0; i < faults.size(); ++i) {
            const Fault& fault = faults[i];
            const std::string path = MakeCleanProject("f" + std::to_string(i) + ".mdb", fault.Standard);
            CDbRec database;
            ASSERT_TRUE(database.OpenDatabase(path, CDbPassword));
            fault.Plant(database);
            const std::vector<CheckFinding> findings = Find(database);
            EXPECT_EQ(RulesOf(findings), fault.Rules) << "planted " << fault.Rules.front() << ", found:\n"
                                                      << Text(findings);
        }
    }
};

TEST_F(Check, CleanProjectsOfEachStandardAreSilent) {
    for (const char* standard : {"GB", "GZ", "SH", "CQ"}) {
        CDbRec database;
        ASSERT_TRUE(
            database.OpenDatabase(MakeCleanProject(std::string(standard) + ".mdb", standard), CDbPassword));
        const std::vector<CheckFinding> findings = Find(database);
        EXPECT_TRUE(findings.empty()) << standard << ":\n" << Text(findings);
        // Manholes have neither distance, clock nor grade, and a record that nothing is wrong no comment.
        database.Execute(
            "update Record set DefectCode = 'JCJ_JNYQS', DistanceStart = 99, DirectionStart = 0, "
            "DefectLevel = 0 where ID = 1");
        database.Execute("delete from Record where ID = 4");
        database.Execute(
            "update Record set DefectCode = 'GDZC', Comment = '', DirectionStart = 0, Picture1 = "
            "'' where ID = 3");
        EXPECT_TRUE(Find(database).empty()) << standard << ":\n" << Text(Find(database));
    }
}

TEST_F(Check, FindsEachFaultOfSections) {
    const std::string second = Folder.Path(FolderOf(2) + "v.avi");
    ExpectFaults({
        {{RuleNoWell}, Section("StartWell", " ")},
        {{RuleMissingValue}, Section("Location", "")},
        {{RuleDoubledWells},
         Sql({"update Testing set StartWell = 'A', EndWell = 'B', GpsXStart = 118.32, GpsXEnd = 118.32031 "
              "where ID = 3"})},
        {{RuleCaseOfWells}, Section("EndWell", "b")},
        {{RuleReversedTwin},
         Sql({"update Testing set StartWell = 'B', EndWell = 'A', GpsXStart = 118.32031, GpsXEnd = 118.32 "
              "where ID = 3"})},
        {{RuleNoLength}, Section("PipeLength", "30 m")},
        {{RuleInspectedLength}, Section("DetectionLength", "30.5")},
        {{RuleNoDiameter}, Section("PipeDiameter", "DN400")},
        {{RuleOddDiameter}, Section("PipeDiameter", "40")},
        {{RuleImpossibleDate}, Section("TestingDate", "2026/02/30 08:00:00")},
        {{RuleFarDate}, Section("TestingDate", "2025/03/01 08:00:00")},
        {{RuleDateForm}, Section("TestingDate", "2026.3.1")},
        {{RuleNoVideo}, Video("")},
        {{RuleVideoMissing}, Video(Folder.Path("job/1/gone.avi"))},
        {{RuleVideoUnreadable}, Video(Folder.WriteFile("job/1/text.avi", "no video at all"))},
        {{RuleVideoTooShort},
         Sql({"update Record set PicTimeInVideo1 = 100 where ID = 1",
              "update Record set PicTimeInVideo1 = 110 where ID = 2"})},
        {{RuleSharedVideo}, Video(second)},
        {{RuleNoRecord}, Sql({"delete from Record where TestingID = 1"})},
        {{RuleNoEnd}, Sql({"update Testing set DistanceEnd = 0 where ID = 1"})},
        {{RuleNoEndForDensity}, Sql({"update Testing set DistanceEnd = 0 where ID = 1"}), "SH"},
    });
}

TEST_F(Check, FindsEachFaultOfRecords) {
    std::vector<std::string> texts;
    {
        CDbRec database;
        ASSERT_TRUE(database.OpenDatabase(MakeCleanProject("texts.mdb", "GB"), CDbPassword));
        ASSERT_TRUE(database.LoadDefectLevels("PL", &texts, nullptr));
    }
    const std::string third = "DefectLevel = 3, Comment = '" + EscapeSqlText(texts.at(2)) + "'";
    ExpectFaults({
        {{RuleBeyondLength}, Sql({"update Record set DistanceStart = 31, DistanceEnd = 31 where ID = 2"})},
        {{RuleStartBehindEnd}, Record("DistanceEnd", "7.5")},
        {{RuleGradeOutside}, Record("DefectLevel", "9")},
        {{RuleUnknownCode}, Record("DefectCode", "QQ")},
        {{RuleClock}, Record("DirectionStart", "13")},
        {{RuleNoSection}, Record("TestingID", "99")},
        {{RuleNormalBesideDefects}, Record("DefectCode", "GDZC")},
        {{RuleTwice}, Sql({"update Record set DistanceStart = 8, DistanceEnd = 8 where ID = 2"})},
        {{RuleNoComment}, Record("Comment", "")},
        {{RuleOtherComment}, Record("DefectLevel", "3")},
        {{RuleTimeFalls},
         Sql({"update Record set PicTimeInVideo1 = 7.9 where ID = 1",
              "update Record set PicTimeInVideo1 = 0.5 where ID = 2"})},
        {{RuleOtherVideo}, Record("Video", Folder.Path(FolderOf(2) + "v.avi"))},
        {{RuleNoPicture}, Record("Picture1", "")},
        {{RuleOrder},
         Sql({"update Record set DistanceStart = 25, DistanceEnd = 25, " + third + " where ID = 1",
              "update Record set DistanceStart = 5, DistanceEnd = 5, " + third + " where ID = 2"})},
    });
}

TEST_F(Check, FindsEachFaultOfPictures) {
    ExpectFaults({
        {{RulePictureMissing}, Record("Picture1", Folder.Path("job/1/gone.jpg"))},
        {{RulePictureUnreadable},
         Record("Picture1", Folder.WriteFile("job/1/text.jpg", "no picture at all"))},
        {{RulePictureBlack}, PictureOfVideo("black.avi")},
        {{RulePictureBlurred}, PictureOfVideo("blurred.avi")},
        {{RulePictureShared}, Record("Picture1", Folder.Path(PictureOf(1, 2)))},
        {{RulePictureTwice}, CopyOfPicture(1, 2, "job/1/copy.jpg")},
        {{RulePictureTime}, Record("PicTimeInVideo1", "-7")},
        {{RulePictureName}, CopyOfPicture(1, 1, "job/else/p22.jpg")},
        {{RuleNoOriginal},
         [this](CDbRec& database) {
             ASSERT_TRUE(KeepAsStep(database, StepDrawPicture, PictureFate::Replaced,
                                    Folder.Path(PictureOf(1, 1)), 1, 1));
         }},
    });
}

TEST_F(Check, FindsEachFaultOfPositionsProjectAndTexts) {
    ExpectFaults({
        {{RuleNoPosition}, Sql({"update Testing set GpsXStart = 0, GpsYStart = 0 where ID = 1"})},
        {{RuleNoPositions},
         Sql({"update Testing set GpsXStart = 0, GpsYStart = 0, GpsXEnd = 0, GpsYEnd = 0"})},
        {{RuleSameEnds}, Sql({"update Testing set GpsXStart = GpsXEnd where ID = 1"})},
        {{RuleLengthOfPositions}, Sql({"update Testing set GpsXStart = 118.319 where ID = 1"})},
        {{RuleWellMoves}, Sql({"update Testing set GpsXEnd = 118.32043 where ID = 1"})},
        {{RuleWellDepths}, Section("DepthEnd", "2.5")},
        {{RuleFarAway},
         Sql({"update Testing set StartWell = 'X', EndWell = 'Y', GpsYStart = 29.8, GpsYEnd = 29.8 where ID "
              "= "
              "1"})},
        {{RuleNoNumber}, Sql({"update Attrib set ProjectIndex = ''"})},
        {{RuleNoPlace}, Sql({"update Attrib set Location = ' '"})},
        {{RuleNoReport}, Sql({"update Attrib set CriterionName = 'none of ours'"})},
        {{RuleNoDrive}, Record("Picture1", "Q:\\gone\\1.jpg")},
        {{RuleCodePage}, Section("Comment", "破损😀")},
        {{RuleControlCharacters}, Section("Tester", "a\x01")},
        {{RuleDecimals}, Sql({"update Record set DistanceStart = 8.123, DistanceEnd = 8.123 where ID = 1"})},
        {{RuleLongText}, Section("Comment", std::string(40000, 'a'))},
    });
    const std::string path = MakeCleanProject("sonar.mdb", "GB");
    Folder.WriteFile("db/sonar_sn/test_id.ini", "[test_id]\r\ntest_id=77\r\n");
    CDbRec database;
    ASSERT_TRUE(database.OpenDatabase(path, CDbPassword));
    EXPECT_EQ(RulesOf(Find(database)), std::vector<int>{RuleSonar});
}

TEST_F(Check, TellsEachRuleInBothLanguages) {
    std::vector<std::string> texts;
    for (const char* language : {"English", "简体中文"}) {
        Folder.UseLanguage(language);
        for (const CheckRule& rule : CheckRules()) {
            EXPECT_FALSE(RuleName(rule.Number).empty()) << rule.Number;
            EXPECT_FALSE(RuleAdvice(rule.Number).empty()) << rule.Number;
            texts.push_back(RuleName(rule.Number));
            texts.push_back(RuleAdvice(rule.Number));
        }
    }
    std::sort(texts.begin(), texts.end());
    const std::size_t rules = CheckRules().size();
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    // Number and place of a project, and files that a moved folder took along, share their advice.
    EXPECT_EQ(texts.size(), 4 * rules - 4);
}

TEST_F(Check, GoesOnAfterAChangeInTheMiddleAndTellsWhenItCannot) {
    CDbRec database;
    ASSERT_TRUE(database.OpenDatabase(MakeCleanProject("p.mdb", "GB"), CDbPassword));
    CheckOptions options;
    options.Media = CheckOptions::Files::Ignored;
    CCheckRun run(database, options);
    (void)run.Work(std::chrono::milliseconds(0));  // a first piece
    ASSERT_EQ(run.Now(), CCheckRun::State::Reading);
    Section("PipeDiameter", "")(database);
    while (run.Work(std::chrono::milliseconds(5)) != CCheckRun::State::Done) {
        ASSERT_NE(run.Now(), CCheckRun::State::Failed);
    }
    EXPECT_EQ(RulesOf(run.Findings()), std::vector<int>{RuleNoDiameter});

    database.ExecuteAsIs("DROP TABLE Record");
    Folder.Prompts.Expect(2017);
    EXPECT_FALSE(CheckProject(database, options));
}

}  // namespace
