// Speed of the map: what an operator waits for, with the real engine. Prints a Markdown table; exit code 1 if
// a limit is broken. Needs no display (QT_QPA_PLATFORM=offscreen).
#include <sys/resource.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <cstdio>

#include "bench/CBenchFolder.h"
#include "bench/require.h"
#include "controls/CWebBrowser2.h"
#include "geo/dialogs/CDlgMap.h"
#include "geo/dialogs/CDlgSelTesting.h"
#include "lists/CDefectList.h"
#include "shell/dialogs/theme.h"
#include "store/CDbRec.h"

namespace {

constexpr int Sections = 1000;
constexpr int RecordsASection = 5;

void Wait(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

bool Is(CDlgMap& map, const QString& expression) {
    bool value = false;
    QEventLoop loop;
    if (map.Browser() != nullptr && map.Browser()->ReadScriptVariable(expression, [&](const QVariant& given) {
            value = given.toBool();
            loop.quit();
        })) {
        loop.exec();
    }
    return value;
}

double MillisecondsUntil(CDlgMap& map, const QString& expression) {
    QElapsedTimer since;
    since.start();
    while (!Is(map, expression)) {
        Require(since.elapsed() < 30000, "the map never came so far");
        Wait(1);
    }
    return static_cast<double>(since.nsecsElapsed()) / 1e6;
}

// Of this process.
double ProcessorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void Fill(CDbRec& database) {
    CDbBatch batch(database);
    for (int s = 0; s < Sections; ++s) {
        _TESTING_DATA section;
        section.TestingName = "段" + std::to_string(s);
        section.StartWell = "W" + std::to_string(s);
        section.EndWell = "W" + std::to_string(s + 1);
        section.PipeLength = "50";
        section.PipeDiameter = "600";
        section.GpsXStart = 118 + s % 40 * 0.0006;
        section.GpsYStart = 29 + s / 40 * 0.0006;
        section.GpsXEnd = section.GpsXStart + 0.0005;
        section.GpsYEnd = section.GpsYStart + 0.0001;
        Require(database.AddTesting(section), "add a section");
        const std::int32_t id = database.LastInsertId();
        for (int r = 0; r < RecordsASection; ++r) {
            _REC_DATA record;
            record.TestingID = id;
            record.DefectCode = "PL";
            record.DefectType = "JG";
            record.DefectLevel = static_cast<std::uint8_t>(1 + r % 4);
            record.GpsX = section.GpsXStart + r * 0.0001;
            record.GpsY = section.GpsYStart + r * 0.00002;
            Require(database.AddRecord(record), "add a record");
        }
    }
    batch.Commit();
}

bool Print(const char* what, double value, const char* unit, double limit) {
    std::printf("| %s | %.1f %s | %.0f %s | %s |\n", what, value, unit, limit, unit,
                value <= limit ? "holds" : "BROKEN");
    std::fflush(stdout);
    return value <= limit;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ApplyTheme(application);
    const CBenchFolder folder;
    CDbRec database;
    Require(database.OpenDatabase(folder.MakeProject("map.mdb"), CDbPassword), "open");
    Fill(database);

    std::printf("| What | Figure | Limit | |\n|---|---|---|---|\n");
    bool allHold = true;
    for (int run = 0; run < 2; ++run) {
        CDlgMap map(database, -1, nullptr);
        QTimer script;
        QElapsedTimer since;
        QObject::connect(&script, &QTimer::timeout, [&] {
            auto* window = dynamic_cast<CSizeDlg*>(QApplication::activeModalWidget());
            if (auto* chooser = dynamic_cast<CDlgSelTesting*>(window)) {
                since.start();
                chooser->accept();
            } else if (window == &map && map.Browser() != nullptr) {
                script.stop();
                (void)MillisecondsUntil(map,
                                        "typeof Counted!=='undefined' && Counted()[0]===5000 && "
                                        "document.querySelector('.leaflet-popup')!==null");
                allHold = Print(run == 0 ? "5,000 markers and 1,000 sections, from OK of the choice to the "
                                           "first bubble, cold"
                                         : "The same once more",
                                static_cast<double>(since.elapsed()), "ms", 2000) &&
                          allHold;
                auto& list = *map.Item<CDefectList>(1014);
                Wait(300);
                double most = 0;
                for (const int row : {2500, 10, 4900, 1200}) {
                    list.SelectRow(row);
                    since.restart();
                    (void)MillisecondsUntil(map,
                                            QString("MarkerPoint(%1)!==null && Counted()[5]===%1").arg(row));
                    most = std::max(most, static_cast<double>(since.nsecsElapsed()) / 1e6);
                }
                allHold =
                    Print("A selected row until its marker is shown, worst of 4", most, "ms", 100) && allHold;
                Wait(500);
                const double before = ProcessorSeconds();
                Wait(3000);
                allHold = Print("Processor of the program while nothing happens, with its poll",
                                (ProcessorSeconds() - before) / 3 * 100, "%", 3) &&
                          allHold;
                map.reject();
            }
        });
        script.start(5);
        (void)map.DoModal();
    }
    return allHold ? 0 : 1;
}
