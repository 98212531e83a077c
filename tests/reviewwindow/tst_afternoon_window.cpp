// An afternoon with the 300 sections of a week, by the keys that an operator presses: they come in, dead
// videos and bad defects are found, a misspelt name is put right in fifty sections, and that is taken back.
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include "bulk/dialogs/CBulkList.h"
#include "bulk/dialogs/CDlgBulkEdit.h"
#include "bulk/dialogs/CDlgImport.h"
#include "history/CJournal.h"
#include "reports/CRecExport.h"
#include "tests/reviewwindow/CReviewTest.h"
#include "tests/reviewwindow/fieldfolders.h"
#include "workbench/dialogs/CRowFilter.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

constexpr int SectionCount = 300;
constexpr int Misspelt = 50;
constexpr int DeadVideos = 12;

class Afternoon : public CReviewTest {
protected:
    Afternoon() {
        for (int i = 0; i < SectionCount; ++i) {
            const std::string n = std::to_string(1000 + i);
            FieldSection section{"A" + n, "B" + n, i % 6 == 0 ? "陆听合" : "陆听禾", "v.avi", {}};
            for (int item = 0; item < 4; ++item) {
                section.Items.push_back({"PL", item == 0 && i % 10 == 0 ? 3 : 1, 2.0 * item + 1});
                Folder.WriteFile("week/" + n + "/" + std::to_string(item) + ".jpg", "jpeg");
            }
            Folder.WriteFile("week/" + n + "/d.xml", FieldDescription(section));
            if (i % 25 != 7) {
                std::filesystem::copy_file(Folder.Host("job/Y1-Y2.avi"), Folder.Host("week/" + n + "/v.avi"));
            }
        }
    }

    void Type(CDlgProAtrrib& window, const char* text) {
        auto& line = *window.Item<QLineEdit>(5110);
        QTest::keyClicks(&line, text);
        m_keys += static_cast<int>(std::string_view(text).size());
        WaitFor(20);
    }
    void Key(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        PressKey(widget, key, modifiers);
        ++m_keys;
    }
    // Shortcuts need the active window.
    void Control(CDlgProAtrrib& window, Qt::Key key) {
        window.activateWindow();
        ASSERT_TRUE(WaitFor([&] { return window.isActiveWindow(); }));
        Key(List(window), key, Qt::ControlModifier);
    }
    std::map<std::string, int> Testers(CDlgProAtrrib& window) {
        std::map<std::string, int> testers;
        for (const _TESTING_DATA& section : List(window).Sections()) {
            ++testers[section.Tester];
        }
        return testers;
    }

    CJournals Journals;
    CChangeWatchesScope Scope{Journals};
    int m_keys = 0;
};

TEST_F(Afternoon, ThreeHundredSectionsTakeAHandfulOfKeys) {
    CDlgProAtrrib window("");
    Open(window);
    Folder.Prompts.GivePath(Folder.Path("week"));
    Press(window, CommandImportFolder);
    ++m_keys;
    ASSERT_EQ(List(window).RowCount(), SectionCount + 3);
    EXPECT_EQ(window.ImportWindow().Item<CListCtrl>(CDlgImport::IdList)->RowCount(),
              SectionCount + DeadVideos);
    Press(window.ImportWindow(), CSizeDlg::IdCancel);

    // Dead videos.
    Control(window, Qt::Key_F);
    Type(window, "no video");
    EXPECT_EQ(window.Filter().Hits().Sections.size(), DeadVideos + 1U) << "and one that was there before";
    Key(*window.focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(HostFiles().Exists(List(window).SelectedSection()->FirstVideo()));

    // All of grade 3 and more.
    window.Item<QLineEdit>(5110)->selectAll();
    Type(window, "grade>=3");
    EXPECT_EQ(window.Filter().Hits().Records.size(), SectionCount / 10U);
    for (int i = 0; i < 3; ++i) {
        Key(*window.focusWidget(), Qt::Key_Return);
        ASSERT_NE(DefectsOf(window).SelectedRecord(), nullptr);
        EXPECT_EQ(DefectsOf(window).SelectedRecord()->DefectLevel, 3);
    }

    // A tester's name.
    window.Item<QLineEdit>(5110)->setText("tester:陆听合");
    m_keys += 10;
    ASSERT_EQ(window.Filter().Hits().Sections.size(), static_cast<std::size_t>(Misspelt));
    InNextDialog([this](CSizeDlg& dialog) {
        auto& field = *dialog.Item<QComboBox>(CDlgBulkEdit::IdField);
        field.setCurrentIndex(field.findData("Tester"));
        Key(field, Qt::Key_Tab);
        auto& value = *dialog.Item<QComboBox>(CDlgBulkEdit::IdValue);
        EXPECT_EQ(value.findText("陆听合"), 0) << "what is there is offered";
        value.setEditText("陆听禾");
        m_keys += 3;
        auto& list = *dialog.Item<CBulkList>(CDlgBulkEdit::IdList);
        EXPECT_EQ(list.RowCount(), Misspelt);
        EXPECT_EQ(list.RowText(0, CBulkList::Now), "陆听合");
        EXPECT_EQ(list.RowText(0, CBulkList::Then), "陆听禾");
        EXPECT_NE(TextOf(dialog, CDlgBulkEdit::IdState).indexOf("50"), -1);
        WaitFor(20);
        Photograph(dialog, "bulkedit");
        ExpectNothingCut(dialog);
        Press(dialog, CSizeDlg::IdOk);
        ++m_keys;
    });
    Control(window, Qt::Key_B);
    EXPECT_TRUE(AllDialogsCame());
    EXPECT_EQ(Testers(window).count("陆听合"), 0U);
    EXPECT_EQ(Testers(window)["陆听禾"], SectionCount);
    EXPECT_TRUE(window.Filter().Hits().Sections.empty()) << "they aren't hits any more";

    Key(*window.Item<QLineEdit>(5110), Qt::Key_Escape);
    Control(window, Qt::Key_Z);
    EXPECT_EQ(Testers(window)["陆听合"], Misspelt) << "one step";
    Control(window, Qt::Key_Z);
    EXPECT_EQ(List(window).RowCount(), 3) << "the import, too";
    // By hand these were 300 choosers and 50 forms, of at least four keys each.
    EXPECT_LT(m_keys, 60);
    RecordProperty("keys", m_keys);
}

TEST_F(CReviewTest, WhatTheFormsRefuseIsShownBeforeAndOnlyTickedRowsChange) {
    CDlgProAtrrib window("");
    Open(window);
    List(window).SelectRow(1);
    WaitFor(50);
    InNextDialog([](CSizeDlg& dialog) {
        auto& list = *dialog.Item<CBulkList>(CDlgBulkEdit::IdList);
        ASSERT_EQ(list.RowCount(), 3);
        EXPECT_TRUE(list.IsChecked(1)) << "without a filter only the selected one";
        EXPECT_FALSE(list.IsChecked(0));
        EXPECT_FALSE(IsEnabled(dialog, CSizeDlg::IdOk));
        Press(dialog, CDlgBulkEdit::IdTickAll);
        EXPECT_TRUE(list.IsChecked(0));
        auto& field = *dialog.Item<QComboBox>(CDlgBulkEdit::IdField);
        auto& value = *dialog.Item<QComboBox>(CDlgBulkEdit::IdValue);
        field.setCurrentIndex(field.findData("TestingDate"));
        value.setEditText("31st of March");
        EXPECT_FALSE(IsEnabled(dialog, CSizeDlg::IdOk));
        EXPECT_FALSE(TextOf(dialog, CDlgBulkEdit::IdState).isEmpty());
        // Grades that a code doesn't have.
        Press(dialog, CDlgBulkEdit::IdRecords);
        ASSERT_EQ(list.RowCount(), 2);
        field.setCurrentIndex(field.findData("DefectLevel"));
        value.setEditText("9");
        EXPECT_FALSE(IsEnabled(dialog, CSizeDlg::IdOk));
        EXPECT_FALSE(list.RowText(0, CBulkList::WhyNot).empty());
        value.setEditText("3");
        EXPECT_TRUE(IsEnabled(dialog, CSizeDlg::IdOk));
        list.SetChecked(0, false);
        Press(dialog, CDlgBulkEdit::IdMore);
        auto& second = *dialog.Item<QComboBox>(CDlgBulkEdit::IdField + 1);
        second.setCurrentIndex(second.findData("DirectionStart"));
        dialog.Item<QComboBox>(CDlgBulkEdit::IdValue + 1)->setEditText("9");
        WaitFor(20);
        Photograph(dialog, "bulkrecords");
        Press(dialog, CSizeDlg::IdOk);
    });
    Press(window, CommandBulkEdit);
    EXPECT_TRUE(AllDialogsCame());
    ASSERT_EQ(DefectsOf(window).RowCount(), 2);
    EXPECT_EQ(DefectsOf(window).RecordAt(0)->DefectLevel, 2);
    EXPECT_EQ(DefectsOf(window).RecordAt(1)->DefectLevel, 3);
    EXPECT_EQ(DefectsOf(window).RecordAt(1)->DirectionStart, 9);
    EXPECT_EQ(List(window).SelectedRow(), 1);
}

}  // namespace
