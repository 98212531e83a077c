#include <gtest/gtest.h>

#include <QBoxLayout>
#include <QHeaderView>
#include <QTest>
#include <QWindow>

#include "lists/CDefectList.h"
#include "lists/CTestingList.h"
#include "lists/listtexts.h"
#include "shell/dialogs/CSizeDlg.h"
#include "shell/dialogs/qttext.h"
#include "store/CDbRec.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/windows.h"

namespace {

using Texts = std::vector<std::string>;

// Sections with the wells given, the first of them with two records.
class Lists : public testing::Test {
protected:
    void Make(const std::vector<std::pair<std::string, std::string>>& wells) {
        ASSERT_TRUE(m_database.OpenDatabase(m_folder.MakeProject(), CDbPassword));
        for (const auto& [start, end] : wells) {
            _TESTING_DATA section;
            section.TestingName = start;
            section.StartWell = start;
            section.EndWell = end;
            ASSERT_TRUE(m_database.AddTesting(section));
            m_ids.push_back(m_database.LastInsertId());
            ASSERT_TRUE(m_database.SetTestingOrder(m_ids.back(), static_cast<std::int32_t>(m_ids.size())));
        }
        for (const float at : {30.0F, 2.5F}) {
            _REC_DATA record;
            record.TestingID = m_ids[0];
            record.DefectCode = "PL";
            record.DistanceStart = at;
            ASSERT_TRUE(m_database.AddRecord(record));
        }
    }

    CTestFolder m_folder;
    CDbRec m_database;
    std::vector<std::int32_t> m_ids;
};

class CSectionWindow : public CSizeDlg {
public:
    CSectionWindow() : List(new CTestingList(this)) {
        auto* column = new QVBoxLayout(this);
        column->addWidget(AddControl(1031, List));
        List->CreateColumns(false);
        List->OnItemChanged = [this] { ++Changes; };
        resize(900, 300);
    }
    bool OnControlMessage(int message, std::intptr_t, std::intptr_t) override {
        Reordered += message == WM_LIST_REORDERED ? 1 : 0;
        return true;
    }
    Texts Wells() const {
        Texts wells;
        for (int row = 0; row < List->RowCount(); ++row) {
            wells.push_back(List->RowText(row, 0));
        }
        return wells;
    }
    QPoint Middle(int row) const {
        const QRect rect = List->visualRect(List->model()->index(row, 0));
        return List->viewport()->mapTo(this, rect.center());
    }
    void Mouse(QEvent::Type type, const QPoint& at) {
        switch (type) {
            case QEvent::MouseButtonPress:
                QTest::mousePress(windowHandle(), Qt::LeftButton, {}, at);
                break;
            case QEvent::MouseButtonRelease:
                QTest::mouseRelease(windowHandle(), Qt::LeftButton, {}, at);
                break;
            default:
                QTest::mouseMove(windowHandle(), at);
        }
        WaitFor(20);
    }
    // Takes the row up, moves over the points, and lets go at the last.
    void Drag(int row, const std::vector<QPoint>& points) {
        Mouse(QEvent::MouseButtonPress, Middle(row));
        for (const QPoint& point : points) {
            Mouse(QEvent::MouseMove, point);
        }
        Photograph(*this, QString("drag-%1-%2").arg(row).arg(points.size()));
        Mouse(QEvent::MouseButtonRelease, points.back());
    }
    CTestingList* List;
    int Changes = 0;
    int Reordered = 0;
};

TEST_F(Lists, AHeadSortsTheViewAndTheNextClickBringsTheToldOrderBack) {
    Make({{"Y10", "Y11"}, {"Y2", "Y3"}, {"Y1", "Y2"}});
    CSectionWindow window;
    CTestingList& list = *window.List;
    list.AllowSorting();
    window.show();
    ASSERT_TRUE(list.Fill(m_database));
    list.SelectRow(0);
    const auto clickHead = [&list](int column) {
        const QPoint at(list.header()->sectionViewportPosition(column) + 5, 5);
        QTest::mouseClick(list.header()->viewport(), Qt::LeftButton, {}, at);
    };
    const auto wells = [&list] {
        Texts texts;
        for (int row = 0; row < list.RowCount(); ++row) {
            texts.push_back(list.SectionAt(row)->StartWell);
        }
        return texts;
    };
    clickHead(0);
    EXPECT_EQ(wells(), (Texts{"Y1", "Y2", "Y10"}));
    EXPECT_EQ(list.RowText(2, 1), "Y10 - Y11");
    EXPECT_EQ(list.SelectedRow(), 2);
    PressKey(list, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(window.Reordered, 0) << "what is seen isn't the order";
    clickHead(2);
    EXPECT_EQ(wells().back(), "Y10") << "by the number of records";
    ASSERT_TRUE(list.Fill(m_database));
    EXPECT_EQ(wells().back(), "Y10") << "it stays for what comes";
    clickHead(2);
    EXPECT_EQ(wells(), (Texts{"Y10", "Y2", "Y1"}));
    list.SelectRow(1);
    PressKey(list, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(window.Reordered, 1);
}

TEST_F(Lists, AFilterNeverHidesTheRowThatIsSelected) {
    Make({{"Y1", "Y2"}, {"Y2", "Y3"}, {"Y3", "Y4"}, {"Y4", "Y5"}});
    CSectionWindow window;
    CTestingList& list = *window.List;
    window.show();
    ASSERT_TRUE(list.Fill(m_database));
    list.SelectRow(3);
    list.setFocus();
    const int changes = window.Changes;
    list.ShowOnly({m_ids[0], m_ids[2]});
    ASSERT_EQ(list.RowCount(), 3);
    EXPECT_EQ(list.SelectedSection()->ID, m_ids[3]) << "the row that he stands on stays";
    EXPECT_EQ(window.Changes, changes) << "the video isn't loaded anew while he types";
    PressKey(list, Qt::Key_Up);
    EXPECT_EQ(list.SelectedSection()->ID, m_ids[2]);
    WaitFor(20);
    EXPECT_EQ(list.RowCount(), 2);
    ASSERT_TRUE(list.Fill(m_database));
    EXPECT_EQ(list.RowCount(), 2) << "what is read anew is filtered too";
    EXPECT_TRUE(list.SelectRowOf(m_ids[1])) << "whoever leads to a hidden row shows it";
    EXPECT_EQ(list.RowCount(), 3);
    EXPECT_EQ(list.SelectedSection()->ID, m_ids[1]);
    PressKey(list, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(window.Reordered, 0);
    list.ShowOnly({});
    EXPECT_EQ(list.RowCount(), 1);
    list.ShowAll();
    EXPECT_EQ(list.RowCount(), 4);
    EXPECT_EQ(list.SelectedRow(), 1);
}

}  // namespace

TEST_F(Lists, SectionsComeInOrderWithTheirCountsAndColours) {
    Make({{"Y10", "Y11"}, {"Y2", "Y10"}, {"A", "B"}});
    CSectionWindow window;
    CTestingList& list = *window.List;
    ASSERT_TRUE(list.Fill(m_database));
    EXPECT_EQ(window.Changes, 1);  // also of an empty list
    EXPECT_EQ(list.RowText(0, 1), "Y10 - Y11");
    EXPECT_EQ(list.RowText(0, 2) + list.RowText(1, 2), "20");
    EXPECT_EQ(list.ItemData(1), m_ids[1]);
    EXPECT_EQ(list.SelectedSection(), nullptr);

    const auto colour = [&](int row) {
        return list.model()->index(row, 3).data(Qt::ForegroundRole).value<QColor>().name();
    };
    EXPECT_EQ(colour(0), "#000000");
    list.RebuildHasDefects();
    EXPECT_EQ(colour(0), "#2cae00");
    EXPECT_EQ(colour(1), "#000000");
    _REC_DATA record;
    record.TestingID = m_ids[1];
    ASSERT_TRUE(m_database.AddRecord(record));
    EXPECT_EQ(colour(1), "#000000");

    window.show();
    list.SelectRow(1);
    EXPECT_EQ(list.SelectedSection()->ID, m_ids[1]);
    PressKey(list, Qt::Key_End);
    EXPECT_EQ(list.SelectedRow(), 2);
    const int before = window.Changes;
    list.SelectRow(2);  // tells also when nothing seems to change
    EXPECT_EQ(window.Changes, before + 2);
    list.SelectRow(1);
    list.DeleteRow(1);
    EXPECT_EQ(list.SelectedRow(), -1);
    EXPECT_EQ(window.Wells(), (Texts{"Y10", "A"}));
    EXPECT_EQ(list.SectionAt(1)->ID, m_ids[2]);

    m_database.Execute("drop table Testing");
    m_folder.Prompts.Expect(2013);
    EXPECT_FALSE(list.Fill(m_database));
    EXPECT_EQ(list.RowCount(), 0);
    EXPECT_EQ(list.SectionAt(0), nullptr);
}

TEST_F(Lists, ADraggedRowMovesAloneUntilTheNextFill) {
    Make({{"a", ""}, {"b", ""}, {"c", ""}, {"d", ""}});
    CSectionWindow window;
    CTestingList& list = *window.List;
    list.Fill(m_database);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

    window.Drag(0, {window.Middle(0) + QPoint(0, 8), window.Middle(1), window.Middle(2)});
    EXPECT_EQ(window.Wells(), (Texts{"b", "c", "a", "d"}));
    EXPECT_EQ(list.SelectedRow(), 2);
    EXPECT_EQ(list.ItemData(2), m_ids[0]);
    EXPECT_EQ(list.SectionAt(2)->ID, m_ids[0]);
    EXPECT_EQ(window.Reordered, 1);
    // Outside of all rows the last one that was hit counts.
    window.Drag(3, {window.Middle(2), window.Middle(1), QPoint(300, 295)});
    EXPECT_EQ(window.Wells(), (Texts{"b", "d", "c", "a"}));
    EXPECT_EQ(window.Reordered, 2);
    // On itself, off all rows from the start, and called off.
    window.Drag(1, {window.Middle(2), window.Middle(1)});
    window.Drag(1, {QPoint(300, 295)});
    window.Mouse(QEvent::MouseButtonPress, window.Middle(1));
    window.Mouse(QEvent::MouseMove, window.Middle(3));
    EXPECT_TRUE(list.IsDragging());
    PressKey(list, Qt::Key_Escape);
    EXPECT_FALSE(list.IsDragging());
    window.Mouse(QEvent::MouseButtonRelease, window.Middle(3));
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.Wells(), (Texts{"b", "d", "c", "a"}));
    EXPECT_EQ(window.Reordered, 2);
    // A refill under the mouse ends the drag.
    window.Mouse(QEvent::MouseButtonPress, window.Middle(1));
    window.Mouse(QEvent::MouseMove, window.Middle(3));
    list.Fill(m_database);
    EXPECT_FALSE(list.IsDragging());
    window.Mouse(QEvent::MouseButtonRelease, window.Middle(3));
    EXPECT_EQ(window.Wells(), (Texts{"a", "b", "c", "d"}));

    list.SelectRow(0);
    PressKey(list, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(window.Reordered, 2);
    PressKey(list, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(window.Reordered, 3);
    EXPECT_EQ(window.Wells(), (Texts{"b", "a", "c", "d"}));
}
