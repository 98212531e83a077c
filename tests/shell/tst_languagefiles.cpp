#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <random>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "shell/language.h"
#include "shell/textcodec.h"
#include "tests/support/CTestFolder.h"

namespace {

namespace fs = std::filesystem;

class Language : public testing::Test {
protected:
    CTestFolder m_folder;
};

TEST_F(Language, AMissingFileBlanksAllTexts) {
    m_folder.UseLanguage("English");
    EXPECT_EQ(LoadMessage(50), "OK");
    EXPECT_EQ(LoadMessage(100000) + LoadMessage(-1), "");
    m_folder.UseLanguage("none");
    EXPECT_EQ(LoadMessage(50), "");
    EXPECT_TRUE(HasLanguageTable());
    LanguageTable table;
    ParseLanguageFile("none", table);
    EXPECT_EQ(table, LanguageTable(200));
}

using Texts = std::map<int, std::string>;

// The source form: UTF-8, every line a number, one blank and a text, numbers rising.
Texts SourceTexts(const std::string& name) {
    std::ifstream file(fs::path(DROVANE_SOURCE_FOLDER) / "data/Language" / (name + ".lgu"));
    Texts texts;
    int last = 0;
    for (std::string line; std::getline(file, line);) {
        std::smatch parts;
        if (!std::regex_match(line, parts, std::regex("([1-9][0-9]*) ([^ ].*)"))) {
            ADD_FAILURE() << name << ": " << line;
            continue;
        }
        const int number = std::stoi(parts[1]);
        EXPECT_GT(number, last) << name;
        last = number;
        texts[number] = parts[2];
    }
    return texts;
}

std::vector<std::string> Placeholders(const std::string& text) {
    static const std::regex pattern(R"(%[-+#0]*[0-9]*(\.[0-9]+)?l*[diufeEgGxXcs%])");
    return {std::sregex_token_iterator(text.begin(), text.end(), pattern), {}};
}

TEST_F(Language, FilesOfTheProgramAgree) {
    const Texts chinese = SourceTexts("简体中文");
    const Texts english = SourceTexts("English");
    ASSERT_GT(chinese.size(), 300U);
    for (const auto& [number, text] : english) {
        const auto other = chinese.find(number);
        ASSERT_NE(other, chinese.end()) << number;
        EXPECT_EQ(Placeholders(text), Placeholders(other->second)) << number;
    }
    EXPECT_EQ(chinese.size(), english.size());
    for (const auto& [name, texts] : {std::pair("简体中文", chinese), std::pair("English", english)}) {
        LanguageTable staged;
        ParseLanguageFile(name, staged);
        ASSERT_EQ(staged.size(), static_cast<std::size_t>(texts.rbegin()->first) + 1) << name;
        for (const auto& [number, text] : texts) {
            EXPECT_EQ(ThroughGbk(text), text) << name << " " << number;
            EXPECT_EQ(staged[static_cast<std::size_t>(number)], text) << name << " " << number;
        }
    }
}

// Where the numbers come from that a source file uses: all integers in the calls that show or load a
// message, captions of windows ({control, number}), and whatever else lies among the numbers of the
// messages of operations and lists.
std::set<int> NumbersUsed(std::string source) {
    source = std::regex_replace(source, std::regex(R"(//[^\n]*|"(\\.|[^"\\\n])*")"), " ");
    std::set<int> numbers;
    const auto collect = [&](const std::string& text, const char* pattern, int least, int most) {
        const std::regex regex(pattern);
        for (std::sregex_iterator at(text.begin(), text.end(), regex), end; at != end; ++at) {
            const int number = std::stoi((*at)[1]);
            if (number >= least && number <= most) {
                numbers.insert(number);
            }
        }
    };
    const std::regex calls(R"((ShowMessage|AskOkCancel|LoadMessage|SetCaptions)\(([^;]*);)");
    for (std::sregex_iterator at(source.begin(), source.end(), calls), end; at != end; ++at) {
        const bool captions = (*at)[1] == "SetCaptions";
        collect((*at)[2], captions ? R"(\{\s*\d+\s*,\s*(\d+)\s*\})" : R"(\b(\d+)\b)", 50, 9999);
    }
    collect(source, R"((?:^|[^\w.])([23]\d\d\d)(?![\w.]))", 2000, 3999);
    return numbers;
}

TEST_F(Language, EveryNumberUsedHasItsText) {
    std::map<int, std::string> used;
    for (const char* room : {"shell", "store", "assessment", "fieldimport", "geo", "apps", "reports",
                             "workbench", "defects", "controls"}) {
        const fs::path folder = fs::path(DROVANE_SOURCE_FOLDER) / room;
        if (!fs::exists(folder)) {
            continue;
        }
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h") {
                for (const int number : NumbersUsed(ReadHostFile(entry.path()))) {
                    used.emplace(number, entry.path().filename().string());
                }
            }
        }
    }
    // A call, a question, a variable, a table.
    for (const int number : {2000, 2204, 2010, 2800, 2801, 2351, 2152, 2331}) {
        EXPECT_TRUE(used.contains(number)) << number;
    }
    const Texts texts = SourceTexts("简体中文");
    for (const auto& [number, file] : used) {
        EXPECT_TRUE(texts.contains(number)) << number << " in " << file;
    }
}

}  // namespace
