// The project catalogue. There is no catalogue file: the folder `db` is the catalogue, and every listing
// opens every database in it. Nothing here holds a database open.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/CDbBase.h"
#include "store/records/records.h"

// What the project list shows of one project.
struct ProjectRow {
    std::string ProjectName;
    std::string CriterionName;
    std::int32_t RecordCount = 0;
    std::string CreateTime;
    std::string OwnPath;  // of the file that this row was read from
};

// Rows and projects run parallel by index. A file that can't be read has its element in the array, but
// no row: every row behind it stands for the element before its own. What a row opens stays the same so,
// whatever becomes of the files before it; the list warns, and deleting asks for both.
struct ProjectListing {
    CProjectDataArray Projects;
    std::vector<ProjectRow> Rows;
};

// All projects of the folder, by file name, without the one at `excludedPath` (it is open). Files that
// can't be read show their messages.
void FillProjects(std::string_view folder, std::string_view excludedPath, ProjectListing& listing);
bool AddProjectRow(std::string_view path, ProjectListing& listing);

// The standards offered for new projects, by file name; an unreadable one is offered with the text of
// message 2004 as its name.
void LoadCriterionList(CCriterionDataArray& list, std::string_view folder, std::string_view password);

// What the operator types of a project.
struct ProjectProperties {
    std::string ProjectName;
    std::string Comment;
    std::string ProjectIndex;
    std::string Location;
};

// Whether both choices of the properties window allow going on.
bool CanSaveProject(const ProjectProperties& properties, int criterionIndex,
                    const CCriterionDataArray& criteria);

// In the folder of projects, named for the present time or the first later second whose name is free.
std::string FreeProjectPath();

// Copies the chosen criterion file to a name made from the present time, the first later second whose
// name is free, and gives the copy its identity. Returns its path; empty on failure (message 2203 with
// the path, or that of the database operation, after which the copy stays behind).
std::string CreateProject(const ProjectProperties& properties, int criterionIndex,
                          const CCriterionDataArray& criteria);

// What lies at a path, for whoever is about to replace it.
enum class DatabaseKind {
    None,      // nothing, or a file of another kind
    Standard,  // without a project's name and sections
    Project,
    Unreadable,  // by its name a database, but it can't be read
    InUse        // another process, or this one, has it open
};
// Shows nothing and changes nothing.
DatabaseKind KindOfDatabase(std::string_view path);

// Always moves the creation time to now.
bool WriteNewAttrib(std::string_view path, const ProjectProperties& properties,
                    std::string_view standardIndex, CDbBase::Access access = CDbBase::Access::Exclusive);

// Asks with message 2204, naming the project, its file and how many sections it has; `shown` is the row that
// the operator chose, which behind an unreadable file stands for another project: then both are named. Puts a
// copy into the desktop's trash (and asks again, 3411, if that fails), empties the project, removes its file
// and its side folder. The first section that can't be deleted ends it, as does a file that can't be removed
// (2205): the project is as before then.
bool DeleteProject(std::string_view path, const ProjectRow* shown = nullptr);

// The files of the listing that can't be read, as path texts.
std::vector<std::string> UnreadableFiles(const ProjectListing& listing);
// Moves them into "unreadable\" in their folder, each under a free name, so that every row stands for its
// project again. A file that another program holds stays: it may be read as soon as that one is done. Tells
// with 3414 which had to stay. True if all went.
bool SetAside(const std::vector<std::string>& paths);
