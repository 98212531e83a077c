#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <filesystem>

#include "controls/CWebBrowser2.h"
#include "geo/dialogs/CDlgMap.h"
#include "lists/CDefectList.h"
#include "shell/language.h"
#include "tests/store/CProjectTest.h"
#include "tests/support/windows.h"

namespace {

using Point = std::pair<double, double>;

class MapWindow : public CProjectTest {
protected:
    ~MapWindow() override { EXPECT_TRUE(AllDialogsCame()); }

    void AddSection(const std::string& name, Point from, Point to) {
        _TESTING_DATA section;
        section.TestingName = name;
        section.StartWell = name + "a";
        section.EndWell = name + "b";
        section.PipeLength = "50";
        section.PipeDiameter = "600";
        section.GpsXStart = from.first;
        section.GpsYStart = from.second;
        section.GpsXEnd = to.first;
        section.GpsYEnd = to.second;
        ASSERT_TRUE(Database.AddTesting(section));
        m_section = Database.LastInsertId();
    }
    void AddRecord(const std::string& code, int grade, Point at, const std::string& comment = {},
                   const std::string& picture = {}) {
        _REC_DATA record;
        record.TestingID = m_section;
        record.DefectCode = code;
        record.DefectType = Database.GetDefectType(code);
        record.DefectLevel = static_cast<std::uint8_t>(grade);
        record.DistanceStart = 1.5F;
        record.DistanceEnd = 2.25F;
        record.GpsX = at.first;
        record.GpsY = at.second;
        record.Comment = comment;
        record.AddPicture(picture, 1);
        ASSERT_TRUE(Database.AddRecord(record));
    }
    void AddSome() {
        AddSection("一", {118.3215, 29.7183}, {118.3220, 29.7184});
        AddRecord("PL", 3, {118.3216, 29.71832}, "第一行\r\n第二行");
        AddRecord("CJ", 2, {118.3218, 29.71836});
        AddSection("二", {118.3220, 29.7184}, {118.3226, 29.7180});
        AddRecord("BX", 1, {118.3223, 29.7182});
        AddRecord("SG", 4, {118.3223, 29.7182});
        AddSection("三", {0, 0}, {0, 0});
        AddRecord("PL", 1, {0, 0});
    }
    // Chooses all sections, and runs the script once the page is drawn.
    int Run(const std::function<void(CDlgMap&)>& script) {
        InNextDialog([&](CSizeDlg& chooser) {
            InNextDialog([&](CSizeDlg& dialog) {
                auto& map = dynamic_cast<CDlgMap&>(dialog);
                ASSERT_NE(map.Browser(), nullptr);
                script(map);
            });
            Press(chooser, CSizeDlg::IdOk);
        });
        CDlgMap map(Database, -1, nullptr);
        map.Title = "工程";
        const int result = map.DoModal();
        Chosen = {map.ChosenSection, map.ChosenRecord};
        return result;
    }
    static QVariant Value(CDlgMap& map, const QString& expression) {
        QVariant value;
        bool came = false;
        const bool asked = map.Browser()->ReadScriptVariable(expression, [&](const QVariant& given) {
            value = given;
            came = true;
        });
        (void)(asked && WaitFor([&] { return came; }));
        return value;
    }
    static bool WaitForValue(CDlgMap& map, const QString& expression) {
        return WaitFor([&] { return Value(map, expression).toBool(); }, 10000);
    }
    static bool WaitUntilDrawn(CDlgMap& map) {
        return WaitForValue(map, "Counted()[0] > 0 && document.querySelector('.leaflet-popup') !== null");
    }
    static QString BubbleText(CDlgMap& map) {
        return Value(map, "document.querySelector('.leaflet-popup-content').innerText").toString();
    }
    static void Click(CDlgMap& map, const QString& place) {
        const QVariantList at = Value(map, place).toList();
        ASSERT_EQ(at.size(), 2);
        QWidget* page = map.Browser()->Widget();
        QWidget* target = page->focusProxy()->focusProxy() != nullptr ? page->focusProxy()->focusProxy()
                                                                      : page->focusProxy();
        QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(at[0].toInt(), at[1].toInt()));
    }
    static CDefectList& List(CDlgMap& map) { return *map.Item<CDefectList>(1014); }

    std::pair<std::int32_t, std::int32_t> Chosen;

private:
    std::int32_t m_section = 0;
};

}  // namespace

TEST_F(MapWindow, MarkersAndRowsFollowEachOther) {
    AddSome();
    const int result = Run([&](CDlgMap& map) {
        EXPECT_EQ(map.windowTitle(), "工程");
        ASSERT_TRUE(WaitUntilDrawn(map));
        EXPECT_EQ(Value(map, "Counted().slice(0, 2).join()").toString(), "5,3");
        EXPECT_EQ(List(map).SelectedRow(), 0);
        EXPECT_TRUE(BubbleText(map).contains("第一行\n第二行")) << BubbleText(map).toStdString();
        EXPECT_TRUE(Value(map, "document.getElementById('without').textContent.startsWith('2 ')").toBool());
        WaitFor(200);
        Photograph(map, "map");

        // A row moves the map, a marker the list; those on one spot can each be reached.
        List(map).SelectRow(3);
        EXPECT_TRUE(
            WaitForValue(map, "document.querySelector('.leaflet-popup-content').innerText.includes('SG')"));
        for (const int row : {2, 3, 1}) {
            Value(map, "document.querySelector('.leaflet-popup-close-button').click()");
            WaitFor(100);
            Click(map, QString("MarkerPoint(%1)").arg(row));
            EXPECT_TRUE(WaitFor([&] { return List(map).SelectedRow() == row; })) << row;
        }
        Value(map, "document.querySelector('.leaflet-popup-close-button').click()");
        Click(map, "LinePoint(1)");
        EXPECT_TRUE(WaitFor([&] { return List(map).SelectedRow() == 2; }));
        // What has no position shows its bubble where the operator looks.
        const QString centre = Value(map, "Counted()[3].toFixed(2)").toString();
        List(map).SelectRow(4);
        EXPECT_TRUE(
            WaitForValue(map, "document.querySelector('.leaflet-popup-content').innerText.includes('PL')"));
        EXPECT_EQ(Value(map, "Counted()[3].toFixed(2)").toString(), centre);
        Value(map, "document.getElementById('functional').click()");
        WaitFor(100);
        Photograph(map, "map-functional");
        List(map).SelectRow(1);
        EXPECT_TRUE(
            WaitForValue(map, "document.querySelector('.leaflet-popup-content').innerText.includes('CJ')"));
        Value(map, "document.querySelector('.open-link').click()");
        EXPECT_TRUE(WaitFor([&] { return !map.isVisible(); }));
    });
    EXPECT_EQ(result, CSizeDlg::IdOk);
    EXPECT_EQ(Chosen, (std::pair<std::int32_t, std::int32_t>{1, 2}));
}

TEST_F(MapWindow, EnterOpensTheRowAndNothingChosenDrawsNothing) {
    AddSome();
    EXPECT_EQ(Run([&](CDlgMap& map) {
                  ASSERT_TRUE(WaitUntilDrawn(map));
                  List(map).SelectRow(2);
                  PressKey(List(map), Qt::Key_Return);
              }),
              CSizeDlg::IdOk);
    EXPECT_EQ(Chosen, (std::pair<std::int32_t, std::int32_t>{2, 3}));

    InNextDialog([](CSizeDlg& chooser) { Press(chooser, CSizeDlg::IdCancel); });
    CDlgMap cancelled(Database, -1, nullptr);
    EXPECT_EQ(cancelled.DoModal(), CSizeDlg::IdCancel);

    InNextDialog([](CSizeDlg& chooser) {
        Press(chooser, 5001);
        Press(chooser, CSizeDlg::IdOk);
    });
    InNextDialog([&](CSizeDlg& dialog) {
        auto& map = dynamic_cast<CDlgMap&>(dialog);
        ASSERT_TRUE(WaitForValue(map, "nClickEvent === -1"));
        EXPECT_EQ(List(map).RowCount(), 0);
        EXPECT_EQ(Value(map, "Counted().slice(0, 2).join()").toString(), "0,0");
        PressKey(map, Qt::Key_Escape);
    });
    CDlgMap empty(Database, -1, nullptr);
    EXPECT_EQ(empty.DoModal(), CSizeDlg::IdCancel);
}
