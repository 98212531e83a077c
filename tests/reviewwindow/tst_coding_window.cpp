// Coding defects in one line, and the strip of the pipe, with real windows, videos and projects.
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "controls/CPipeStrip.h"
#include "defects/dialogs/CDlgEdit.h"
#include "history/CJournal.h"
#include "history/steps.h"
#include "reports/CRecExport.h"
#include "tests/reviewwindow/CReviewTest.h"
#include "workbench/coding/dialogs/CCodingLine.h"
#include "workbench/dialogs/CCodingDesk.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

class CodingWindow : public CReviewTest {
protected:
    CodingWindow() {
        window.setModal(true);
        Open(window);
        List(window).SelectRow(1);
        EXPECT_TRUE(WaitFor([&] { return PlayerOf(window).Duration() > 5.0; }));
        EXPECT_TRUE(WaitFor([&] { return DefectsOf(window).RowCount() == 2; }));
        PlayerOf(window).setFocus();
    }

    // The picture of the start goes first: keys go to the window that is in front.
    void InFront() {
        window.activateWindow();
        EXPECT_TRUE(WaitFor([&] { return window.isActiveWindow(); }));
    }

    CCodingLine& Line() { return window.Coding().Line(); }
    QWidget& Focus() { return *window.focusWidget(); }
    // As fingers do: each key to whoever has the focus.
    void Keys(const std::string& text) {
        InFront();
        for (const char c : text) {
            QTest::keyClick(&Focus(), c);
            ++Pressed;
        }
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        InFront();
        QTest::keyClick(&Focus(), key, modifiers);
        ++Pressed;
    }
    QString Meaning() { return Line().findChild<QLabel*>("codingmeaning")->text(); }
    const CRecDataArray& Records() { return DefectsOf(window).Records(); }
    const _REC_DATA& Newest() {
        return *std::max_element(Records().begin(), Records().end(),
                                 [](const _REC_DATA& a, const _REC_DATA& b) { return a.ID < b.ID; });
    }
    void StandAt(double seconds) {
        PlayerOf(window).Controls().SetCurrentPosition(seconds);
        EXPECT_TRUE(WaitFor([&] { return !PlayerOf(window).IsBusy(); }));
    }

    CJournals Journals;
    CChangeWatchesScope Scope{Journals};
    CDlgProAtrrib window{""};
    int Pressed = 0;
};

}  // namespace

TEST_F(CodingWindow, ALineBecomesADefectWithItsFrameAndLeavesTheOperatorAtTheVideo) {
    StandAt(2.0);
    PlayerOf(window).Controls().Play();
    const int height = PlayerOf(window).height();
    Key(Qt::Key_Return);
    ASSERT_TRUE(Line().isVisible());
    EXPECT_FALSE(PlayerOf(window).IsPlaying());
    EXPECT_TRUE(WaitFor([&] { return PlayerOf(window).height() < height; }))
        << "below the picture, not over it";
    EXPECT_GE(Line().mapTo(&window, QPoint()).y(),
              PlayerOf(window).mapTo(&window, QPoint(0, PlayerOf(window).height())).y());
    Keys("pl3");
    EXPECT_TRUE(Meaning().contains("破裂"));
    EXPECT_TRUE(Meaning().contains("color")) << "what is missing stands out";
    const auto rows = DefectsOf(window).RowCount();
    Key(Qt::Key_Return);
    EXPECT_EQ(DefectsOf(window).RowCount(), rows) << "no distance is made up";
    EXPECT_EQ(&Focus(), &Line().Line());
    Keys(" 12.4 0903");
    Photograph(window, "codingline");
    const double seconds = PlayerOf(window).Controls().CurrentPosition();
    Key(Qt::Key_Return);
    ASSERT_EQ(DefectsOf(window).RowCount(), rows + 1);
    EXPECT_TRUE(Line().isHidden());
    EXPECT_TRUE(PlayerOf(window).isAncestorOf(&Focus()) || &Focus() == &PlayerOf(window));
    ASSERT_NE(DefectsOf(window).SelectedRecord(), nullptr);
    const _REC_DATA record = *DefectsOf(window).SelectedRecord();
    EXPECT_EQ(record.ID, Newest().ID);
    EXPECT_EQ(record.DefectCode, "PL");
    EXPECT_FLOAT_EQ(record.DistanceStart, 12.4F);
    EXPECT_EQ(record.DirectionStart, 9);
    EXPECT_NEAR(record.GetPicTime1(), seconds, 0.05);
    EXPECT_TRUE(HostFiles().Exists(record.GetPicture1()));
    EXPECT_NEAR(PlayerOf(window).Controls().CurrentPosition(), seconds, 0.05) << "the video stays";

    Press(window, CommandUndo);
    EXPECT_EQ(DefectsOf(window).RowCount(), rows);
    EXPECT_FALSE(HostFiles().Exists(record.GetPicture1())) << "one step, with its picture";

    // The last one again, and nothing of it left behind by Esc.
    PlayerOf(window).setFocus();
    Key(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(Line().Line().text(), "PL3 ");
    Keys("5.0");
    Key(Qt::Key_Escape);
    EXPECT_TRUE(Line().isHidden());
    EXPECT_EQ(DefectsOf(window).RowCount(), rows);
    Key(Qt::Key_Return);
    EXPECT_TRUE(Line().Line().text().isEmpty());
}

TEST_F(CodingWindow, TheFormTakesOverWhatWasTyped) {
    DefectsOf(window).setFocus();
    Key(Qt::Key_Slash);
    ASSERT_TRUE(Line().isVisible());
    Keys("cj2 8.5~9.5");
    Key(Qt::Key_Tab);
    Keys("own words");
    InNextDialog([](CSizeDlg& dialog) {
        EXPECT_EQ(dialog.Item<QLineEdit>(1013)->text(), "8.5");
        EXPECT_EQ(dialog.Item<QLineEdit>(1017)->text(), "9.5");
        Photograph(dialog, "filledform");
        Press(dialog, CSizeDlg::IdOk);
    });
    Key(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_TRUE(AllDialogsCame());
    EXPECT_EQ(Newest().DefectCode, "CJ");
    EXPECT_EQ(Newest().DefectLevel, 2);
    EXPECT_EQ(Newest().Comment, "own words");
    EXPECT_TRUE(Line().isHidden());
    // A manhole has a form of its own.
    Key(Qt::Key_Slash);
    Keys("jcj_jn");
    EXPECT_TRUE(Meaning().contains("JCJ_JNYQS")) << "two begin so";
    Keys("yzw");
    InNextDialog([](CSizeDlg& dialog) { Press(dialog, CSizeDlg::IdOk); });
    Key(Qt::Key_Return);
    EXPECT_TRUE(AllDialogsCame());
    EXPECT_TRUE(WaitFor([&] { return Newest().DefectCode == "JCJ_JNYZW"; }));
}

TEST_F(CodingWindow, InputMethodsReachOnlyTheCommentAndTheirEnterStoresNothing) {
    Key(Qt::Key_Return);
    EXPECT_FALSE(Line().Line().inputMethodQuery(Qt::ImEnabled).toBool());
    Keys("PL3 12.4");
    Key(Qt::Key_Tab);
    EXPECT_TRUE(static_cast<QLineEdit&>(Focus()).inputMethodQuery(Qt::ImEnabled).toBool());
    const auto rows = DefectsOf(window).RowCount();
    QInputMethodEvent composing("lie'feng", {});
    QApplication::sendEvent(&Focus(), &composing);
    Key(Qt::Key_Return);
    EXPECT_EQ(DefectsOf(window).RowCount(), rows);
    QInputMethodEvent done;
    done.setCommitString("裂缝");
    QApplication::sendEvent(&Focus(), &done);
    Key(Qt::Key_Return);
    EXPECT_EQ(DefectsOf(window).RowCount(), rows) << "handed on behind the word";
    WaitFor(20);
    Key(Qt::Key_Return);
    EXPECT_EQ(DefectsOf(window).RowCount(), rows + 1);
    EXPECT_EQ(Newest().Comment, "裂缝");
}

TEST_F(CodingWindow, RunsBeginAndEndByOneKeyEachAndTheStripShowsThem) {
    if (window.Coding().Strip().isHidden()) {
        Press(window, CommandStrip);
    }
    Keys("[");
    Keys("pl3 5.0");
    Key(Qt::Key_Return);
    Keys("[");
    Keys("cj1 6.0");
    Key(Qt::Key_Return);
    const PipeStrip& strip = window.Coding().Strip().Strip();
    EXPECT_EQ(
        std::count_if(strip.Flags.begin(), strip.Flags.end(), [](const StripFlag& f) { return f.OpenRun; }),
        2);
    Photograph(window, "runs");
    Keys("]");
    Keys("9.0");
    EXPECT_TRUE(Meaning().contains("1: PL3")) << "a choice, since there are two";
    Key(Qt::Key_Home);
    Key(Qt::Key_Right);
    Keys("pl ");
    Key(Qt::Key_Return);
    EXPECT_TRUE(Line().isHidden()) << Meaning().toStdString();
    EXPECT_EQ(
        std::count_if(strip.Flags.begin(), strip.Flags.end(), [](const StripFlag& f) { return f.OpenRun; }),
        1);
    const auto ended = std::find_if(Records().begin(), Records().end(),
                                    [](const _REC_DATA& r) { return r.DistanceStart == 5.0F; });
    ASSERT_NE(ended, Records().end());
    EXPECT_FLOAT_EQ(ended->DistanceEnd, 9.0F);
}

TEST_F(CodingWindow, ASectionWithoutALengthIsGivenOneByOneKey) {
    ASSERT_TRUE([&] {
        _TESTING_DATA section = *List(window).SelectedSection();
        section.DistanceEnd = 0.0F;
        return window.Session().Database()->UpdateTesting(section);
    }());
    window.RefreshLists();
    List(window).SelectRow(1);
    WaitFor(50);
    PlayerOf(window).setFocus();
    Key(Qt::Key_Return);
    Keys("PL3 12.4");
    Key(Qt::Key_Return);
    EXPECT_EQ(Focus().objectName(), "codinglength");
    EXPECT_FLOAT_EQ(List(window).SelectedSection()->DistanceEnd, 0.0F) << "not without a word";
    Key(Qt::Key_Return);
    EXPECT_FLOAT_EQ(List(window).SelectedSection()->DistanceEnd, 30.0F);
    const auto rows = DefectsOf(window).RowCount();
    Key(Qt::Key_Return);
    EXPECT_EQ(DefectsOf(window).RowCount(), rows + 1);
}

TEST_F(CodingWindow, TheStripLeadsToDefectsAndPlaces) {
    {
        CRecExport& database = *window.Session().Database();
        _REC_DATA first = Records()[0];
        first.DistanceStart = first.DistanceEnd = 4.0F;  // at 0.4 s
        _REC_DATA second = Records()[1];
        second.DistanceStart = second.DistanceEnd = 24.0F;  // at 3.08 s
        ASSERT_TRUE(database.UpdateRecord(first) && database.UpdateRecord(second));
    }
    window.RefreshLists();
    List(window).SelectRow(1);
    WaitFor(60);
    CPipeStrip& strip = window.Coding().Strip();
    if (strip.isHidden()) {
        Press(window, CommandStrip);
    }
    ASSERT_EQ(strip.Strip().Flags.size(), 2U);
    EXPECT_EQ(strip.height(), 56);
    const auto xOf = [&](double metres) {
        StripView view;
        view.Width = strip.width();
        return static_cast<int>(std::lround(CStripLayout(strip.Strip(), view).XOf(metres)));
    };
    QTest::mouseClick(&strip, Qt::LeftButton, {}, QPoint(xOf(24.0), 10));
    ASSERT_NE(DefectsOf(window).SelectedRecord(), nullptr);
    EXPECT_EQ(DefectsOf(window).SelectedRecord()->ID, 2);
    EXPECT_TRUE(
        WaitFor([&] { return std::abs(PlayerOf(window).Controls().CurrentPosition() - 3.08) < 0.05; }));
    QTest::mouseClick(&strip, Qt::LeftButton, {}, QPoint(xOf(14.0), 34));
    EXPECT_NEAR(PlayerOf(window).Controls().CurrentPosition(), 1.74, 0.1) << "half way between both";
    EXPECT_TRUE(WaitFor([&] { return std::abs(strip.PlayHead().value_or(0.0) - 14.0) < 0.8; }));
    Photograph(window, "strip");
    DefectsOf(window).setFocus();
    Key(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(DefectsOf(window).SelectedRecord()->ID, 1);
    Key(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(DefectsOf(window).SelectedRecord()->ID, 2);

    QWheelEvent wheel(QPointF(xOf(24.0), 30), strip.mapToGlobal(QPointF(xOf(24.0), 30)), {}, {0, 480}, {}, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&strip, &wheel);
    EXPECT_GT(strip.SeenFrom(), 5.0);
    EXPECT_LT(strip.SeenTo(), 30.0);
}

TEST_F(CodingWindow, HundredDefectsTakeElevenKeysEachWithTheirClocksAndSixWithout) {
    // As often as they come in a sewer; the first of each has to be typed in full.
    const std::vector<std::string> often{"pl2", "cj2", "sl1", "ck1", "pl3",
                                         "fs1", "zw1", "cj1", "ck2", "fs2"};
    const std::vector<std::string> rare{"bx1", "tj2", "aj1", "jg2"};
    std::map<std::string, int> places;
    int defects = 0;
    const auto code = [&](int clocks) {
        Pressed = 0;
        for (int i = 0; i < 50; ++i, ++defects) {
            const std::string& what = i % 25 == 24 ? rare[static_cast<std::size_t>(defects / 25)]
                                                   : often[static_cast<std::size_t>((i * 7) % 10)];
            StandAt(0.04 * (i * 2 % 140));
            if (const auto place = places.find(what); place != places.end()) {
                Key(static_cast<Qt::Key>(Qt::Key_0 + (place->second + 1) % 10), Qt::AltModifier);
            } else {
                Key(Qt::Key_Return);
                Keys(what + " ");
            }
            Keys(std::to_string(i % 30) + "." + std::to_string(i % 10));
            if (clocks != 0) {
                Keys(i % 3 == 0 ? " 0903" : " 0012");
            }
            Key(Qt::Key_Return);
            EXPECT_TRUE(Line().isHidden()) << what << " " << Meaning().toStdString();
            if (!places.contains(what) && places.size() < 10) {
                places[what] = static_cast<int>(places.size());
            }
        }
        return Pressed / 50.0;
    };
    const double without = code(0);
    const double with = code(1);
    std::cout << "keys a defect: " << with << " with clocks, " << without << " without\n";
    EXPECT_LE(with, 11.0);
    EXPECT_LE(without, 6.6) << "the first of each code is typed in full";
    EXPECT_EQ(DefectsOf(window).RowCount(), 102);
}

TEST_F(CodingWindow, TheSheetOfKeysShowsWhatTheTablesSay) {
    InNextDialog([](CSizeDlg& dialog) {
        QStringList texts;
        for (const QLabel* label : dialog.findChildren<QLabel*>()) {
            texts << label->text();
        }
        for (const char* keys : {"Ctrl+O", "Space", "F5", "Ctrl+F1", "[", "Alt+1 … 0"}) {
            EXPECT_TRUE(texts.contains(keys)) << keys;
        }
        EXPECT_FALSE(texts.contains("")) << "each key says what it does";
        Photograph(dialog, "keys");
        Press(dialog, CSizeDlg::IdCancel);
    });
    Key(Qt::Key_F1, Qt::ControlModifier);
    EXPECT_TRUE(AllDialogsCame());
}
