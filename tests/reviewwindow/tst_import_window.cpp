// The import of many field folders, by button, folder and drop, and what the operator is told of it.
#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include "bulk/dialogs/CDlgImport.h"
#include "history/CJournal.h"
#include "tests/reviewwindow/CReviewTest.h"
#include "tests/reviewwindow/fieldfolders.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

class ImportWindow : public CReviewTest {
protected:
    ImportWindow() {
        for (int i = 1; i <= 3; ++i) {
            const std::string n = std::to_string(i);
            Folder.WriteFile(
                "field/" + n + "/d.xml",
                FieldDescription({.Start = "A" + n, .End = "B" + n, .Items = {{}, {.Level = 3}}}));
            Folder.WriteFile("field/" + n + "/0.jpg", "jpeg");
            if (i != 2) {
                Folder.WriteFile("field/" + n + "/1.jpg", "jpeg");
            }
            Folder.WriteFile("field/" + n + "/v.avi", "video");
        }
        Folder.WriteFile("field/bad/d.xml", "<cfg><mdata name=\"n\"");
        Folder.WriteFile("field/else/notes.xml", "<notes/>");
    }

    static CListCtrl& Lines(CDlgProAtrrib& window) {
        return *window.ImportWindow().Item<CListCtrl>(CDlgImport::IdList);
    }
    static void Drop(CDlgProAtrrib& window, const std::filesystem::path& path) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path.string()))});
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent drop(QPointF(50, 50), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                        Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &drop);
        EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "the operator's originals stay";
        WaitFor(50);
    }

    CJournals Journals;
    CChangeWatchesScope Scope{Journals};
};

TEST_F(ImportWindow, AFolderComesInAsOneStepAndEachLineLeadsToItsPlace) {
    CDlgProAtrrib window("");
    window.setModal(true);
    Open(window);
    Drop(window, Folder.Host("field"));
    ASSERT_EQ(List(window).RowCount(), 6);
    CDlgImport& told = window.ImportWindow();
    ASSERT_TRUE(told.isVisible());
    EXPECT_FALSE(told.isModal());
    Photograph(told, "import");
    ExpectNothingCut(told);
    CListCtrl& lines = Lines(window);
    ASSERT_EQ(lines.RowCount(), 5) << "three taken, one refused, one picture missing";
    EXPECT_NE(lines.RowText(0, 2).find("A1 - B1"), std::string::npos) << lines.RowText(0, 2);
    EXPECT_NE(lines.RowText(2, 2).find("1.jpg"), std::string::npos) << lines.RowText(2, 2);
    EXPECT_TRUE(lines.RowText(4, 0).ends_with("bad\\d.xml")) << lines.RowText(4, 0);
    EXPECT_FALSE(lines.RowText(4, 2).empty()) << "a refusal has its reason";

    lines.SelectRow(2);
    PressKey(lines, Qt::Key_Return);
    WaitFor(50);
    ASSERT_NE(List(window).SelectedSection(), nullptr);
    EXPECT_EQ(List(window).SelectedSection()->StartWell, "A2");
    ASSERT_NE(DefectsOf(window).SelectedRecord(), nullptr);
    EXPECT_EQ(DefectsOf(window).SelectedRecord()->DefectLevel, 3);
    EXPECT_TRUE(told.isVisible());

    Press(told, CDlgImport::IdOnlyOdd);
    EXPECT_EQ(lines.RowCount(), 2);
    Press(told, CDlgImport::IdCopy);
    const QString copied = QGuiApplication::clipboard()->text();
    EXPECT_EQ(copied.count('\n'), 2) << copied.toStdString();
    EXPECT_EQ(copied.count('\t'), 4);

    Folder.Desktop.CanOpen = true;
    lines.SelectRow(1);
    PressKey(lines, Qt::Key_Return);
    EXPECT_EQ(Folder.Desktop.Opened, std::vector{Folder.Path("field/bad") + "\\"});

    window.Run(CommandUndo);
    EXPECT_EQ(List(window).RowCount(), 3) << "one step";
    window.Run(CommandRedo);
    Press(told, CSizeDlg::IdCancel);
    EXPECT_FALSE(told.isVisible());

    // A second run takes what is missing.
    Folder.WriteFile("field/4/d.xml", FieldDescription({.Start = "A4", .End = "B4", .Items = {}}));
    Folder.Prompts.GivePath(Folder.Path("field"));
    Press(window, CommandImportFolder);
    EXPECT_EQ(List(window).RowCount(), 7);
    EXPECT_EQ(TextOf(told, CDlgImport::IdState).count('3'), 1)
        << TextOf(told, CDlgImport::IdState).toStdString();
    ASSERT_NE(List(window).SelectedSection(), nullptr);
    EXPECT_EQ(List(window).SelectedSection()->StartWell, "A4");
    EXPECT_TRUE(window.OpenProject(Folder.MakeProject("other.mdb")));
    EXPECT_FALSE(told.isVisible()) << "it tells of another project";
    window.setModal(false);
}

TEST_F(ImportWindow, OneFileShowsItsBoxesAndOnlyWhatNeedsALookInTheList) {
    CDlgProAtrrib window("");
    Open(window);
    Folder.Prompts.GivePaths({Folder.Path("field/1/d.xml")});
    Press(window, 1082);
    EXPECT_EQ(List(window).RowCount(), 4);
    EXPECT_FALSE(window.ImportWindow().isVisible()) << "taken as it is";
    Folder.Prompts.GivePaths({Folder.Path("field/1/d.xml")});
    Folder.Prompts.Expect(2189);
    Press(window, 1082);
    EXPECT_FALSE(window.ImportWindow().isVisible()) << "the box has told it";
    // What no box tells stands in the list.
    Folder.Prompts.GivePaths({Folder.Path("field/bad/d.xml")});
    Press(window, 1082);
    ASSERT_TRUE(window.ImportWindow().isVisible());
    Folder.Prompts.GivePaths({Folder.Path("field/2/d.xml")});
    Press(window, 1082);
    EXPECT_EQ(Lines(window).RowCount(), 3) << "kept until the window is closed";
    EXPECT_EQ(Lines(window).SelectedRow(), 1);
    Folder.Prompts.GivePath(Folder.Path("field/else"));
    Folder.Prompts.Expect(3919);
    Press(window, CommandImportFolder);
    Folder.Prompts.GivePaths({});
    Press(window, 1082);
    EXPECT_EQ(List(window).RowCount(), 5);
}

}  // namespace
