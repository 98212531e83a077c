#include <gtest/gtest.h>

#include <QBoxLayout>
#include <QLineEdit>
#include <QTest>

#include "controls/CButtonST.h"

TEST(Button, IsPressedByItsShortcutByKeysAndByTheMouseWithoutTakingTheFocus) {
    QWidget window;
    QLineEdit edit(&window);
    CButtonST button(CButtonST::Layout::PictureOverText, &window);
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(&edit);
    layout->addWidget(&button);
    int clicks = 0;
    QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
    button.SetTip("Open a project");
    button.SetShortcut(QKeySequence("Ctrl+O"));
    button.setText("Open && more");  // outlived by the shortcut
    EXPECT_EQ(button.toolTip(), "Open a project (Ctrl+O)");
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    edit.setFocus();
    QTest::keyClick(&edit, Qt::Key_O, Qt::ControlModifier);
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(clicks, 2);
    EXPECT_TRUE(edit.hasFocus());
    QTest::keyClick(&edit, Qt::Key_Tab);
    ASSERT_TRUE(button.hasFocus());
    QTest::keyClick(&button, Qt::Key_Return);
    QTest::keyClick(&button, Qt::Key_Space);
    EXPECT_EQ(clicks, 4);
    button.setEnabled(false);
    QTest::keyClick(&edit, Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(clicks, 4);
}
