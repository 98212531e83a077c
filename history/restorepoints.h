// Restore points: whole copies of a project's rows, made before changes that touch many of them and once a
// day before the first. They lie in "_backup" in the folder of projects, under names that no listing takes
// for a project:
//
//   <name of the project file>.<which file>.<its journal>.<time>.<reason>.point
//
// Which file is told by a number made from its path, so that the points of a project are found also when the
// project is gone. Pictures aren't in them; what a point names isn't deleted from where it is held.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

class CDbBase;
class CDbRec;

inline constexpr const char* RestorePointEnding = ".point";

// The language messages that tell why a point was made.
enum PointReason : int {
    PointDaily = 3375,
    PointImport = 3376,
    PointBulkEdit = 3377,
    PointMend = 3378,
    PointRestore = 3379,
};

struct RestorePoint {
    std::string Path;  // path text
    std::string Name;  // its time, "2026-11-24-101530", by which it is called
    std::string Time;  // "2026-11-24 10:15:30", local
    int Reason = 0;
    std::int64_t Bytes = 0;
};

std::string RestorePointFolder();
// Of the project at this path, newest first; those that a file of another path had are among them if
// `journal` is theirs.
std::vector<RestorePoint> ListRestorePoints(std::string_view project, std::string_view journal = {});

// Makes one, and thins those that are there. Nothing is made of a project without rows. False if it can't be
// made; asks then with message 3380, telling why, whether to go on without: true if so.
bool MakeRestorePoint(CDbRec& database, PointReason reason);
// The day's first change is about to come: makes one unless today's is there. Tells once a day with message
// 3381 if it can't.
void MakeDailyPoint(CDbBase& database);

// All of today, one a day for a month, one a month; of all projects together not more than so many bytes, but
// each keeps its newest.
inline constexpr std::int64_t MostPointBytes = std::int64_t{2} << 30;
void ThinRestorePoints(std::int64_t mostBytes = MostPointBytes);

// What a restored project needs beside its rows.
struct RestoredPictures {
    int BroughtBack = 0;  // from where they were held
    int Missing = 0;      // files that records name, and nobody has
};
// Makes a new project of a point; a file at `target` is an error. `project` is the one that it was made of,
// whose held pictures come back to their places if they are missing there; it needn't exist any more. Throws
// CDbError.
RestoredPictures RestoreProject(const RestorePoint& point, std::string_view project, std::string_view target);
// The same for a project that is open.
RestoredPictures RestoreProject(const RestorePoint& point, CDbRec& project, std::string_view target);
// Puts pictures that records of the open project name, and that aren't there, back from where they are held.
RestoredPictures BringBackPictures(CDbRec& database, CDbRec& holder);

// The pictures that the points of a project name. Read when first asked.
class CPointPictures {
public:
    CPointPictures(std::string_view project, std::string_view journal)
        : m_project(project), m_journal(journal) {}
    bool Contains(const std::string& path);

private:
    std::string m_project;
    std::string m_journal;
    bool m_read = false;
    std::set<std::string> m_paths;  // lower case
};
