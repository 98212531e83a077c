#include <gtest/gtest.h>

#include "shell/paths.h"

namespace {

TEST(Paths, AreSplitAtBackslashes) {
    struct Case {
        const char* Path;
        const char* Name;
        const char* Title;
        const char* Extension;
        const char* Parent;
        const char* Original;
    };
    constexpr Case cases[] = {
        {"d:\\v\\a.b.avi", "a.b.avi", "a.b", "avi", "d:\\v\\", "d:\\v\\a.b_original.avi"},
        {"d:\\x.y\\pic", "pic", "pic", "", "d:\\x.y\\", "d:\\x_original.y\\pic"},
        {"\\home\\管段.", "管段.", "管段", "", "\\home\\", "\\home\\管段_original."},
        {".avi", ".avi", ".avi", "avi", "", "_original.avi"},
        {"d:\\v\\", "", "", "", "d:\\", "_originald:\\v\\"},
        {"d:/v/a.avi", "d:/v/a.avi", "d:/v/a", "avi", "d:\\v\\", "d:/v/a_original.avi"},
        {"\\\\srv\\s\\", "", "", "", "\\\\srv\\", "_original\\\\srv\\s\\"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(GetFileName(c.Path), c.Name) << c.Path;
        EXPECT_EQ(GetFileTitle(c.Path), c.Title) << c.Path;
        EXPECT_EQ(GetFileExtension(c.Path), c.Extension) << c.Path;
        EXPECT_EQ(GetParentFolder(c.Path), c.Parent) << c.Path;
        EXPECT_EQ(MakeOriginalPath(c.Path), c.Original) << c.Path;
    }
}

TEST(Paths, GetTheirExtensionOnce) {
    EXPECT_EQ(WithExtension("\\a.b\\报告", ".docx"), "\\a.b\\报告.docx");
    EXPECT_EQ(WithExtension("d:\\报告.doc", ".docx"), "d:\\报告.doc.docx");
    EXPECT_EQ(WithExtension("报告.DocX", ".docx"), "报告.DocX");
    EXPECT_EQ(WithExtension("ocx", ".docx"), "ocx.docx");
}

}  // namespace
