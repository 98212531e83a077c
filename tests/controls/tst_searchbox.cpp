#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QCompleter>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include "controls/CSearchBox.h"

namespace {

class SearchBox : public testing::Test {
protected:
    SearchBox() {
        auto* layout = new QVBoxLayout(&Window);
        layout->addWidget(&Box);
        layout->addWidget(&Other);
        Box.addItems({"(JCJ)井", "(CJ)沉积", "(PL)破裂", "(TL)脱落"});
        Box.OnChosen = [this] { ++Chosen; };
        Window.show();
        Window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&Window));
    }
    void Type(const QString& text) {
        Box.setFocus();
        Box.lineEdit()->selectAll();
        Box.lineEdit()->insert(text);
    }
    // The list of what fits takes the keys while it is open.
    void Press(Qt::Key key) {
        QWidget* popup = Box.completer()->popup();
        QTest::keyClick(popup->isVisible() ? popup : Box.lineEdit(), key);
    }

    QWidget Window;
    CSearchBox Box{&Window};
    QLineEdit Other{&Window};
    int Chosen = 0;
};

}  // namespace

TEST_F(SearchBox, EnterOrLeavingChoosesWhatFitsBest) {
    Type("cj");
    EXPECT_EQ(Box.currentIndex(), 0);
    EXPECT_EQ(Chosen, 0) << "typing alone has no effect";
    Press(Qt::Key_Return);
    EXPECT_EQ(Box.currentText(), "(CJ)沉积") << "the whole code comes before a part of one";
    EXPECT_EQ(Chosen, 1);
    Type("");
    QTest::keyClick(Box.lineEdit(), 'l');  // in (PL) and in (TL)
    ASSERT_TRUE(Box.completer()->popup()->isVisible());
    EXPECT_EQ(Box.completer()->completionCount(), 2);
    Press(Qt::Key_Down);
    Press(Qt::Key_Down);
    Press(Qt::Key_Return);
    EXPECT_EQ(Box.currentText(), "(TL)脱落");
    EXPECT_EQ(Chosen, 2);
}

TEST_F(SearchBox, WhatFitsNothingStaysMarkedUntilItIsTakenBack) {
    Type("zz");
    Press(Qt::Key_Return);
    Press(Qt::Key_Return);
    Press(Qt::Key_Tab);
    EXPECT_EQ(Box.currentText(), "zz");
    EXPECT_TRUE(Box.IsUnknown());
    EXPECT_EQ(Box.currentIndex(), 0);
    Press(Qt::Key_Escape);
    EXPECT_EQ(Box.currentText(), "(JCJ)井");
    EXPECT_FALSE(Box.IsUnknown());
    Type("PL");
    Press(Qt::Key_Escape);  // closes the list
    Press(Qt::Key_Escape);
    EXPECT_EQ(Box.currentText(), "(JCJ)井");
    EXPECT_EQ(Chosen, 0);
    Press(Qt::Key_Down);
    EXPECT_EQ(Box.currentText(), "(CJ)沉积");
    EXPECT_EQ(Chosen, 1);
    Box.SetChoosesOnLeaving(false);
    Type("PL");
    Press(Qt::Key_Tab);
    EXPECT_EQ(Box.currentText(), "(CJ)沉积") << "a slip changes nothing";
    EXPECT_EQ(Chosen, 1);
}
