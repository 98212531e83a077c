#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "shell/CProgress.h"
#include "shell/settings.h"
#include "store/newsections.h"
#include "tests/store/CProjectTest.h"

namespace {

namespace fs = std::filesystem;

class CStopAfter : public CProgress {
public:
    explicit CStopAfter(int steps) : m_steps(steps) {}
    void At(std::int64_t, std::int64_t, const std::string&) override { --m_steps; }
    bool Stopped() const override { return m_steps <= 0; }

private:
    int m_steps;
};

class NewSections : public CProjectTest {
protected:
    NewSections() { SetWorkFolder(Folder.Path("works/new")); }

    _TESTING_DATA Section(const std::string& start, const std::string& end, const std::string& content) {
        _TESTING_DATA section;
        section.TestingName = "段";
        section.StartWell = start;
        section.EndWell = end;
        section.VideoFileList = Folder.WriteFile("videos/" + start + "-" + end + ".AVI", content);
        return section;
    }
    bool Add(const std::vector<_TESTING_DATA>& sections, int steps = 1000) {
        return AddNewSections(Database, sections, [this, steps](const std::string& name) {
            Told.push_back(name);
            return std::make_unique<CStopAfter>(steps);
        });
    }
    std::vector<std::string> Videos() {
        std::vector<std::string> videos;
        for (const _TESTING_DATA& section : Sections()) {
            videos.push_back(section.VideoFileList);
        }
        return videos;
    }
    // All that lies in the work folder, folders too.
    std::set<std::string> Works() const {
        std::set<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(Folder.Host("works/new"))) {
            names.insert(fs::relative(entry.path(), Folder.Host("works/new")).string());
        }
        return names;
    }
    std::vector<std::string> Told;
};

TEST_F(NewSections, EachVideoGetsAFolderOfItsOwn) {
    fs::create_directories(Folder.Host("works/new/2026-03-14-092654"));
    ASSERT_TRUE(Add({Section("A", "B", "first"), Section("B", "C", "second")}));
    EXPECT_EQ(Works(),
              (std::set<std::string>{"2026-03-14-092653", "2026-03-14-092653/A-B.AVI", "2026-03-14-092654",
                                     "2026-03-14-092655", "2026-03-14-092655/B-C.AVI"}));
    EXPECT_EQ(Folder.ReadFile("works/new/2026-03-14-092655/B-C.AVI"), "second");
    EXPECT_EQ(Folder.ReadFile("videos/B-C.AVI"), "second");
    EXPECT_EQ(Videos(), (std::vector<std::string>{Folder.Path("works/new/2026-03-14-092653/A-B.AVI"),
                                                  Folder.Path("works/new/2026-03-14-092655/B-C.AVI")}));
    EXPECT_EQ(Told, (std::vector<std::string>{"A-B.AVI", "B-C.AVI"}));
}

TEST_F(NewSections, TheFirstFailureEndsItAndKeepsWhatWasAdded) {
    Folder.Prompts.Expect(2189);
    EXPECT_FALSE(Add({Section("A", "B", "x"), Section("a", "b", "y"), Section("C", "D", "z")}));
    EXPECT_EQ(Videos().size(), 1U);

    const std::set<std::string> before = Works();
    _TESTING_DATA missing = Section("E", "F", "x");
    missing.VideoFileList = Folder.Path("videos/none.avi");
    Folder.Prompts.Expect(2190);
    EXPECT_FALSE(Add({missing, Section("C", "D", "z")}));
    EXPECT_EQ(Works(), before);

    Folder.Prompts.Expect(2190);
    EXPECT_FALSE(Add({Section("G", "H", std::string(20 << 20, 'v'))}, 2));
    EXPECT_EQ(Works(), before);
    EXPECT_EQ(Videos().size(), 1U);
}

}  // namespace
