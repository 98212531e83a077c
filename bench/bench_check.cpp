// What a check costs on a project of 2,000 sections and 20,000 records: its rules against the reading of the
// rows, its look into a picture and a video, how late the window's heartbeat comes while it runs; and the
// grade that is told after every change. Prints Markdown tables; exit code 1 if a limit is broken.
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QTimer>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "assessment/explain/explanation.h"
#include "assessment/explain/projectgrades.h"
#include "assessment/standards.h"
#include "bench/CBenchFolder.h"
#include "bench/fillproject.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "check/CCheckRun.h"
#include "check/dialogs/CDlgCheck.h"
#include "shell/dialogs/theme.h"
#include "store/CDbRec.h"
#include "workbench/capture/mediaprobe.h"

namespace {

constexpr int Sections = 2'000;
constexpr int Probes = 40;

void Run(const std::string& command) {
    Require(std::system(command.c_str()) == 0, command.c_str());
}

bool PrintLimit(const char* what, double milliseconds, double limit) {
    std::printf("| %s | %.2f ms | %.0f ms | %s |\n", what, milliseconds, limit,
                milliseconds <= limit ? "holds" : "BROKEN");
    std::fflush(stdout);
    return milliseconds <= limit;
}

void ReadAll(CDbRec& database) {
    CTestingDataArray sections;
    CRecDataArray records;
    Require(database.ReadTestings(sections) && database.LookAtRecords(-1, records, true), "read");
}

void CheckRows(CDbRec& database) {
    CheckOptions options;
    options.Media = CheckOptions::Files::Ignored;
    Require(CheckProject(database, options).has_value(), "check");
}

// The longest time between two beats while the window fills.
double WorstSlip(CDbRec& database) {
    CDlgCheck window(nullptr);
    window.Follow(&database, true);
    double worst = 0.0;
    QElapsedTimer since;
    QTimer heart;
    constexpr int Beat = 20;  // milliseconds
    QObject::connect(&heart, &QTimer::timeout, [&] {
        worst = std::max(worst, static_cast<double>(since.nsecsElapsed()) / 1e6 - Beat);
        since.restart();
    });
    window.Come();
    heart.start(Beat);
    since.start();
    auto* state = window.Item<QLabel>(CDlgCheck::IdState);
    QElapsedTimer patience;
    patience.start();
    const QString checking = state->text();
    while ((state->text() == checking || state->text().contains(';')) && patience.elapsed() < 60000) {
        QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    Require(patience.elapsed() < 60000, "the check ends");
    return worst;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    const CBenchFolder folder;
    std::filesystem::create_directories(folder.Host("job"));
    Run("ffmpeg -v error -y -f lavfi -i testsrc2=size=720x576:rate=25:duration=60 -c:v libx264 -preset "
        "veryfast "
        "-g 12 -pix_fmt yuv420p '" +
        folder.Host("job/v.avi").string() + "'");
    Run("ffmpeg -v error -y -ss 3 -i '" + folder.Host("job/v.avi").string() + "' -frames:v 1 -q:v 3 '" +
        folder.Host("job/p.jpg").string() + "'");
    const std::string path = folder.MakeProject("big.mdb");
    FillProject(path, Sections, folder.Path("job/v.avi"), [&](int) { return folder.Path("job/p.jpg"); });
    CDbRec database;
    Require(database.OpenDatabase(path, CDbPassword), "open");

    std::printf("| What | Against | Time | Peer | Ratio, median (range) | Limit | |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    bool allHold =
        PrintRatio({"Check 2,000 sections, 20,000 records, reading them with it, without files",
                    "reading them", 2.5, 9, [&] { CheckRows(database); }, [&] { ReadAll(database); }});

    std::printf("\n| What | Time | Limit | |\n|---|---|---|---|\n");
    const std::string picture = folder.Host("job/p.jpg").string();
    const std::string video = folder.Host("job/v.avi").string();
    allHold = PrintLimit("Look into a picture of 720x576",
                         MillisecondsOf([&] {
                             for (int i = 0; i < Probes; ++i) {
                                 Require(ProbePicture(picture).State == MediaState::Readable, "picture");
                             }
                         }) / Probes,
                         5.0) &&
              allHold;
    allHold = PrintLimit("Look into a video of 720x576",
                         MillisecondsOf([&] {
                             for (int i = 0; i < Probes; ++i) {
                                 Require(ProbeVideo(video).State == MediaState::Readable, "video");
                             }
                         }) / Probes,
                         20.0) &&
              allHold;
    CTestingDataArray sections;
    Require(database.ReadTestings(sections), "sections");
    _PRO_DATA project;
    Require(database.ReadAttrib(project), "project");
    const ScoringRoute route = FindScoringRoute(project.CriterionName);
    allHold = PrintLimit("Tell the grade of a section, and whether its order matters",
                         MillisecondsOf([&] {
                             for (int i = 0; i < Probes; ++i) {
                                 const auto grade =
                                     ReadGrade(database, route, sections, sections[i].ID, 3.0F, 0.0F);
                                 Require(grade.has_value(), "grade");
                                 (void)ResultByDistance(route, *grade);
                             }
                         }) / Probes,
                         10.0) &&
              allHold;
    allHold = PrintLimit("Worst slip of a heartbeat of 20 ms while the window of the check fills",
                         WorstSlip(database), 50.0) &&
              allHold;
    return allHold ? 0 : 1;
}
