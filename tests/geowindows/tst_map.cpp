#include <gtest/gtest.h>

#include <sqlcipher/sqlite3.h>
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
#include "shell/textcodec.h"
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
        AddRecord("PL", 3, {118.3216, 29.71832}, "第一行\r\n第二行", Folder.Path("ui/drovane.png"));
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
        EXPECT_TRUE(WaitForValue(map, "document.querySelector('.leaflet-popup-content img').naturalWidth > 0"));
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

TEST_F(MapWindow, HostileTextsAreTextsAndNothingIsFetched) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    int asked = 0;
    QObject::connect(&server, &QTcpServer::newConnection, [&] { ++asked; });
    const std::string address = "http://127.0.0.1:" + std::to_string(server.serverPort());
    const std::vector<std::string> texts = {
        "<script>window.hacked=1</script>",
        "<img src=" + address + "/a onerror=window.hacked=2>",
        "\");window.hacked=3;(\"",
        "');window.hacked=4;('",
        "\\\");window.hacked=5;//",
        "</td></table><a href='" + address + "'>x</a>",
        "&lt;b&gt; &amp; \"quoted\" 'single' `tick` ${window.hacked=6}",
        "line\xE2\x80\xA8separator\n]]>--><!--",
    };
    for (const std::string& text : texts) {
        AddSection(text, {118.3, 29.7}, {118.4, 29.8});
        AddRecord(text, 2, {118.35, 29.75}, text, "\\p\\" + text + ".jpg");
    }
    const std::string secret = Folder.WriteFile("secret.txt", "secret");
    const std::string jpeg("\xFF\xD8\xFFpicture");
    Folder.WriteFile("other.jpg", jpeg);
    Run([&](CDlgMap& map) {
        ASSERT_TRUE(WaitUntilDrawn(map));
        for (int row = 0; row < static_cast<int>(texts.size()); ++row) {
            if (row > 0) {  // whose bubble came by itself
                Value(map, "document.querySelector('.leaflet-popup-close-button').click()");
                List(map).SelectRow(row);
            }
            ASSERT_TRUE(WaitForValue(map, "document.querySelector('.leaflet-popup-content') !== null"))
                << row;
            WaitFor(60);
            QString expected = QString::fromStdString(texts[static_cast<std::size_t>(row)]);
            expected.replace(QChar(0x2028), '\n');
            const QString told = BubbleText(map);
            EXPECT_GE(told.count(expected), 3) << told.toStdString();
        }
        // Whoever finds a way into the page all the same gets no further.
        Value(map, "fetch('" + QString::fromStdString(address) +
                       "/f').catch(function(){});new Image().src='" + QString::fromStdString(address) +
                       "/i';0");
        Value(map, "location.href='" + QString::fromStdString(address) + "/l';window.open('" +
                       QString::fromStdString(address) + "/w');0");
        for (const std::string& file :
             {std::string("file://" + Folder.Host("other.jpg").string()),
              std::string("drovane://picture/%5C") + "etc%5Cpasswd",
              std::string("drovane://map/../secret.txt"), std::string("drovane://map/..%2Fsecret.txt"),
              std::string("drovane://map/..%5Csecret.txt")}) {
            Value(map, QString::fromStdString(
                           "window.got='';(function(){var i=new Image();i.onload=function(){"
                           "window.got+='image';};i.src='" +
                           file + "';fetch('" + file +
                           "').then(function(){window.got+='text';}).catch(function(){});})();0"));
            WaitFor(100);
            EXPECT_EQ(Value(map, "window.got").toString(), "") << file;
        }
        EXPECT_EQ(Value(map, "typeof window.hacked").toString(), "undefined");
        EXPECT_EQ(Value(map, "location.href").toString(), "drovane://map/map.srp");
        PressKey(map, Qt::Key_Escape);
    });
    EXPECT_EQ(asked, 0);
}

TEST_F(MapWindow, TilesComeFromTheServiceOrTheOfficesFile) {
    AddSome();
    const std::string png = Folder.ReadFile("ui/clock0.png");
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    std::string asked;
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        QTcpSocket* socket = server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [&asked, &png, socket] {
            asked += socket->readAll().toStdString();
            socket->write(
                QByteArray::fromStdString("HTTP/1.1 200 OK\r\nContent-Type: image/png\r\nConnection: "
                                          "close\r\nContent-Length: " +
                                          std::to_string(png.size()) + "\r\n\r\n" + png));
            socket->disconnectFromHost();
        });
    });
    Folder.WriteFile("map.ini", "[tiles]\nurl=http://127.0.0.1:" + std::to_string(server.serverPort()) +
                                    "/{z}/{x}/{y}.png\nattribution=<b>Office</b>\nsystem=gcj-02\n");
    Run([&](CDlgMap& map) {
        ASSERT_TRUE(WaitUntilDrawn(map));
        EXPECT_TRUE(WaitForValue(map, "document.querySelectorAll('.leaflet-tile-loaded').length > 0"));
        EXPECT_NE(asked.find("GET /18/"), std::string::npos) << asked.substr(0, 100);
        EXPECT_TRUE(Value(map, "document.body.innerText.includes('<b>Office</b>')").toBool());
        // Turned for drawing: some 500 m to the east and 230 m to the south here.
        EXPECT_NEAR(Value(map, "Shift.to('GCJ-02', 118.3215, 29.7183)[0]").toDouble(), 118.32667, 0.0003);
        EXPECT_NEAR(Value(map, "Shift.to('GCJ-02', 118.3215, 29.7183)[1]").toDouble(), 29.71589, 0.0003);
        PressKey(map, Qt::Key_Escape);
    });

    sqlite3* file = nullptr;
    ASSERT_EQ(sqlite3_open(Folder.Host("办公室.mbtiles").c_str(), &file), SQLITE_OK);
    sqlite3_exec(file, "create table tiles (zoom_level, tile_column, tile_row, tile_data)", nullptr, nullptr,
                 nullptr);
    sqlite3_stmt* insert = nullptr;
    // Around the sections at zoom 17; rows are counted from the south.
    sqlite3_prepare_v2(
        file,
        "with recursive n(i) as (select 0 union all select i + 1 from n where i < 80) insert into tiles "
        "select 17, 108615 + i % 9 - 4, 131071 - 54195 + i / 9 - 4, ? from n",
        -1, &insert, nullptr);
    sqlite3_bind_blob(insert, 1, png.data(), static_cast<int>(png.size()), SQLITE_STATIC);
    sqlite3_step(insert);
    sqlite3_finalize(insert);
    sqlite3_close(file);
    Folder.WriteFile("map.ini", GbkFromUtf8("[tiles]\nurl=http://127.0.0.1:1/{z}/{x}/{y}\nmbtiles=") +
                                    GbkFromUtf8(Folder.Host("办公室.mbtiles").string()) + "\n");
    asked.clear();
    Run([&](CDlgMap& map) {
        ASSERT_TRUE(WaitUntilDrawn(map));
        EXPECT_TRUE(WaitForValue(map, "document.querySelectorAll('.leaflet-tile-loaded').length > 0"));
        Photograph(map, "map-tiles");
        PressKey(map, Qt::Key_Escape);
    });
    EXPECT_EQ(asked, "");
}

TEST_F(MapWindow, APageThatIsMissingOrBrokenIsSilence) {
    AddSome();
    // Without the engine's part a message says so, and the list is still there.
    std::filesystem::rename(Folder.Host("drovane-web.so"), Folder.Host("aside"));
    Folder.Prompts.Expect(3436);
    InNextDialog([](CSizeDlg& chooser) {
        InNextDialog([](CSizeDlg& dialog) { PressKey(dialog, Qt::Key_Escape); });
        Press(chooser, CSizeDlg::IdOk);
    });
    {
        CDlgMap map(Database, -1, nullptr);
        EXPECT_EQ(map.DoModal(), CSizeDlg::IdCancel);
    }
    std::filesystem::rename(Folder.Host("aside"), Folder.Host("drovane-web.so"));
    const auto look = [&] {
        Run([&](CDlgMap& map) {
            WaitFor([&] { return map.Browser()->ReadyState() == CWebBrowser2::Complete; });
            WaitFor(300);
            EXPECT_EQ(List(map).RowCount(), 5);
            List(map).SelectRow(2);
            WaitFor(100);
            PressKey(map, Qt::Key_Escape);
        });
    };
    Folder.WriteFile("map/map.srp", "<html><script src='drovane://map/none.js'></script>");
    look();
    std::filesystem::remove(Folder.Host("map/map.srp"));
    look();
}

TEST_F(MapWindow, TheViewIsSavedAsPdfAndPicture) {
    AddSome();
    Folder.UseLanguage("English");
    Run([&](CDlgMap& map) {
        ASSERT_TRUE(WaitUntilDrawn(map));
        Photograph(map, "map-english");
        ExpectNothingCut(map);
        Folder.Prompts.GivePath(Folder.Path("view"));
        Press(map, 5011);
        EXPECT_TRUE(WaitFor([&] { return std::filesystem::exists(Folder.Host("view.pdf")); }, 15000));
        WaitFor([&] { return IsEnabled(map, 5012); });
        Folder.Prompts.GivePath(Folder.Path("view.png"));
        Press(map, 5012);
        EXPECT_TRUE(WaitFor([&] { return std::filesystem::exists(Folder.Host("view.png")); }, 15000));
        WaitFor([&] { return IsEnabled(map, 5012); });
        const QString zoom = Value(map, "Counted()[2]").toString();
        Folder.Prompts.GivePath(Folder.Path("no folder/view.png"));
        Folder.Prompts.Expect(3435);
        Press(map, 5012);
        EXPECT_TRUE(WaitFor([&] { return Folder.Prompts.AllCame(); }, 15000));
        EXPECT_EQ(Value(map, "Counted()[2]").toString(), zoom);
        PressKey(map, Qt::Key_Escape);
    });
    EXPECT_TRUE(Folder.ReadFile("view.pdf").starts_with("%PDF"));
    const QImage picture(QString::fromStdString(Folder.Host("view.png").string()));
    EXPECT_NEAR(picture.width(), 3508, 4);  // 297 mm at 300 dots an inch
    EXPECT_NEAR(picture.height(), 2480, 4);
    const QString keep = qEnvironmentVariable("DROVANE_SCREENSHOTS");
    if (!keep.isEmpty()) {
        picture.save(keep + "/map-print.png");
    }
}
