// What was typed in a window that ended with a crash.
#include <QLineEdit>
#include <QPlainTextEdit>
#include <filesystem>

#include "shell/CHostFiles.h"
#include "tests/reviewwindow/CReviewTest.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

namespace fs = std::filesystem;

class DraftWindow : public CReviewTest {
protected:
    // The files of the windows that are open, as they stand after a second.
    std::vector<fs::path> Drafts() const {
        std::vector<fs::path> drafts;
        const fs::path folder = Folder.Host("db/_draft");
        if (fs::exists(folder)) {
            for (const auto& entry : fs::directory_iterator(folder)) {
                if (entry.path().extension() == ".draft") {
                    drafts.push_back(entry.path());
                }
            }
        }
        return drafts;
    }
    // As a crash leaves it: without the lock, which a dead process doesn't hold.
    void Crash() {
        ASSERT_TRUE(WaitFor([&] { return !Drafts().empty(); }));
        for (const fs::path& draft : Drafts()) {
            m_left = ReadHostFile(draft);
        }
    }
    void Leave() { Folder.WriteFile("db/_draft/left.draft", m_left); }
    void Select(CDlgProAtrrib& window) {
        List(window).SelectRow(1);
        ASSERT_TRUE(WaitFor([&] { return DefectsOf(window).RowCount() == 2; }));
    }

private:
    std::string m_left;
};

TEST_F(DraftWindow, ANewDefectIsGoneOnWith) {
    {
        CDlgProAtrrib window(Project);
        window.show();
        Select(window);
        InNextDialog([&](CSizeDlg& dialog) {
            EXPECT_TRUE(Drafts().empty()) << "nothing was typed";
            Type(dialog, 1013, "12.");
            Type(dialog, 1005, "half a sentence");
            PressKey(dialog, Qt::Key_3, Qt::AltModifier);
            Crash();
            EXPECT_EQ(Drafts().size(), 1U);
            Press(dialog, CSizeDlg::IdCancel);
        });
        Press(window, 1035);
        EXPECT_TRUE(Drafts().empty()) << "cancelled";
    }
    // The picture of the crashed window is still there.
    Folder.WriteFile("job/picture/Y1-Y2_092653.jpg", "frame");
    Leave();
    Folder.Prompts.ExpectQuestion(3474, true);
    CDlgProAtrrib window("");
    InNextDialog([&](CSizeDlg& dialog) {
        EXPECT_EQ(dialog.Item<QLineEdit>(1013)->text(), "12.");
        EXPECT_EQ(dialog.Item<QPlainTextEdit>(1005)->toPlainText(), "half a sentence");
        Type(dialog, 1013, "12.5");
        Press(dialog, CSizeDlg::IdOk);
    });
    window.show();
    ASSERT_TRUE(WaitFor([&] { return AllDialogsCame(); }));
    EXPECT_NE(Folder.Prompts.LastText().find("2026-03-14"), std::string::npos);
    ASSERT_TRUE(WaitFor([&] { return DefectsOf(window).RowCount() == 3; }));
    const CRecDataArray& records = DefectsOf(window).Records();
    EXPECT_EQ(records[2].DistanceStart, 12.5F);
    EXPECT_EQ(records[2].Comment, "half a sentence");
    EXPECT_EQ(records[2].Pictures.GetSize(), 1);
    EXPECT_TRUE(Drafts().empty());
}

TEST_F(DraftWindow, ASectionIsGoneOnWithAndCancelDropsIt) {
    {
        CDlgProAtrrib window(Project);
        window.show();
        Select(window);
        InNextDialog([&](CSizeDlg& dialog) {
            Type(dialog, 1074, "Ann");
            Crash();
            Press(dialog, CSizeDlg::IdCancel);
        });
        Press(window, CommandSectionProperties);
    }
    Leave();
    {
        Folder.Prompts.ExpectQuestion(3474, true);
        CDlgProAtrrib window("");
        InNextDialog([&](CSizeDlg& dialog) {
            EXPECT_EQ(dialog.Item<QLineEdit>(1074) != nullptr ? dialog.Item<QLineEdit>(1074)->text() : "Ann",
                      "Ann");
            Press(dialog, CSizeDlg::IdOk);
        });
        window.show();
        ASSERT_TRUE(WaitFor([&] { return AllDialogsCame(); }));
        EXPECT_EQ(window.SectionList().Sections()[1].Tester, "Ann");
        EXPECT_EQ(window.SectionList().Sections()[1].StartWell, "Y1");
    }
    Leave();
    Folder.Prompts.ExpectQuestion(3474, false);
    CDlgProAtrrib window("");
    window.show();
    ASSERT_TRUE(WaitFor([&] { return Folder.Prompts.AllCame() && Drafts().empty(); }));
}

}  // namespace
