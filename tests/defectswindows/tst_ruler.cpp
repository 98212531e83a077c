#include <gtest/gtest.h>

#include <QBoxLayout>
#include <QTest>
#include <tuple>

#include "defects/dialogs/CPointView.h"
#include "defects/dialogs/rulermessages.h"
#include "shell/dialogs/CSizeDlg.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/windows.h"

namespace {

using Told = std::tuple<int, std::intptr_t, std::intptr_t>;  // message and its values

class COwner : public CSizeDlg {
public:
    COwner() : Ruler(new CPointView(this)) {
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(Ruler);
        resize(136, 24);
        Ruler->SetMargin(36);
        Ruler->UpdateMarkers({0, 1, 0, 1});
    }
    bool OnControlMessage(int message, std::intptr_t wParam, std::intptr_t lParam) override {
        Messages.push_back({message, wParam, lParam});
        return true;
    }
    CPointView* Ruler;
    std::vector<Told> Messages;
};

}  // namespace

TEST(Ruler, TellsItsWindowOfClicksAndOfTheMouseOverAMark) {
    const CTestFolder folder;
    COwner owner;
    owner.show();
    WaitFor(30);
    ASSERT_EQ(owner.Ruler->size(), QSize(136, 24));
    QTest::mouseClick(owner.Ruler, Qt::LeftButton, {}, {52, 16});
    EXPECT_EQ(owner.Messages, (std::vector<Told>{{WM_RULER_CLICK, 1, 0}, {WM_RULER_HOVER, -1, 0}}));
    owner.Messages.clear();
    QTest::mouseClick(owner.Ruler, Qt::LeftButton, {}, {5, 16});
    EXPECT_EQ(owner.Messages, (std::vector<Told>{{WM_RULER_HOVER, -1, 0}}));
    owner.Messages.clear();

    QTest::mouseMove(owner.Ruler, {77, 16});
    const QPoint top = owner.Ruler->mapToGlobal(QPoint(84, 3));
    ASSERT_FALSE(owner.Messages.empty());
    EXPECT_EQ(owner.Messages.front(), (Told{WM_RULER_HOVER, (top.y() << 16) | top.x(), 3}));
    EXPECT_EQ(owner.Ruler->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_NE(owner.Ruler->grab().toImage().pixel(84, 16), owner.Ruler->grab().toImage().pixel(52, 16));
}
