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

TEST_F(Button, ItsSizeFollowsPictureTextAndFont) {
    const QString text = "导出Word文档，或 a long English text";
    for (const auto layout : {CButtonST::Layout::PictureOverText, CButtonST::Layout::PictureBesideText}) {
        const bool over = layout == CButtonST::Layout::PictureOverText;
        CButtonST button(layout);
        button.setText(text);
        const QSize words = button.fontMetrics().size(0, text);
        button.SetBitmap("ui\\big\\none.bmp", 32);
        const QSize alone = button.sizeHint();
        EXPECT_GE(alone.width(), words.width());
        EXPECT_LT(alone.height(), words.height() + 32);  // no room is kept for a picture that isn't there
        button.SetBitmap(OpenPicture, 32);
        const QSize both = button.sizeHint();
        if (over) {
            EXPECT_EQ(both.width(), alone.width());
            EXPECT_GE(both.height(), words.height() + 32);
        } else {
            EXPECT_GE(both.width(), alone.width() + 32);
            EXPECT_GE(both.height(), 32);
        }
        QFont font = button.font();
        font.setPointSize(3 * font.pointSize());
        button.setFont(font);
        EXPECT_GE(button.minimumSizeHint().width(), button.fontMetrics().size(0, text).width());
    }
}

TEST_F(Button, EachStateLooksDifferent) {
    Flat.SetBitmap(OpenPicture, 32);
    Flat.setText("Open");
    Flat.setCheckable(true);
    Show();
    std::vector<QImage> looks{Look()};
    Flat.setFocus(Qt::TabFocusReason);
    looks.push_back(Look());
    Edit.setFocus();
    Flat.setDown(true);
    looks.push_back(Look());
    Flat.setDown(false);
    Flat.setChecked(true);
    looks.push_back(Look());
    Flat.setChecked(false);
    EXPECT_EQ(Look(), looks[0]);
    Flat.setEnabled(false);
    looks.push_back(Look());
    for (std::size_t i = 0; i < looks.size(); ++i) {
        for (std::size_t j = i + 1; j < looks.size(); ++j) {
            EXPECT_NE(looks[i], looks[j]) << i << " and " << j;
        }
    }
}
