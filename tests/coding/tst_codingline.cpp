// Every form of the coding line, and what it means under a standard.
#include <gtest/gtest.h>

#include "shell/CPrompts.h"
#include "store/CDbRec.h"
#include "tests/support/CTestFolder.h"
#include "workbench/coding/codingmeaning.h"
#include "workbench/coding/favourites.h"

namespace {

struct Row {
    const char* Line;
    // What it means: "code grade start end clock-clock comment", "-" for what is missing, "?" before an
    // assumed clock; then the field at which storing stops.
    const char* Meaning;
    std::optional<CodingField> StopsAt = std::nullopt;
    const char* Comment = "";  // typed in its own field
};

constexpr auto NoStop = std::nullopt;
using enum CodingField;

const Row Rows[] = {
    {"PL3 12.4 0903 text", "PL 3 12.4 12.4 9-3 text"},
    {"pl3 12.4m 0903 two  words", "PL 3 12.4 12.4 9-3 two  words"},
    {"PL 3 12m 0003", "PL 3 12 12 3-3 *"},
    {"PL3 12. 1212", "PL 3 12 12 12-12 *"},
    {"PL3 .5", "PL 3 0.5 0.5 ?12-12 *"},
    {"PL3 0903 12.4", "PL 3 12.4 12.4 9-3 *"},
    {"PL3 12.4~15 0903", "PL 3 12.4 15 9-3 *"},
    {"PL3 12~15m", "PL 3 12 15 ?12-12 *"},
    {"PL3 12.4 沿接口", "PL 3 12.4 12.4 ?12-12 沿接口"},
    {"PL3 12.4 0903 5 m away", "PL 3 12.4 12.4 9-3 5 m away"},
    {"PL3 12.4", "PL 3 12.4 12.4 ?12-12 5 mm wide", NoStop, " 5 mm wide "},
    {"PL3 12.4 0903 a", "PL 3 12.4 12.4 9-3 a b", NoStop, "b"},
    // A prefix that fits one code only, and a whole code that is also the beginning of others.
    {"S3 12.4", "- - 12.4 12.4 ?12-12 ", Code},
    {"P3 12.4", "PL 3 12.4 12.4 ?12-12 *"},
    {"JG3 12.4", "JG 3 12.4 12.4 ?12-12 *"},
    {"GDZC1 0m", "GDZC 1 0 0 ?12-12 *"},
    // Both widths.
    {"ＰＬ３　１２．４　０９０３　文字", "PL 3 12.4 12.4 9-3 文字"},
    {"PL3 12。4～15", "PL 3 12.4 15 ?12-12 *"},
    {"【PL3 12.4", "PL 3 12.4 12.4 ?12-12 *"},
    // What is missing is never made up.
    {"", "- - - - ?12-12 ", Code},
    {"12.4", "- - 12.4 12.4 ?12-12 ", Code},
    {"XX3 12.4", "- - 12.4 12.4 ?12-12 ", Code},
    {"PL 12.4", "PL - 12.4 12.4 ?12-12 ", Grade},
    {"PL5 12.4", "PL - 12.4 12.4 ?12-12 ", Grade},
    {"PL0 12.4", "PL - 12.4 12.4 ?12-12 ", Grade},
    {"PL33 12.4", "PL - 12.4 12.4 ?12-12 ", Grade},
    {"PL3", "PL 3 - - ?12-12 *", Distance},
    {"PL3 text", "PL 3 - - ?12-12 text", Distance},
    // What could be two things isn't stored.
    {"PL3 12", "PL 3 - - ?12-12 *", Distance},
    {"PL3 12 0903", "PL 3 - - ?12-12 *", Distance},
    {"PL3 12.4 13.5", "PL 3 12.4 12.4 ?12-12 *", Distance},
    {"PL3 12.4 903", "PL 3 12.4 12.4 ?12-12 *", Distance},
    {"PL3 12.4 9:03", "PL 3 12.4 12.4 ?12-12 *", Distance},
    {"PL3 1.2.4", "PL 3 - - ?12-12 *", Distance},
    {"PL3 -5m", "PL 3 - - ?12-12 *", Distance},
    {"PL3 12.4 0913", "PL 3 12.4 12.4 ?12-12 *", Clock},
    {"PL3 12.4 0300", "PL 3 12.4 12.4 ?12-12 *", Clock},
    {"PL3 12.4 0000", "PL 3 12.4 12.4 ?12-12 *", Clock},
    // The rules of the form.
    {"PL3 31.0", "PL 3 31 31 ?12-12 *", Distance},
    {"PL3 15.0~12.4", "PL 3 15 12.4 ?12-12 *", Distance},
    {"PL3 99999999999999999999999999999999999999999999m", "PL 3 - - ?12-12 *", Distance},
};

class CodingLineTable : public testing::Test {
protected:
    CodingLineTable() {
        EXPECT_TRUE(Database.OpenDatabase(Folder.MakeProject(), CDbPassword));
        Section.DistanceEnd = 30.0F;
        Section.PipeLength = "30";
    }

    static std::string Metres(const std::optional<float>& metres) {
        return metres ? testing::PrintToString(*metres) : "-";
    }
    CodingMeaning Understand(const char* line, const char* comment = "",
                             const std::vector<_REC_DATA>& runs = {}) {
        return UnderstandCoding(ReadCodingLine(line, comment), Database, Section, runs);
    }
    static std::string Tell(const CodingMeaning& meaning) {
        return (meaning.Code.empty() ? "-" : meaning.Code) + " " +
               (meaning.Grade == 0 ? "-" : std::to_string(meaning.Grade)) + " " + Metres(meaning.Start) +
               " " + Metres(meaning.End) + " " + (meaning.ClockAssumed ? "?" : "") +
               std::to_string(meaning.ClockStart) + "-" + std::to_string(meaning.ClockEnd) + " " +
               (!meaning.Comment.empty() && meaning.Comment == meaning.GradeText ? "*" : meaning.Comment);
    }

    CTestFolder Folder;
    CDbRec Database;
    _TESTING_DATA Section;
};

_REC_DATA OpenRun(std::int32_t id, const char* code, float start) {
    _REC_DATA run;
    run.ID = id;
    run.DefectCode = code;
    run.DefectLevel = 2;
    run.DistanceStart = run.DistanceEnd = start;
    return run;
}

}  // namespace

TEST_F(CodingLineTable, EveryForm) {
    for (const Row& row : Rows) {
        const CodingMeaning meaning = Understand(row.Line, row.Comment);
        EXPECT_EQ(Tell(meaning), row.Meaning) << row.Line;
        if (!row.StopsAt) {
            EXPECT_TRUE(meaning.IsComplete()) << row.Line << ": " << meaning.Problems[0].Text;
        } else if (meaning.Problems.empty()) {
            ADD_FAILURE() << "nothing stops " << row.Line;
        } else {
            EXPECT_EQ(meaning.Problems[0].Field, *row.StopsAt) << row.Line;
            EXPECT_FALSE(meaning.Problems[0].Text.empty()) << row.Line;
        }
    }
    const CodingMeaning several = Understand("C3 12.4");
    EXPECT_EQ(several.Candidates, (std::vector<std::string>{"CK", "CR", "CJ", "CQ"}));
    EXPECT_NE(several.Problems[0].Text.find("(CK)错口"), std::string::npos);
    EXPECT_EQ(Understand("PL3 1.0").Name, "破裂");
    EXPECT_EQ(Understand("[PL3 12.4").Mark, CodingLine::Run::Begins);
    EXPECT_EQ(Understand("[ PL3 12.4~15").Problems[0].Field, Distance);  // its end comes later
}

TEST_F(CodingLineTable, ManholesAndSectionsWithoutALengthAreTold) {
    EXPECT_TRUE(Understand("JCJ_ZC").Manhole);
    EXPECT_FALSE(Understand("JCJ_ZC").IsComplete());
    EXPECT_FALSE(Understand("J3 1.0").Manhole);
    Section.DistanceEnd = 0.0F;
    ASSERT_EQ(Understand("PL3 12.4").Problems.size(), 1U);
    const std::string withPipe = Understand("PL3 12.4").Problems[0].Text;
    EXPECT_EQ(Understand("PL3 12.4").Problems[0].Field, Length);
    Section.PipeLength = "";
    EXPECT_NE(Understand("PL3 12.4").Problems[0].Text, withPipe);
}

TEST_F(CodingLineTable, ARunEndsByItselfOrByChoice) {
    const std::vector<_REC_DATA> one{OpenRun(7, "PL", 5.0F)};
    const CodingMeaning end = Understand("]12.4", "", one);
    EXPECT_TRUE(end.IsComplete());
    EXPECT_EQ(end.EndedRun, 7);
    EXPECT_FLOAT_EQ(end.End.value_or(0.0F), 12.4F);
    EXPECT_EQ(Understand("】 12.4m", "", one).EndedRun, 7);

    const std::vector<_REC_DATA> two{OpenRun(7, "PL", 5.0F), OpenRun(9, "CJ", 8.0F)};
    EXPECT_EQ(Understand("]12.4", "", two).Problems[0].Field, CodingField::Run);
    EXPECT_NE(Understand("]12.4", "", two).Problems[0].Text.find("2: CJ2 8.00 m"), std::string::npos);
    EXPECT_EQ(Understand("]cj 12.4", "", two).EndedRun, 9);
    EXPECT_EQ(Understand("]1 12.4", "", two).EndedRun, 7);
    for (const char* line : {"]", "]3 12.4", "]SL 12.4", "]12", "]1 4.0", "]1 31.0", "]12.4 13.0"}) {
        EXPECT_FALSE(Understand(line, "", two).IsComplete()) << line;
    }
    EXPECT_FALSE(Understand("]12.4").IsComplete());  // none is open
}

TEST(Favourites, ArePlacesThatStayAndLearn) {
    CFavourites favourites;
    for (int i = 0; i < CFavourites::Places; ++i) {
        favourites.Learn("A" + std::to_string(i));
    }
    favourites.Fix(1, "PL3");
    EXPECT_EQ(favourites.At(0), "A0");
    EXPECT_EQ(favourites.At(1), "PL3");
    favourites.Learn("A0");
    for (int i = 0; i < 3; ++i) {
        favourites.Learn("CJ2");
    }
    EXPECT_EQ(favourites.At(2), "CJ2") << "three times beats once, on the place used least";
    EXPECT_EQ(favourites.At(0), "A0");
    favourites.Fix(0, "CJ2");
    EXPECT_TRUE(favourites.At(2).empty());

    const CFavourites again(favourites.Text());
    for (int i = 0; i < CFavourites::Places; ++i) {
        EXPECT_EQ(again.At(i), favourites.At(i)) << i;
        EXPECT_EQ(again.IsFixed(i), favourites.IsFixed(i)) << i;
    }
    for (const char* text : {"", ";", "x", "PL3=;A", "=3,PL=-5;- - - - - - - - - - - -", ",;!"}) {
        EXPECT_NO_THROW((void)CFavourites(text).At(9)) << text;
    }
    for (int i = 0; i < 2500; ++i) {
        favourites.Learn("SL1");
    }
    EXPECT_EQ(favourites.At(1), "PL3") << "what is fixed stays";
}
