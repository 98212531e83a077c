#include <gtest/gtest.h>
#include <unistd.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <filesystem>

#include "controls/CWMPPlayer4.h"
#include "lists/CDefectList.h"
#include "lists/CTestingList.h"
#include "reports/ooxml/ziparchive.h"
#include "shell/newpipedefaults.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/settings.h"
#include "shell/textcodec.h"
#include "store/CDbRec.h"
#include "tests/reviewwindow/CReviewTest.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/CTestHome.h"
#include "tests/support/windows.h"
#include "tests/workbench/numberedvideo.h"
#include "workbench/dialogs/CDlgProAtrrib.h"

namespace {

class ReviewWindow : public CReviewTest {};

}  // namespace

TEST_F(ReviewWindow, FromTheProjectListToTheSecondPictureAndItsDeletion) {
    CDlgProAtrrib window("");
    Open(window);
    EXPECT_EQ(window.windowTitle(),
              "Drovane 判读信息 - 幸福路 [CJJ 181-2012 城镇排水管道检测与评估技术规程]");
    ASSERT_EQ(List(window).RowCount(), 3);

    List(window).SelectRow(1);
    ASSERT_TRUE(WaitFor([&] { return DefectsOf(window).RowCount() == 2; }));
    ASSERT_TRUE(WaitFor([&] { return !window.DefectMarkers().Flags.empty(); }));
    EXPECT_EQ(window.DefectMarkers().Flags, (std::vector<std::uint8_t>{1, 0, 0, 1, 0, 0}));

    DefectsOf(window).SelectRow(1);
    ASSERT_TRUE(WaitFor([&] { return PlayerOf(window).Controls().CurrentPosition() > 3.0; }));
    WaitFor(300);
    Photograph(window, "review");

    Folder.Prompts.ExpectQuestion(2200, false);
    Press(window, 1033);
    EXPECT_NE(Folder.Prompts.LastText().find("破裂"), std::string::npos);
    EXPECT_EQ(DefectsOf(window).RowText(1, 5), "1");
    Folder.Prompts.ExpectQuestion(2200, true);
    Press(window, 1033);
    const std::string taken = Folder.ReadFile("job/picture/Y1-Y2_092653.jpg");
    EXPECT_EQ(ReadNumber(ReadPicture(taken)), 77);
    EXPECT_EQ(DefectsOf(window).RowText(1, 5), "2");

    DefectsOf(window).SelectRow(1);
    WaitFor(50);
    Folder.Prompts.Expect(2199);
    Press(window, 1033);
    Folder.Prompts.ExpectQuestion(2197, true);
    Press(window, 1030);
    EXPECT_EQ(DefectsOf(window).RowCount(), 1);
    EXPECT_FALSE(std::filesystem::exists(Folder.Host("job/picture/Y1-Y2_092653.jpg")));
    EXPECT_FALSE(std::filesystem::exists(Folder.Host("job/picture/3.jpg")));
    EXPECT_EQ(Folder.ReadFile("job/picture/Y1-Y2_092653_original.jpg"), taken);
}

TEST_F(ReviewWindow, TheMapLeadsToADefectAndItsFrame) {
    const auto takeSecond = [](CSizeDlg& chooser) {
        InNextDialog([](CSizeDlg& map) {
            auto& list = *map.Item<CDefectList>(1014);
            EXPECT_EQ(list.RowCount(), 2);
            list.SelectRow(1);
            WaitFor([&] { return list.hasFocus(); });
            PressKey(list, Qt::Key_Return);
        });
        Press(chooser, CSizeDlg::IdOk);
    };
    {
        CDlgProAtrrib window(Project);
        window.show();
        WaitFor(50);
        List(window).SelectRow(2);
        WaitFor(50);
        InNextDialog(takeSecond);
        Press(window, 1018);
        EXPECT_EQ(List(window).SelectedRow(), 1);
        EXPECT_EQ(DefectsOf(window).SelectedRow(), 1);
        EXPECT_TRUE(WaitFor([&] { return PlayerOf(window).Controls().CurrentPosition() > 3.0; }));
    }

    // From the list of projects that project is opened.
    CDlgProAtrrib other("");
    other.show();
    InNextDialog([&](CSizeDlg& projects) {
        InNextDialog(takeSecond);
        WaitFor([&] { return projects.isActiveWindow(); });
        PressKey(*projects.GetDlgItem(1014), Qt::Key_M, Qt::ControlModifier);
    });
    Press(other, 1038);
    EXPECT_EQ(List(other).SelectedRow(), 1);
    EXPECT_EQ(DefectsOf(other).SelectedRow(), 1);
    EXPECT_TRUE(AllDialogsCame());
}

TEST_F(ReviewWindow, FieldDataComesInAndGoesOut) {
    const CTestHome home(Folder.Host("home"));
    const std::string type = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
    const auto relation = [&](const char* kind, const char* target) {
        return "<R><Relationship Id=\"a\" Type=\"" + type + kind + "\" Target=\"" + target + "\"/></R>";
    };
    const std::string sheet = Folder.WriteFile(
        "wells.xlsx",
        WriteZip(
            {{"_rels/.rels", relation("officeDocument", "w.xml"), {}, 6},
             {"_rels/w.xml.rels", relation("worksheet", "s.xml"), {}, 6},
             {"w.xml", "<w xmlns:r=\"r\"><sheet r:id=\"a\"/></w>", {}, 6},
             {"s.xml",
              "<worksheet><sheetData><row/><row><c t=\"str\"><v>Y2</v></c><c><v>113.5</v></c><c><v>23.5</v>"
              "</c></row></sheetData></worksheet>",
              {},
              6}}));
    std::string osd;
    for (int i = 1; i <= 11; ++i) {
        osd += "<osd" + std::to_string(i) + " value=\"S" + std::to_string(i) + "\"/>";
    }
    Folder.WriteFile("field/a.xml",
                     "<cfg><mdata name=\"n\" gentime=\"2026/01/02 03:04:05\"><videofilename "
                     "value=\"v.avi\"/>" +
                         osd + "</mdata></cfg>");
    const std::string sonar = Folder.WriteFile("field/s.xml", "<cfg><dixmlfilename value=\"a.xml\"/></cfg>");

    CDlgProAtrrib window("");
    Open(window);
    List(window).SelectRow(2);
    Folder.Prompts.GivePath(sheet);
    Folder.Prompts.Expect(2187);
    Press(window, 1027);
    EXPECT_EQ(List(window).SelectedRow(), 2);
    EXPECT_EQ(List(window).SectionAt(1)->GpsXEnd, 113.5);
    EXPECT_EQ(List(window).SectionAt(2)->GpsYStart, 23.5);

    InNextDialog([](CSizeDlg& dialog) { Press(dialog, CSizeDlg::IdOk); });
    Folder.Prompts.GivePath(Folder.Path("out.shp"));
    Press(window, 1019);
    EXPECT_EQ(Folder.ReadFile("out.shp").size(), 100U + 2 * 64);

    Folder.Prompts.GivePaths({sonar});
    Press(window, 1082);
    EXPECT_EQ(List(window).RowCount(), 4);
    Folder.Desktop.CanOpen = true;
    Press(window, 1026);
    ASSERT_EQ(Folder.Desktop.Opened.size(), 1U);
    EXPECT_NE(Folder.Desktop.Opened[0].find("幸福路.docx"), std::string::npos);
    EXPECT_TRUE(AllDialogsCame());
}

TEST_F(ReviewWindow, CommandsSayWhatTheyMiss) {
    CDlgProAtrrib window("");
    window.show();
    WaitFor(30);
    Photograph(window, "empty");
    for (const int id : {1024, 1082, 1021, 1025, 1026}) {
        Folder.Prompts.Expect(2185);
        Press(window, id);
    }
    Press(window, 1037);
    for (const int id : {1023, 1028, 1079, 1035}) {
        Folder.Prompts.Expect(2191);
        Press(window, id);
    }
    for (const int id : {1030, 1033, 1029}) {
        Folder.Prompts.Expect(2196);
        Press(window, id);
    }
    PressKey(window, Qt::Key_Return);
    EXPECT_TRUE(window.isVisible());
    Folder.Prompts.ExpectQuestion(2182, false);
    PressKey(window, Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible());
    Folder.Prompts.ExpectQuestion(2182, true);
    Press(window, CSizeDlg::IdCancel);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(ReviewWindow, TheInspectionTableGoesIntoTheDocuments) {
    const CTestHome home(Folder.Host("home"));
    CDlgProAtrrib window(Project);
    window.show();
    WaitFor(30);
    Folder.Prompts.ExpectQuestion(2188, false);
    Press(window, 1025);
    EXPECT_FALSE(std::filesystem::exists(Folder.Host("home/Documents")));
    // No program to show it here, so the operator is told where it lies.
    const std::filesystem::path table = Folder.Host("home/Documents/Drovane/幸福路.xlsx");
    Folder.Prompts.ExpectQuestion(2188, true);
    Folder.Prompts.Expect(3290);
    Press(window, 1025);
    EXPECT_TRUE(std::filesystem::is_regular_file(table));
    EXPECT_TRUE(Folder.Prompts.LastText().ends_with(table.string())) << Folder.Prompts.LastText();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ReviewWindow, OnlyTheLastOfABurstOfSelectionsLoadsItsVideo) {
    CDlgProAtrrib window(Project);
    window.show();
    WaitFor(50);
    List(window).setFocus();
    PressKey(List(window), Qt::Key_Home, Qt::ControlModifier);
    ASSERT_TRUE(WaitFor([&] { return PlayerOf(window).URL() == Folder.Path("job/gone.avi"); }));
    PressKey(List(window), Qt::Key_Down);
    PressKey(List(window), Qt::Key_Down);
    EXPECT_EQ(PlayerOf(window).URL(), Folder.Path("job/gone.avi"));
    EXPECT_TRUE(WaitFor([&] { return PlayerOf(window).URL() == Folder.Path("job/text.avi"); }));
    EXPECT_EQ(DefectsOf(window).RowCount(), 0);
    // A file without a video keeps the poll running, and nothing more.
    WaitFor(450);
    EXPECT_TRUE(window.DefectMarkers().Flags.empty());
}

TEST_F(ReviewWindow, SectionsAreMadeChangedSortedAndDeleted) {
    SetWorkFolder(Folder.Path("works"));
    CDlgProAtrrib window(Project);
    window.show();
    WaitFor(50);
    SetNewPipeDefaults({"新段", "0", "0", "0", "0", "", "", "", "300", "12.5", "", ""});
    Folder.Prompts.GivePaths({Folder.Path("job/Y1-Y2.avi")});
    InNextDialog([](CSizeDlg& dialog) {
        Press(dialog, 1047);
        Type(dialog, 1069, "Y3");
        Type(dialog, 1076, "Y4");
        Photograph(dialog, "newsection");
        Press(dialog, CSizeDlg::IdOk);
    });
    Press(window, 1021);
    ASSERT_EQ(List(window).RowCount(), 4);
    EXPECT_EQ(List(window).RowText(3, 1), "Y3 - Y4");
    EXPECT_TRUE(std::filesystem::exists(Folder.Host("works/2026-03-14-092653/Y1-Y2.avi")));

    List(window).SelectRow(3);
    WaitFor(50);
    InNextDialog([](CSizeDlg& dialog) {
        EXPECT_EQ(TextOf(dialog, 1044), "新段");
        Type(dialog, 1044, "改名");
        Photograph(dialog, "section");
        Press(dialog, CSizeDlg::IdOk);
    });
    Press(window, 1028);
    WaitFor(50);
    EXPECT_EQ(List(window).RowText(3, 0), "改名");
    EXPECT_EQ(List(window).SelectedRow(), 3);

    PressKey(List(window), Qt::Key_Up, Qt::AltModifier);
    WaitFor(50);
    EXPECT_EQ(List(window).RowText(2, 0), "改名");
    EXPECT_EQ(List(window).SelectedRow(), 2);

    Folder.Prompts.ExpectQuestion(2192, true);
    Press(window, 1023);
    WaitFor(50);
    EXPECT_EQ(List(window).RowCount(), 3);
    EXPECT_EQ(PlayerOf(window).URL(), "");

    Folder.Prompts.ExpectQuestion(2193, true);
    List(window).SelectRow(1);
    Press(window, 1079);
    EXPECT_EQ(List(window).SelectedRow(), 1);
}

TEST_F(ReviewWindow, AProjectThatCannotBeOpenedLeavesTheOpenOneAsItIs) {
    const std::string other = Folder.MakeProject("other.mdb");
    CDbRec elsewhere;
    ASSERT_TRUE(elsewhere.OpenDatabase(other, CDbPassword));
    CDlgProAtrrib window(Project);
    window.show();
    WaitFor(50);
    Folder.Prompts.Expect(2000);
    EXPECT_FALSE(window.OpenProject(other));
    EXPECT_EQ(window.ProjectPath(), Project);
    EXPECT_EQ(List(window).RowCount(), 3);
    List(window).SelectRow(1);
    EXPECT_TRUE(WaitFor([&] { return DefectsOf(window).RowCount() == 2; }));
    elsewhere.Close();
    EXPECT_TRUE(window.OpenProject(other));
    EXPECT_EQ(List(window).RowCount(), 0);
    // The list was emptied: the video goes too.
    EXPECT_TRUE(WaitFor([&] { return PlayerOf(window).URL().empty(); }));
}

TEST_F(ReviewWindow, TwentyDefectsAreStoredWithKeysAlone) {
    CDlgProAtrrib window(Project);
    window.show();
    WaitFor(50);
    PressKey(List(window), Qt::Key_Home, Qt::ControlModifier);
    PressKey(List(window), Qt::Key_Down);
    ASSERT_TRUE(WaitFor([&] { return PlayerOf(window).Duration() > 0.0; }));
    constexpr int Count = 20;
    for (int i = 0; i < Count; ++i) {
        PlayerOf(window).Controls().SetCurrentPosition(0.2 * i);
        window.activateWindow();
        ASSERT_TRUE(WaitFor([&] { return QApplication::activeWindow() == &window; }));
        InNextDialog([i](CSizeDlg& dialog) {
            dialog.activateWindow();
            EXPECT_TRUE(WaitFor([&] { return QApplication::activeWindow() == &dialog; }));
            // A list of what fits may be open above the window.
            const auto target = [&dialog] {
                QWidget* popup = QApplication::activePopupWidget();
                return popup != nullptr ? popup : dialog.focusWidget();
            };
            for (const char key : {'b', 'x'}) {
                QTest::keyClick(target(), key);
            }
            PressKey(*target(), Qt::Key_Return);
            for (int tab = 0; tab < 20 && dialog.focusWidget() != dialog.GetDlgItem(1013); ++tab) {
                PressKey(*target(), Qt::Key_Tab);
            }
            QTest::keyClicks(dialog.focusWidget(), QString::number(i));
            PressKey(*dialog.focusWidget(), Qt::Key_Return);
        });
        PressKey(window, Qt::Key_F5);
        ASSERT_TRUE(AllDialogsCame()) << i;
    }
    ASSERT_EQ(DefectsOf(window).RowCount(), 2 + Count);
    for (int i = 0; i < Count; ++i) {
        const _REC_DATA& record = *DefectsOf(window).RecordAt(2 + i);
        EXPECT_EQ(record.DefectCode, "BX");
        EXPECT_EQ(record.DistanceStart, static_cast<float>(i));
        EXPECT_EQ(record.DistanceEnd, static_cast<float>(i));
        const std::string picture =
            HostFiles().ReadFile(record.GetPicture1(), std::size_t{1} << 20U).value_or("");
        EXPECT_EQ(ReadNumber(ReadPicture(picture)), i * 5) << record.GetPicture1();
        EXPECT_TRUE(HostFiles().Exists(MakeOriginalPath(record.GetPicture1())));
    }
}

TEST_F(ReviewWindow, KeysObeyWhereverNoTextIsTyped) {
    CDlgProAtrrib window(Project);
    window.show();
    WaitFor(50);
    // On the section where the review stood last, or the last one.
    EXPECT_EQ(List(window).SelectedRow(), 2);
    List(window).SelectRow(1);
    ASSERT_TRUE(WaitFor([&] { return PlayerOf(window).Duration() > 0.0; }));
    auto* speed = PlayerOf(window).findChild<QToolButton*>("speed");
    for (QWidget* focused :
         std::initializer_list<QWidget*>{&List(window), &DefectsOf(window), window.GetDlgItem(1035)}) {
        focused->setFocus();
        PressKey(*focused, Qt::Key_End);
        EXPECT_GT(PlayerOf(window).Controls().CurrentPosition(), 5.0);
        PressKey(*focused, Qt::Key_Home);
        EXPECT_EQ(PlayerOf(window).Controls().CurrentPosition(), 0.0);
        for (int i = 0; i < 5; ++i) {
            PressKey(*focused, Qt::Key_Plus, Qt::ShiftModifier);
        }
        EXPECT_EQ(speed->text(), "8×");
        for (int i = 0; i < 4; ++i) {
            PressKey(*focused, Qt::Key_Minus);
        }
        EXPECT_EQ(speed->text(), "1×");
        if (focused != window.GetDlgItem(1035)) {  // which Space presses
            PressKey(*focused, Qt::Key_Space);
            EXPECT_TRUE(PlayerOf(window).IsPlaying());
            PlayerOf(window).Controls().Pause();
        }
    }
    DefectsOf(window).SelectRow(1);
    Folder.Prompts.ExpectQuestion(2197, true);
    PressKey(DefectsOf(window), Qt::Key_Delete);
    EXPECT_EQ(DefectsOf(window).RowCount(), 1);
    EXPECT_EQ(List(window).RowText(1, 2), "1");
    EXPECT_EQ(List(window).SelectedRow(), 1);
    // Full screen is left and the end asked for in one stroke.
    PlayerOf(window).SetFullScreen(true);
    Folder.Prompts.ExpectQuestion(2182, false);
    PressKey(*PlayerOf(window).findChild<QWidget*>("picture"), Qt::Key_Escape);
    EXPECT_FALSE(PlayerOf(window).IsFullScreen());
    EXPECT_TRUE(window.isVisible());
    Folder.Prompts.ExpectQuestion(2192, true);
    PressKey(List(window), Qt::Key_Delete);
    EXPECT_EQ(List(window).RowCount(), 2);
}

TEST_F(ReviewWindow, DoubleClicksOpenPropertiesAndTheMenuSorts) {
    CDlgProAtrrib window(Project);
    window.show();
    List(window).SelectRow(1);
    ASSERT_TRUE(WaitFor([&] { return DefectsOf(window).RowCount() == 2; }));
    WaitFor(50);
    for (CListCtrl* list : std::initializer_list<CListCtrl*>{&List(window), &DefectsOf(window)}) {
        const QPoint at = list->visualRect(list->model()->index(1, 0)).center();
        InNextDialog([&](CSizeDlg& dialog) { Press(dialog, CSizeDlg::IdCancel); });
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
        EXPECT_TRUE(AllDialogsCame());
    }
    const double position = PlayerOf(window).Controls().CurrentPosition();
    EXPECT_GT(position, 3.0);
    window.Run(32782);
    EXPECT_EQ(List(window).RowText(0, 1), "Y1 - Y2");
    EXPECT_EQ(List(window).RowText(2, 1), "Y10 - Y11");
    // The operator stands where he stood.
    EXPECT_EQ(List(window).SelectedRow(), 0);
    EXPECT_EQ(DefectsOf(window).SelectedRow(), 1);
    EXPECT_EQ(PlayerOf(window).Controls().CurrentPosition(), position);

    List(window).SelectRow(0);
    PlayerOf(window).SetURL("");
    WaitFor(50);
    PlayerOf(window).SetURL("");
    Folder.Prompts.Expect(2194);
    Press(window, 1035);
    DefectsOf(window).SelectRow(0);
    WaitFor(50);
    PlayerOf(window).SetURL("");
    Folder.Prompts.Expect(2198);
    Press(window, 1033);
}

TEST_F(ReviewWindow, ReadOnlyProjectsSaySo) {
    namespace fs = std::filesystem;
    fs::permissions(Folder.Host("db/p.mdb"), fs::perms{0444});
    fs::permissions(Folder.Host(""), fs::perms{0755});
    constexpr uid_t Nobody = 65534;
    const bool root = geteuid() == 0;  // who may write everything
    ASSERT_TRUE(!root || seteuid(Nobody) == 0);
    CDlgProAtrrib window(Project);
    window.show();
    ASSERT_TRUE(!root || seteuid(0) == 0);
    WaitFor(50);
    EXPECT_TRUE(window.windowTitle().endsWith("（只读）")) << window.windowTitle().toStdString();
    for (const int id : {1035, 1021, 1030, 1082}) {
        EXPECT_FALSE(IsEnabled(window, id)) << id;
    }
    EXPECT_TRUE(IsEnabled(window, 1028));
    PressKey(List(window), Qt::Key_Delete);
    EXPECT_EQ(List(window).RowCount(), 3);
}
