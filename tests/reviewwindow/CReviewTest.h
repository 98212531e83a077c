// A review window on a project with three sections, of which the second has a video and two defects.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "controls/CWMPPlayer4.h"
#include "lists/CDefectList.h"
#include "lists/CTestingList.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "store/CDbRec.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/windows.h"
#include "tests/workbench/numberedvideo.h"
#include "workbench/dialogs/CDlgProAtrrib.h"

inline constexpr int Sections = 1031;
inline constexpr int Defects = 1032;
inline constexpr int Player = 1034;

class CReviewTest : public testing::Test {
protected:
    CReviewTest() {
        EXPECT_TRUE(HostFiles().SetCurrentFolder(GetAppFolder()));
        Folder.WriteFile("job/Y1-Y2.avi", "");
        EXPECT_TRUE(MakeNumberedVideo({.Name = "v",
                                       .Ending = ".avi",
                                       .Options = "-c:v mpeg4 -q:v 3 -g 12",
                                       .Width = 360,
                                       .Height = 288,
                                       .Frames = 150},
                                      Folder.Host("job/Y1-Y2.avi")));
        Project = Folder.MakeProject();
        CDbRec database;
        EXPECT_TRUE(database.OpenDatabase(Project, CDbPassword));
        _PRO_DATA attributes;
        attributes.ProjectName = "幸福路";
        EXPECT_TRUE(database.WriteAttrib(attributes, true));
        AddSection(database, "Y10", "Y11", Folder.Path("job/gone.avi"));
        AddSection(database, "Y1", "Y2", Folder.Path("job/Y1-Y2.avi"));
        AddSection(database, "Y2", "Y10", Folder.WriteFile("job/text.avi", "no video at all"));
        AddRecord(database, 2, 0.4);
        AddRecord(database, 2, 3.08);
    }

    static void AddSection(CDbRec& database, const std::string& start, const std::string& end,
                           const std::string& video) {
        _TESTING_DATA section;
        section.TestingName = "段";
        section.StartWell = start;
        section.EndWell = end;
        section.VideoFileList = video;
        section.PipeLength = "30.0";
        section.PipeDiameter = "400";
        section.DistanceEnd = 30.0F;
        EXPECT_TRUE(database.AddTesting(section));
    }
    void AddRecord(CDbRec& database, int sectionId, double time) {
        _REC_DATA record;
        record.TestingID = sectionId;
        record.DefectCode = "PL";
        record.DefectLevel = 2;
        record.Video = Folder.Path("job/Y1-Y2.avi");
        const std::string name = "job/picture/" + std::to_string(static_cast<int>(time)) + ".jpg";
        record.AddPicture(Folder.WriteFile(name, "jpeg"), time);
        EXPECT_TRUE(database.AddRecord(record));
    }

    // Opens the project as an operator does.
    void Open(CDlgProAtrrib& window) {
        window.show();
        InNextDialog([](CSizeDlg& dialog) {
            Photograph(dialog, "projects");
            Press(dialog, CSizeDlg::IdOk);
        });
        Press(window, 1038);
        EXPECT_TRUE(AllDialogsCame());
        WaitFor(50);
    }
    static CTestingList& List(CDlgProAtrrib& window) { return *window.Item<CTestingList>(Sections); }
    static CDefectList& DefectsOf(CDlgProAtrrib& window) { return *window.Item<CDefectList>(Defects); }
    static CWMPPlayer4& PlayerOf(CDlgProAtrrib& window) { return *window.Item<CWMPPlayer4>(Player); }

    CTestFolder Folder;
    std::string Project;
};
