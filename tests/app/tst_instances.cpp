// The real program, several times at once.
#include <gtest/gtest.h>

#include <QProcess>

#include "live/dialogs/CDrovaneDlg.h"
#include "shell/dialogs/CLocalLiveChannel.h"
#include "shell/dialogs/bringtofront.h"
#include "tests/app/CAcquisition.h"
#include "tests/app/CRuntimeFolder.h"
#include "tests/support/windows.h"

namespace {

namespace fs = std::filesystem;

class Instances : public testing::Test {
protected:
    Instances() { fs::copy_file(DROVANE_PROGRAM, m_folder.Host("drovane")); }

    void Start(QProcess& process, const QStringList& arguments) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        process.setProcessEnvironment(environment);
        process.start(QString::fromStdString(m_folder.Host("drovane").string()), arguments);
        ASSERT_TRUE(process.waitForStarted());
    }
    bool IsLive() const { return CAcquisition(m_runtime.Socket()).IsConnected(); }
    bool ComesToLife() const {
        return WaitFor([&] { return IsLive(); }, 20'000);
    }
    // Handles events of this process meanwhile.
    static bool Ends(QProcess& process) {
        return WaitFor([&] { return process.state() == QProcess::NotRunning; }, 20'000);
    }
    static void Kill(QProcess& process) {
        process.kill();
        EXPECT_TRUE(Ends(process));
    }

    CTestFolder m_folder;
    CRuntimeFolder m_runtime{m_folder};
};

TEST_F(Instances, TheSecondLiveOneEndsAndACrashedOneIsReplaced) {
    QProcess review;
    Start(review, {});
    QProcess first;
    Start(first, {"-add"});
    ASSERT_TRUE(ComesToLife()) << first.readAllStandardError().toStdString();
    CAcquisition program(m_runtime.Socket());
    ASSERT_TRUE(program.Send(CAcquisition::Frame(1, std::string(1256, 'x'))));
    EXPECT_TRUE(WaitFor([&] { return program.Receive() && program.Received == CAcquisition::Frame(3, ""); }));
    EXPECT_NE(m_folder.ReadFile("drives/d/Works/live-records.txt"), "")
        << "what is acknowledged is on the disk";

    EXPECT_FALSE(fs::exists(m_folder.Host("config.ini")));
    QProcess second;
    Start(second, {"-Add"});
    ASSERT_TRUE(Ends(second));
    EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(second.exitCode(), 0) << second.readAllStandardError().toStdString();
    EXPECT_TRUE(fs::exists(m_folder.Host("config.ini")));
    EXPECT_EQ(first.state(), QProcess::Running);
    EXPECT_EQ(review.state(), QProcess::Running);

    Kill(first);
    EXPECT_TRUE(fs::exists(m_runtime.Socket()));
    EXPECT_FALSE(IsLive());
    QProcess third;
    Start(third, {"-add"});
    EXPECT_TRUE(ComesToLife()) << third.readAllStandardError().toStdString();
    Kill(third);
    Kill(review);
}

TEST_F(Instances, TheFirstComesBackWhenASecondStarts) {
    CLocalLiveChannel channel;
    ASSERT_EQ(channel.Claim(), CLiveChannel::Claimed::Yes) << channel.Problem();
    CDrovaneDlg window(channel);
    window.show();
    Photograph(window, "live");
    for (const bool hidden : {false, true}) {
        window.showMinimized();
        window.setVisible(!hidden);
        QProcess second;
        Start(second, {"-add"});
        ASSERT_TRUE(Ends(second));
        EXPECT_EQ(second.exitCode(), 0);
        EXPECT_TRUE(window.isVisible());
        EXPECT_FALSE(window.isMinimized());
    }
    window.showMaximized();
    window.setWindowState(window.windowState() | Qt::WindowMinimized);
    CSizeDlg popup(&window);
    popup.setModal(true);
    popup.show();
    BringToFront(window);
    EXPECT_FALSE(window.isMinimized());
    EXPECT_TRUE(window.isMaximized());
    EXPECT_TRUE(WaitFor([&] { return popup.isActiveWindow(); }));
}

TEST_F(Instances, TheSystemsWishToEndWritesTheDefaults) {
    QProcess live;
    Start(live, {"-add"});
    ASSERT_TRUE(ComesToLife());
    EXPECT_FALSE(fs::exists(m_folder.Host("config.ini")));
    live.terminate();
    ASSERT_TRUE(Ends(live));
    EXPECT_EQ(live.exitStatus(), QProcess::NormalExit);
    EXPECT_TRUE(fs::exists(m_folder.Host("config.ini")));
}

}  // namespace
