#include <gtest/gtest.h>

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "shell/anchors.h"
#include "shell/dialogs/CQtPrompts.h"
#include "shell/dialogs/CSizeDlg.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/windows.h"

namespace {

class CSample : public CSizeDlg {
public:
    CSample() {
        auto* column = new QVBoxLayout(this);
        column->addWidget(AddControl(10, new QLabel("built in", this)));
        column->addWidget(AddControl(11, new QLineEdit(this)));
        column->addLayout(MakeOkCancelRow());
        SetCaptions({{10, 601}, {IdOk, 50}, {IdCancel, 51}});
        AddAnchor(11, true, true, true, true);
        AddAnchor(IdOk, false, false, true, true);
    }
    using CSizeDlg::IsTimerRunning;
    using CSizeDlg::KillTimer;
    using CSizeDlg::SetTimer;
    void OnTimer(int id) override {
        KillTimer(id);
        Fired.push_back(id);
    }
    std::vector<int> Fired;
};

}  // namespace

TEST(SizeDlg, FollowsItsAnchorsAndNeverShrinksBelowItsFirstSize) {
    const CTestFolder folder;
    CSample dialog;
    dialog.show();
    WaitFor(20);
    EXPECT_EQ(TextOf(dialog, 10), "工程名称:");
    const QSize first = dialog.size();
    const QRect edit = dialog.GetDlgItem(11)->geometry();
    const QRect ok = dialog.GetDlgItem(1)->geometry();
    const QRect label = dialog.GetDlgItem(10)->geometry();
    dialog.resize(first + QSize(90, 40));
    WaitFor(20);
    EXPECT_EQ(dialog.GetDlgItem(11)->geometry(), edit.adjusted(0, 0, 90, 40));
    EXPECT_EQ(dialog.GetDlgItem(1)->geometry(), ok.translated(90, 40));
    EXPECT_EQ(dialog.GetDlgItem(10)->geometry(), label);
    dialog.resize(10, 10);
    WaitFor(20);
    EXPECT_EQ(dialog.size(), first);
    EXPECT_EQ(dialog.GetDlgItem(11)->geometry(), edit);
}
