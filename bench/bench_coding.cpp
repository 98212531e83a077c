// How long an operator waits when he codes defects: from Enter in the coding line to the row in the list,
// with key frames 12 and 250 apart, the second against taking the same frame; and how long the strip of the
// pipe takes to be drawn. Prints Markdown tables; exit code 1 if a limit is broken.
#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QTimer>
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "bench/CBenchFolder.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "controls/CPipeStrip.h"
#include "controls/CWMPPlayer4.h"
#include "controls/paint/pipestrip.h"
#include "history/CJournal.h"
#include "lists/CDefectList.h"
#include "lists/CTestingList.h"
#include "shell/dialogs/theme.h"
#include "shell/paths.h"
#include "store/CDbRec.h"
#include "workbench/capture/grabframe.h"
#include "workbench/coding/dialogs/CCodingLine.h"
#include "workbench/dialogs/CCodingDesk.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

constexpr int Defects = 24;
constexpr double MostNear = 150.0;  // ms, key frames 12 apart
constexpr double MostOver = 60.0;   // ms beyond the grab, key frames 250 apart
constexpr double MostStrip = 4.0;   // ms

void Handle(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void MakeVideo(const std::string& hostPath, int keyFrames) {
    const std::string command =
        "ffmpeg -v error -y -f lavfi -i testsrc2=size=720x576:rate=25:duration=40 -c:v libx264 -preset "
        "veryfast -keyint_min " +
        std::to_string(keyFrames) + " -g " + std::to_string(keyFrames) +
        " -sc_threshold 0 -pix_fmt yuv420p '" + hostPath + "'";
    Require(std::system(command.c_str()) == 0, "make a video");
}

bool Print(const char* what, double time, double limit) {
    std::printf("| %s | %.2f ms | %.0f ms | %s |\n", what, time, limit, time <= limit ? "holds" : "BROKEN");
    std::fflush(stdout);
    return time <= limit;
}

struct Times {
    double Store = 0.0;
    double Grab = 0.0;
};

Times CodeDefects(const CBenchFolder& folder, const char* name) {
    const std::string project = folder.MakeProject(std::string(name) + ".mdb");
    const std::string video = folder.Path(std::string(name) + ".mp4");
    {
        CDbRec database;
        Require(database.OpenDatabase(project, CDbPassword), "open");
        _TESTING_DATA section;
        section.StartWell = "Y1";
        section.EndWell = "Y2";
        section.PipeLength = "60";
        section.DistanceEnd = 60.0F;
        section.VideoFileList = video;
        Require(database.AddTesting(section), "add a section");
    }
    CDlgProAtrrib window("");
    window.show();
    Require(window.OpenProject(project), "open in the window");
    while (window.Player().Duration() <= 0.0) {
        Handle(20);
    }
    if (window.Coding().Strip().isHidden()) {
        window.Run(CommandStrip);
    }
    std::vector<double> stores;
    std::vector<double> grabs;
    for (int i = 0; i < Defects; ++i) {
        const double seconds = 0.5 + 1.6 * i;
        window.Player().Controls().SetCurrentPosition(seconds);
        while (window.Player().IsBusy()) {
            Handle(5);
        }
        window.Run(CommandCode);
        QLineEdit& line = window.Coding().Line().Line();
        line.setText(QString("PL2 %1.5 0903").arg(i));
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        stores.push_back(MillisecondsOf([&] {
            QApplication::sendEvent(&line, &enter);
            window.DefectList().viewport()->repaint();
        }));
        Require(window.DefectList().RowCount() == i + 1, "store");
        grabs.push_back(MillisecondsOf([&] {
            Require(TryGrabFrame(video, seconds, folder.Path("grab.jpg")) == GrabResult::Done, "grab");
        }));
    }
    window.Close();
    return {MedianOf(stores), MedianOf(grabs)};
}

double DrawStrip() {
    PipeStrip strip;
    strip.Length = strip.InspectedTo = 120.0;
    strip.StartWell = "YS1";
    strip.EndWell = "YS2";
    strip.Direction = PipeStrip::Flow::ToEnd;
    for (int i = 0; i < 200; ++i) {
        StripFlag flag;
        flag.Id = i;
        flag.From = 120.0 * i / 200.0;
        flag.To = flag.From + (i % 10 == 0 ? 3.0 : 0.0);
        flag.Letter = i % 2 == 0 ? "S" : "F";
        flag.Shape = i % 2 == 0 ? StripFlag::Form::Square : StripFlag::Form::Round;
        flag.Grade = 1 + i % 4;
        strip.Flags.push_back(std::move(flag));
    }
    StripView view;
    view.Width = 2560;
    view.PlayHead = 40.0;
    QImage image(view.Width, PipeStripHeight, QImage::Format_RGB32);
    std::vector<double> times;
    for (int i = 0; i < 50; ++i) {
        times.push_back(MillisecondsOf([&] {
            QPainter painter(&image);
            DrawPipeStrip(painter, strip, view);
        }));
    }
    return MedianOf(times);
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    ApplyTheme(application);
    const CBenchFolder folder;
    SetAppFolder(folder.Path(""));
    CJournals journals;
    const CChangeWatchesScope scope(journals);
    MakeVideo(folder.Host("near.mp4").string(), 12);
    MakeVideo(folder.Host("far.mp4").string(), 250);
    const Times near = CodeDefects(folder, "near");
    const Times far = CodeDefects(folder, "far");
    std::printf("| What | Time | Limit | |\n|---|---|---|---|\n");
    bool holds = Print("From Enter to the row in the list, key frames 12 apart", near.Store, MostNear);
    holds &= Print("The same with 250, beyond taking the same frame", far.Store - far.Grab, MostOver);
    holds &= Print("Draw the strip with 200 flags, 2560 pixels wide", DrawStrip(), MostStrip);
    return holds ? 0 : 1;
}
