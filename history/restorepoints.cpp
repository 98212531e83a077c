#include "history/restorepoints.h"

#include <sys/stat.h>

#include <algorithm>
#include <map>
#include <tuple>

#include "history/heldpictures.h"
#include "history/journaltables.h"
#include "shell/CClock.h"
#include "shell/CHostFiles.h"
#include "shell/CLateProgress.h"
#include "shell/CPrompts.h"
#include "shell/CSilentPrompts.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"

namespace {

constexpr int MessageNoPoint = 3380;
constexpr int MessageNoDailyPoint = 3381;
constexpr int MessageMakingPoint = 3382;

constexpr const char* NameFormat = "%Y-%m-%d-%H%M%S";
constexpr std::size_t DaySize = 10;  // of such a name
constexpr std::size_t MonthSize = 7;
constexpr std::chrono::days DailyFor{31};

std::string FileNumber(std::string_view project) {
    std::uint32_t number = 0x811C9DC5U;  // FNV-1a
    for (const char letter : HostFiles().HostPath(project)) {
        number = (number ^ static_cast<unsigned char>(letter)) * 0x01000193U;
    }
    std::string text;
    for (int shift = 28; shift >= 0; shift -= 4) {
        text += "0123456789abcdef"[(number >> shift) & 15U];
    }
    return text;
}

// The parts of a point's file name.
struct PointFile {
    std::string Project;  // its name and number: points that share them are of one project
    std::string Journal;
    RestorePoint Point;
};

// The parts are taken from the end, as a project's name may hold anything.
bool ParseName(const std::string& name, PointFile& file) {
    std::vector<std::string> parts;
    std::string rest = GetFileTitle(name);
    for (int i = 0; i < 3; ++i) {
        const std::size_t dot = rest.rfind('.');
        if (dot == std::string::npos) {
            return false;
        }
        parts.push_back(rest.substr(dot + 1));
        rest.resize(dot);
    }
    const auto reason = ParseWholeInt(parts[0]);
    std::string& time = parts[1];
    if (!reason || time.size() != DaySize + 7 || rest.rfind('.') == std::string::npos) {
        return false;
    }
    file.Project = rest;
    file.Journal = parts[2];
    file.Point.Name = time;
    file.Point.Time = time.substr(0, DaySize) + " " + time.substr(11, 2) + ":" + time.substr(13, 2) + ":" +
                      time.substr(15, 2);
    file.Point.Reason = static_cast<int>(*reason);
    file.Point.Path = RestorePointFolder() + name;
    struct stat state {};
    file.Point.Bytes = stat(HostFiles().HostPath(file.Point.Path).c_str(), &state) == 0 ? state.st_size : 0;
    return true;
}

// Newest first.
std::vector<PointFile> ReadFolder() {
    std::vector<PointFile> files;
    for (const std::string& name : HostFiles().ListFiles(RestorePointFolder(), RestorePointEnding)) {
        if (PointFile file; ParseName(name, file)) {
            files.push_back(std::move(file));
        }
    }
    std::sort(files.begin(), files.end(), [](const PointFile& a, const PointFile& b) {
        return std::tie(b.Point.Name, a.Point.Path) < std::tie(a.Point.Name, b.Point.Path);
    });
    return files;
}

std::string ProjectPart(std::string_view project) {
    // The whole name has to fit into 255 bytes.
    constexpr std::size_t longest = 120;
    std::string title = GetFileTitle(project);
    while (title.size() > longest) {
        do {
            title.pop_back();
        } while (!title.empty() && (static_cast<unsigned char>(title.back()) & 0xC0U) == 0x80U);
    }
    return title + "." + FileNumber(project);
}

bool HasRows(CDbBase& database) {
    return !database.ExecuteAsIs("SELECT 1 FROM Testing LIMIT 1").IsEof() ||
           !database.ExecuteAsIs("SELECT 1 FROM Record LIMIT 1").IsEof();
}

void Make(CDbBase& database, std::string_view journal, PointReason reason) {
    (void)HostFiles().MakeFolder(RestorePointFolder());
    const std::string beginning = RestorePointFolder() + ProjectPart(database.Path()) + "." +
                                  std::string(journal.empty() ? "0" : journal) + ".";
    std::string path;
    auto time = Clock().LocalNow();
    do {
        path = beginning + FormatTime(time, NameFormat) + "." + FormatInt(reason) + RestorePointEnding;
        time += std::chrono::seconds(1);
    } while (HostFiles().Exists(path));
    CLateProgress progress(LoadMessage(MessageMakingPoint));
    database.SaveCopy(path, CTemporaryTwin::Existing::Keep,
                      [&](std::int64_t done, std::int64_t total) { progress.At(done, total); });
    ThinRestorePoints();
}

void AddPictures(CDbBase& database, std::set<std::string>& paths) {
    for (const char* const column : {"Picture1", "Picture2"}) {
        for (CDbCursor row = database.ExecuteAsIs(std::string("SELECT ") + column +
                                                  " AS Path FROM Record WHERE " + column + " <> ''");
             !row.IsEof(); row.MoveNext()) {
            paths.insert(LowerCase(row.GetText("Path")));
        }
    }
}

}  // namespace

std::string RestorePointFolder() {
    return GetDbFolder() + "_backup\\";
}

std::vector<RestorePoint> ListRestorePoints(std::string_view project, std::string_view journal) {
    const std::string part = ProjectPart(project);
    std::vector<RestorePoint> points;
    for (PointFile& file : ReadFolder()) {
        if (file.Project == part || (!journal.empty() && file.Journal == journal)) {
            points.push_back(std::move(file.Point));
        }
    }
    return points;
}

bool MakeRestorePoint(CDbRec& database, PointReason reason) {
    std::string why;
    try {
        if (HasRows(database)) {
            Make(database, JournalOf(database), reason);
        }
        return true;
    } catch (const CDbError& error) {
        why = FailureLine(error);
    } catch (const CLateProgress::CStopped&) {
    }
    return Prompts().AskBeforeLoss(MessageNoPoint, LoadMessage(MessageNoPoint) + why);
}

void MakeDailyPoint(CDbBase& database) {
    const std::string today = FormatTime(Clock().LocalNow(), NameFormat).substr(0, DaySize);
    try {
        const std::string journal = JournalOf(database);
        const std::vector<RestorePoint> points = ListRestorePoints(database.Path(), journal);
        const bool made = std::any_of(points.begin(), points.end(), [&](const RestorePoint& point) {
            return point.Name.substr(0, DaySize) == today;
        });
        if (!made && HasRows(database)) {
            Make(database, journal, PointDaily);
        }
    } catch (const CDbError& error) {
        ShowMessage(MessageNoDailyPoint, FailureLine(error));
    } catch (const CLateProgress::CStopped&) {
        // The operator didn't want to wait.
    }
}

void ThinRestorePoints(std::int64_t mostBytes) {
    const auto now = Clock().LocalNow();
    const std::string today = FormatTime(now, NameFormat).substr(0, DaySize);
    const std::string daily = FormatTime(now - DailyFor, NameFormat).substr(0, DaySize);
    std::vector<PointFile> files = ReadFolder();
    std::set<std::string> newest;
    std::set<std::string> goes;
    std::map<std::string, std::string> earliest;  // of a project's day or month
    for (const PointFile& file : files) {
        if (newest.insert(file.Project).second) {
            newest.insert(file.Point.Path);
        }
        const std::string day = file.Point.Name.substr(0, DaySize);
        if (day == today) {
            continue;
        }
        const std::string span = file.Project + "/" + (day >= daily ? day : day.substr(0, MonthSize));
        // An earlier point of the span takes the place of a later one.
        auto [kept, fresh] = earliest.try_emplace(span, file.Point.Path);
        if (!fresh) {
            goes.insert(kept->second);
            kept->second = file.Point.Path;
        }
    }
    std::int64_t bytes = 0;
    for (const PointFile& file : files) {
        const bool keeps = newest.contains(file.Point.Path);
        if (!goes.contains(file.Point.Path)) {
            bytes += file.Point.Bytes;
        }
        if (!keeps && bytes > mostBytes) {
            goes.insert(file.Point.Path);
        }
    }
    for (const std::string& path : goes) {
        if (!newest.contains(path)) {
            (void)HostFiles().DeleteFile(path);
        }
    }
}

RestoredPictures BringBackPictures(CDbRec& database, CDbRec& holder) {
    std::map<std::string, std::pair<std::string, std::string>> held;  // path in lower case: path, held name
    if (holder.IsOpen() && HasTable(holder, "Aux_Picture")) {
        for (CDbCursor row =
                 holder.ExecuteAsIs("SELECT Path, Before, After FROM Aux_Picture ORDER BY Aux_Seq");
             !row.IsEof(); row.MoveNext()) {
            const std::string path = row.GetText("Path");
            for (const char* const slot : {"Before", "After"}) {
                const std::string name = row.GetText(slot);
                if (IsHeldName(name) && HostFiles().Exists(HeldPath(path, name))) {
                    held[LowerCase(path)] = {path, name};
                }
            }
        }
    }
    std::set<std::string> named;
    AddPictures(database, named);
    RestoredPictures result;
    for (const std::string& picture : named) {
        if (HostFiles().Exists(picture)) {
            continue;
        }
        const auto found = held.find(picture);
        const bool back =
            found != held.end() &&
            HostFiles().LinkFile(HeldPath(found->second.first, found->second.second), found->second.first);
        ++(back ? result.BroughtBack : result.Missing);
    }
    return result;
}

RestoredPictures RestoreProject(const RestorePoint& point, CDbRec& project, std::string_view target) {
    CDbRec database;
    if (!database.OpenDatabase(point.Path, CDbPassword, CDbBase::Access::Shared)) {
        throw CDbError("the restore point can't be opened");
    }
    database.SaveCopy(target, CTemporaryTwin::Existing::Keep);
    return BringBackPictures(database, project);
}

RestoredPictures RestoreProject(const RestorePoint& point, std::string_view project,
                                std::string_view target) {
    CDbRec holder;
    {
        CSilentPrompts silent;
        const CSeamScope scope({.Prompts = &silent});
        (void)(HostFiles().Exists(project) &&
               holder.OpenDatabase(project, CDbPassword, CDbBase::Access::Shared));
    }
    return RestoreProject(point, holder, target);
}

bool CPointPictures::Contains(const std::string& path) {
    if (!m_read) {
        m_read = true;
        CSilentPrompts silent;
        const CSeamScope scope({.Prompts = &silent});
        for (const RestorePoint& point : ListRestorePoints(m_project, m_journal)) {
            CDbRec database;
            if (database.OpenDatabase(point.Path, CDbPassword, CDbBase::Access::Shared)) {
                AddPictures(database, m_paths);
            }
        }
    }
    return m_paths.contains(LowerCase(path));
}
