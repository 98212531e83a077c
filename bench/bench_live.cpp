// Speed beside an acquisition, and of the receiver's text. Prints a Markdown table; exit code 1 if a limit is
// broken. Needs no display (QT_QPA_PLATFORM=offscreen).
#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "apps/acquisition/CChannelClient.h"
#include "bench/CBenchFolder.h"
#include "bench/require.h"
#include "defects/dialogs/CCtrlPic.h"
#include "geo/nmea/CNmeaReceiver.h"
#include "live/dialogs/CDrovaneDlg.h"
#include "shell/CHostFiles.h"
#include "shell/dialogs/CLocalLiveChannel.h"
#include "shell/seams.h"
#include "shell/settings.h"

namespace {

constexpr int Records = 40;

template <class Condition>
double MillisecondsUntil(Condition condition) {
    QElapsedTimer since;
    since.start();
    while (!condition()) {
        Require(since.elapsed() < 10000, "it never came so far");
        QApplication::processEvents(QEventLoop::AllEvents, 1);
    }
    return static_cast<double>(since.nsecsElapsed()) / 1e6;
}

bool Print(const char* what, double value, const char* unit, double limit, bool atMost) {
    const bool holds = atMost ? value <= limit : value >= limit;
    std::printf("| %s | %.1f %s | %s %.0f %s | %s |\n", what, value, unit, atMost ? "at most" : "at least",
                limit, unit, holds ? "holds" : "BROKEN");
    return holds;
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double NmeaMegabytesASecond() {
    std::string text;
    for (int i = 0; text.size() < (20U << 20U); ++i) {
        const std::string second = std::to_string(10 + i % 50);
        text +=
            "$GPRMC,1235" + second +
            ",A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n$GPGGA,1235" + second +
            ",4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n$GPGSV,3,1,11,03,03,111,00,04,15\r\n";
    }
    CNmeaReceiver receiver(8);
    QElapsedTimer since;
    since.start();
    for (std::size_t at = 0; at < text.size(); at += 1024) {
        receiver.Receive(std::string_view(text).substr(at, 1024));
    }
    Require(receiver.Fix().Latitude > 48, "the fix");
    return static_cast<double>(text.size()) / 1e6 / (static_cast<double>(since.nsecsElapsed()) / 1e9);
}

}  // namespace

int main(int argc, char** argv) {
    const QTemporaryDir runtime;
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const CBenchFolder folder;
    const std::string project = folder.MakeProject("live.mdb");
    SetWorkFolder(folder.Path("work") + "\\");
    QImage picture(720, 576, QImage::Format_RGB32);
    picture.fill(Qt::gray);
    Require(picture.save(QString::fromStdString(folder.Host("p.jpg").string())), "a picture");

    CLocalLiveChannel channel;
    Require(channel.Claim() == CLiveChannel::Claimed::Yes, "the channel");
    CDrovaneDlg window(channel);
    window.show();
    CChannelClient sender;
    Require(sender.Connect(), "connect");
    LiveRecord record;
    record.Video = "\\v.avi";
    record.Picture = folder.Path("p.jpg");
    record.Texts[4] = "A";
    record.Texts[5] = "B";

    auto& canvas = *window.Item<CCtrlPic>(1011);
    std::vector<double> shown;
    std::vector<double> answered;
    for (int i = 0; i < Records; ++i) {
        record.PictureTime = i;
        Require(sender.Send(LiveFrame::Record, MakeLiveBlock(record)), "send");
        shown.push_back(MillisecondsUntil([&] { return canvas.HasPicture(); }));
        if (i == 0) {
            Require(window.Session().OpenProject(project, [](_TESTING_DATA&) { return true; }), "open");
        }
        _REC_DATA row;
        row.DefectCode = "PL";
        row.Video = record.Video;
        row.AddPicture(record.Picture, record.PictureTime);
        QElapsedTimer since;
        since.start();
        Require(window.Session().Store(row, "x"), "store");
        const double stored = static_cast<double>(since.nsecsElapsed()) / 1e6;
        answered.push_back(stored + MillisecondsUntil([&] {
                               sender.Receive();
                               for (auto frame = sender.Next(); frame; frame = sender.Next()) {
                                   if (frame->Kind == LiveFrame::Answer) {
                                       return true;
                                   }
                               }
                               return false;
                           }));
        canvas.ClearPicture();
    }
    std::printf("| What | Figure | Limit | |\n|---|---|---|---|\n");
    bool allHold = Print("From a record sent to its picture shown, the list flushed between, median of 40",
                         Median(shown), "ms", 100, true);
    allHold = Print("From OK to the answer at the sender, the row flushed between, median of 40",
                    Median(answered), "ms", 50, true) &&
              allHold;
    allHold =
        Print("Text of a receiver, in blocks of 1024", NmeaMegabytesASecond(), "MB/s", 50, false) && allHold;
    return allHold ? 0 : 1;
}
