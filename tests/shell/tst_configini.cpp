#include <gtest/gtest.h>

#include <string>

#include "shell/newpipedefaults.h"
#include "shell/textcodec.h"
#include "tests/support/CTestFolder.h"

namespace {

class ConfigIni : public testing::Test {
protected:
    NewPipeDefaults Load(const std::string& content) {
        m_folder.WriteFile("config.ini", content);
        return LoadNewPipeDefaults();
    }
    CTestFolder m_folder;
    const NewPipeDefaults Values{"段 1", "121.5", "31.2", "",     "x;y",  "[t]",
                                 "a=b",  "路",    "300",  "50.5", "公司", "o"};
    const std::string Lines = GbkFromUtf8(
        "section_name=段 1\r\nstart_jing_du=121.5\r\nstart_wei_du=31.2\r\nend_jing_du=\r\nend_wei_du=x;y\r\n"
        "task_no=[t]\r\ntask_name=a=b\r\nplace=路\r\npipe_dia=300\r\npipe_len=50.5\r\ncompany=公司\r\n"
        "oprator=o\r\n");
};

TEST_F(ConfigIni, KeepsWhatIsntItsOwn) {
    const std::string before =
        "; \xB9 note\r\n[Other]\r\nplace=x\n key = 1 \r\n\r\n[ NEW_pipe_section ]\r\nmore=\"y\"\r\n";
    const std::string after = "\r\n\r\n[Last]\ncompany=z\r\n[new_pipe_section]\r\nplace=no";
    const NewPipeDefaults read = Load(
        before + "Section_Name = old \r\n;task_no=9\r\nbroken line\r\nPLACE=\"  p\"\r\noprator=\n" + after);
    NewPipeDefaults expected;
    expected.SectionName = "old";
    expected.Place = "  p";
    EXPECT_EQ(read, expected);

    ASSERT_TRUE(SaveNewPipeDefaults(Values));
    std::string rest = Lines;
    for (const std::string& own :
         {GbkFromUtf8("section_name=段 1\r\n"), GbkFromUtf8("place=路\r\n"), std::string("oprator=o\r\n")}) {
        rest.erase(rest.find(own), own.size());
    }
    EXPECT_EQ(m_folder.ReadFile("config.ini"),
              before +
                  GbkFromUtf8("section_name=段 1\r\n;task_no=9\r\nbroken line\r\nplace=路\r\noprator=o\n") +
                  rest + after);
    EXPECT_EQ(LoadNewPipeDefaults(), Values);
}

TEST_F(ConfigIni, ValuesAreReadAsProfilesAre) {
    const NewPipeDefaults read = Load(
        "[new_pipe_section]\ntask_no= '\"x\"' "
        "\ntask_name=\"\ncompany=\"a'\npipe_dia==5\npipe_len\nplace=\"\"");
    NewPipeDefaults expected;
    expected.TaskNo = "\"x\"";
    expected.TaskName = "\"";
    expected.Company = "\"a'";
    expected.PipeDiameter = "=5";
    EXPECT_EQ(read, expected);

    NewPipeDefaults lengthy;
    lengthy.Company = "x";
    for (int i = 0; i < 60; ++i) {
        lengthy.Company += "管";
        lengthy.Tester += "管";
    }
    lengthy.TaskName = "a\r\nplace=b";
    ASSERT_TRUE(SaveNewPipeDefaults(lengthy));
    EXPECT_EQ(LoadNewPipeDefaults().Company, GbkPrefix(lengthy.Company, 99));
    EXPECT_EQ(LoadNewPipeDefaults().Tester, GbkPrefix(lengthy.Tester, 98));
    EXPECT_EQ(LoadNewPipeDefaults().TaskName, "a");
}

}  // namespace
