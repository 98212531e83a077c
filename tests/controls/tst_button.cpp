#include <gtest/gtest.h>

#include <QBoxLayout>
#include <QLineEdit>
#include <QTest>

#include "controls/CButtonST.h"
#include "shell/paths.h"
#include "tests/support/CTestFolder.h"

namespace {

const char* const OpenPicture = "ui\\big\\open.bmp";

class Button : public testing::Test {
protected:
    Button() : Edit(&Window), Flat(CButtonST::Layout::PictureOverText, &Window) {
        HostFiles().SetCurrentFolder(GetAppFolder());  // where paths of pictures begin
        auto* layout = new QVBoxLayout(&Window);
        layout->addWidget(&Edit);
        layout->addWidget(&Flat);
        QObject::connect(&Flat, &QPushButton::clicked, [this] { ++Clicks; });
    }

    void Show() {
        Window.show();
        Window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&Window));
        Edit.setFocus();
    }

    QImage Look() { return Flat.grab().toImage(); }

    CTestFolder Folder;
    QWidget Window;
    QLineEdit Edit;
    CButtonST Flat;
    int Clicks = 0;
};

}  // namespace

TEST_F(Button, ItsShortcutWorksInTheWholeWindowAndOutlivesALaterText) {
    Flat.SetTip("Open a project");
    Flat.SetShortcut(QKeySequence("Ctrl+O"));
    Flat.setText("Open && more");
    EXPECT_EQ(Flat.toolTip(), "Open a project (Ctrl+O)");
    Show();
    QTest::keyClick(&Edit, Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(Clicks, 1);
    Flat.setEnabled(false);
    QTest::keyClick(&Edit, Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(Clicks, 1);
    Flat.SetShortcut({});
    EXPECT_EQ(Flat.toolTip(), "Open a project");
}

TEST_F(Button, ItIsPressedByKeysWhenItHasTheFocusAndByTheMouseWithoutTakingIt) {
    Flat.setText("Open");
    Show();
    QTest::mouseClick(&Flat, Qt::LeftButton);
    EXPECT_EQ(Clicks, 1);
    EXPECT_TRUE(Edit.hasFocus());
    QTest::keyClick(&Edit, Qt::Key_Tab);
    ASSERT_TRUE(Flat.hasFocus());
    QTest::keyClick(&Flat, Qt::Key_Return);
    QTest::keyClick(&Flat, Qt::Key_Space);
    EXPECT_EQ(Clicks, 3);
}
