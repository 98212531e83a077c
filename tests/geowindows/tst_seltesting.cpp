#include <gtest/gtest.h>

#include <QCheckBox>
#include <QTest>

#include "geo/dialogs/CDlgSelTesting.h"
#include "lists/CTestingList.h"
#include "shell/language.h"
#include "tests/store/CProjectTest.h"
#include "tests/support/windows.h"

namespace {

class SelTesting : public CProjectTest {
protected:
    SelTesting() {
        for (const char* well : {"A", "B", "C"}) {
            _TESTING_DATA section;
            section.StartWell = well;
            EXPECT_TRUE(Database.AddTesting(section));
        }
    }
    ~SelTesting() override { EXPECT_TRUE(AllDialogsCame()); }
};

}  // namespace

TEST_F(SelTesting, AllAreChosenAtFirstAndTheTickedOnesAreExported) {
    CDlgSelTesting dialog(Database, nullptr);
    InNextDialog([](CSizeDlg& window) {
        EXPECT_EQ(window.windowTitle().toStdString(), LoadMessage(1100));
        EXPECT_FALSE(window.GetDlgItem(1050)->isVisible());
        auto& list = *window.Item<CTestingList>(1031);
        EXPECT_EQ(window.focusWidget(), &list);
        Photograph(window, "choose-sections");
        PressKey(list, Qt::Key_Down);
        PressKey(list, Qt::Key_Space);
        EXPECT_TRUE(
            WaitFor([&] { return window.Item<QCheckBox>(5001)->checkState() == Qt::PartiallyChecked; }));
        Press(window, 1);
    });
    ASSERT_EQ(dialog.DoModal(), CSizeDlg::IdOk);
    EXPECT_EQ(dialog.ChosenSections.size(), 2U);
    Folder.Prompts.GivePath(Folder.Path("out"));
    dialog.ExportShapeFile("工程");
    EXPECT_EQ(Folder.ReadFile("out.shp").size(), 100U);
    Folder.Prompts.GivePath("");
    dialog.ExportShapeFile("工程");
}
