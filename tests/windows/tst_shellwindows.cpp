#include <gtest/gtest.h>

#include <QComboBox>
#include <QElapsedTimer>
#include <QImage>
#include <QTreeWidget>

#include "shell/dialogs/CDlgAbout.h"
#include "shell/dialogs/CDlgSet.h"
#include "shell/dialogs/CDlgStart.h"
#include "shell/dialogs/qttext.h"
#include "shell/drives.h"
#include "shell/settings.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/windows.h"

namespace {

namespace fs = std::filesystem;

class ShellWindows : public testing::Test {
protected:
    ShellWindows() { fs::current_path(m_folder.Host("")); }

    static void Choose(CDlgSet& dialog, char letter) {
        dialog.Item<QComboBox>(CDlgSet::IdLetter)->setCurrentIndex(letter - 'a');
    }

    CTestFolder m_folder;
};

TEST_F(ShellWindows, SettingsLinkDriveLettersToFolders) {
    const std::string folder = m_folder.Host("盘").string();
    fs::create_directories(folder);
    fs::create_directories(m_folder.Host("drives/d"));
    m_folder.WriteFile("drives/e/a.avi", "x");
    const std::vector<Drive> before = ListDrives();
    {
        CDlgSet dialog;
        dialog.show();
        m_folder.Prompts.GivePath(m_folder.Path("盘"));
        Press(dialog, CDlgSet::IdSetDrive);
        Press(dialog, CSizeDlg::IdCancel);
        EXPECT_EQ(ListDrives(), before);
    }
    CDlgSet dialog;
    dialog.show();
    EXPECT_FALSE(IsEnabled(dialog, CDlgSet::IdRemoveDrive));
    for (const char letter : {'d', 'e', 'g'}) {
        Choose(dialog, letter);
        m_folder.Prompts.GivePath(m_folder.Path("盘"));
        Press(dialog, CDlgSet::IdSetDrive);
    }
    EXPECT_EQ(dialog.Item<QTreeWidget>(CDlgSet::IdDrives)->topLevelItemCount(), 3);
    m_folder.Prompts.Expect(3071);  // files in a drive aren't hidden by a link
    Press(dialog, CSizeDlg::IdOk);
    EXPECT_TRUE(dialog.isVisible());
    Choose(dialog, 'e');
    Press(dialog, CDlgSet::IdRemoveDrive);
    Press(dialog, CSizeDlg::IdOk);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(ListDrives(), (std::vector<Drive>{{'d', folder, true},
                                                {'e', m_folder.Host("drives/e").string(), false},
                                                {'g', folder, true}}));
    EXPECT_TRUE(HostFiles().WriteFile("D:\\b.txt", "y"));

    CDlgSet again;
    again.show();
    Choose(again, 'g');
    Press(again, CDlgSet::IdRemoveDrive);
    Press(again, CSizeDlg::IdOk);
    EXPECT_EQ(ListDrives().size(), 2U);
    EXPECT_EQ(m_folder.ReadFile("盘/b.txt"), "y");
}

TEST_F(ShellWindows, NothingIsCutInEitherLanguage) {
    for (const char* language : {"简体中文", "English"}) {
        m_folder.UseLanguage(language);
        std::error_code error;
        ASSERT_EQ(SetDrive('d', m_folder.Host("db").string(), error), DriveResult::Done);
        fs::create_directories(m_folder.Host("drives/f"));
        CDlgSet settings;
        CDlgAbout about;
        settings.show();
        about.show();
        WaitFor(50);
        EXPECT_EQ(about.windowTitle(), MessageText(959));
        for (CSizeDlg* window : {static_cast<CSizeDlg*>(&settings), static_cast<CSizeDlg*>(&about)}) {
            ExpectNothingCut(*window);
            Photograph(*window, window->windowTitle());
        }
        EXPECT_TRUE(RemoveDrive('d'));
        fs::remove_all(m_folder.Host("drives"));
    }
}

}  // namespace
