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

TEST_F(ShellWindows, TheSplashShowsItsPictureForTwoSeconds) {
    QImage picture;
    ASSERT_TRUE(picture.load(ToQt(m_folder.Host("ui/start.dt").string()), "bmp"));
    CDlgStart splash;
    QElapsedTimer since;
    since.start();
    splash.show();
    EXPECT_EQ(splash.size(), picture.size());
    WaitFor(50);
    if (splash.devicePixelRatio() == 1.0) {
        EXPECT_EQ(splash.grab().toImage().convertToFormat(QImage::Format_RGB32),
                  picture.convertToFormat(QImage::Format_RGB32));
    }
    Photograph(splash, "splash");
    EXPECT_TRUE(splash.isVisible());
    EXPECT_TRUE(WaitFor([&] { return !splash.isVisible(); }));
    EXPECT_GE(since.elapsed(), 1950);

    m_folder.WriteFile("ui/start.dt", "BM no picture");
    fs::remove(m_folder.Host("ui/start@2x.dt"));
    CDlgStart broken;
    broken.show();
    EXPECT_FALSE(broken.isVisible());
}

TEST_F(ShellWindows, SettingsStoreTheWorkFolderAsTypedAndNothingElse) {
    SetWorkFolder("D:\\Works");
    SetLanguageName("ENGLISH");
    ASSERT_TRUE(SaveSettings());
    CDlgSet dialog;
    dialog.show();
    auto* languages = dialog.Item<QComboBox>(CDlgSet::IdLanguage);
    EXPECT_EQ(languages->count(), 2);
    EXPECT_EQ(languages->currentText(), "English");
    EXPECT_EQ(TextOf(dialog, CDlgSet::IdFolder), "D:\\Works\\");
    EXPECT_EQ(dialog.windowTitle(), "设置");

    Type(dialog, CDlgSet::IdFolder, "E:/新 目录");
    languages->setCurrentIndex(1 - languages->currentIndex());
    CDlgSet cancelled;
    cancelled.show();
    Type(cancelled, CDlgSet::IdFolder, "F:\\no");
    Press(cancelled, CSizeDlg::IdCancel);
    EXPECT_EQ(GetWorkFolder(), "D:\\Works\\");
    Press(dialog, CSizeDlg::IdOk);
    EXPECT_FALSE(dialog.isVisible());
    ASSERT_TRUE(LoadSettings());
    EXPECT_EQ(GetWorkFolder(), "E:/新 目录\\");
    EXPECT_EQ(GetLanguageName(), "ENGLISH");
}

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
