// A project in which a check finds nothing: three sections in a row, each with its video and two defects with
// their pictures.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "check/CCheckRun.h"
#include "check/rules.h"
#include "history/CJournal.h"
#include "store/CDbRec.h"
#include "tests/support/CTestFolder.h"
#include "tests/workbench/numberedvideo.h"
#include "workbench/capture/grabframe.h"

class CCheckTest : public testing::Test {
protected:
    static constexpr int SectionCount = 3;
    static constexpr int RecordsEach = 2;

    CCheckTest() {
        MakeVideo("v", "-c:v mpeg4 -q:v 3 -g 12");
        for (int section = 1; section <= SectionCount; ++section) {
            std::filesystem::create_directories(Folder.Host(FolderOf(section)));
            std::filesystem::copy_file(Folder.Host("v.avi"), Folder.Host(FolderOf(section) + "v.avi"));
            for (int record = 1; record <= RecordsEach; ++record) {
                EXPECT_TRUE(GrabFrame(Folder.Path("v.avi"), TimeOf(section, record),
                                      Folder.Path(PictureOf(section, record))));
            }
        }
        MakeVideo("black", "-vf drawbox=t=fill:color=black -c:v mpeg4");
        MakeVideo("blurred", "-vf gblur=sigma=25 -c:v mpeg4 -q:v 2");
    }

    static std::string FolderOf(int section) { return "job/" + std::to_string(section) + "/"; }
    static std::string PictureOf(int section, int record) {
        return FolderOf(section) + "p" + std::to_string(section) + std::to_string(record) + ".jpg";
    }
    static double TimeOf(int section, int record) { return 0.4 * section + 2.0 * record; }

    // "GB", "GZ", "SH" or "CQ".
    std::string MakeCleanProject(const std::string& name, const std::string& standard) {
        std::string path = Folder.MakeProject(name, standard);
        CDbRec database;
        EXPECT_TRUE(database.OpenDatabase(path, CDbPassword));
        _PRO_DATA project;
        EXPECT_TRUE(database.ReadAttrib(project));
        project.ProjectName = "幸福路";
        project.ProjectIndex = "2026-01";
        project.Location = "青禾街";
        EXPECT_TRUE(database.WriteAttrib(project, true));
        for (int i = 1; i <= SectionCount; ++i) {
            EXPECT_TRUE(database.AddTesting(MakeSection(i)));
            for (int record = 1; record <= RecordsEach; ++record) {
                EXPECT_TRUE(database.AddRecord(MakeRecord(database, i, record)));
            }
        }
        return path;
    }

    std::vector<CheckFinding> Find(CDbRec& database,
                                   CheckOptions::Files media = CheckOptions::Files::Opened) {
        CheckOptions options;
        options.K = 3.0F;
        options.T = 0.0F;
        options.Media = media;
        options.Memory = m_memory;
        return CheckProject(database, options).value();
    }
    static std::vector<int> RulesOf(const std::vector<CheckFinding>& findings) {
        std::vector<int> rules;
        for (const CheckFinding& finding : findings) {
            rules.push_back(finding.Rule);
        }
        std::sort(rules.begin(), rules.end());
        return rules;
    }
    static std::string Text(const std::vector<CheckFinding>& findings) {
        std::string text;
        for (const CheckFinding& finding : findings) {
            text += std::to_string(finding.Rule) + " " + FindingText(finding) + "\n";
        }
        return text;
    }

    void MakeVideo(const std::string& name, const std::string& options) {
        ASSERT_TRUE(MakeNumberedVideo(
            {.Name = name, .Ending = ".avi", .Options = options, .Width = 360, .Height = 288, .Frames = 200},
            Folder.Host(name + ".avi")));
    }

    CTestFolder Folder;
    CJournals Journals;
    CChangeWatchesScope Scope{Journals};

private:
    _TESTING_DATA MakeSection(int number) const {
        const std::string wells = "ABCD";
        _TESTING_DATA section;
        section.TestingName = "段" + std::to_string(number);
        section.StartWell = wells.substr(static_cast<std::size_t>(number) - 1, 1);
        section.EndWell = wells.substr(static_cast<std::size_t>(number), 1);
        section.VideoFileList = Folder.Path(FolderOf(number) + "v.avi");
        section.PipeLength = section.DetectionLength = "30.0";
        section.PipeDiameter = "400";
        section.PipeType = "污水";
        section.PipeMaterial = "混凝土管";
        section.TestingDirection = "顺流";
        section.TestingDate = "2026/03/0" + std::to_string(number) + " 08:30:00";
        section.Location = "青禾街";
        section.TestingCompany = "澄渠";
        section.Tester = "陆听禾";
        section.DepthStart = section.DepthEnd = "2.0";
        section.DistanceEnd = 30.0F;
        section.GpsXStart = 118.32 + 0.00031 * (number - 1);  // 30 m from one to the next
        section.GpsXEnd = 118.32 + 0.00031 * number;
        section.GpsYStart = section.GpsYEnd = 29.71;
        return section;
    }
    _REC_DATA MakeRecord(CDbRec& database, int section, int number) const {
        _REC_DATA record;
        record.TestingID = section;
        record.DefectCode = "PL";
        record.DefectType = database.GetDefectType("PL");
        record.DefectLevel = static_cast<decltype(record.DefectLevel)>(number);
        std::vector<std::string> texts;
        EXPECT_TRUE(database.LoadDefectLevels("PL", &texts, nullptr));
        record.Comment = texts.at(static_cast<std::size_t>(number) - 1);
        record.DistanceStart = record.DistanceEnd = static_cast<float>(8 * number);
        record.DirectionStart = 3;
        record.Video = Folder.Path(FolderOf(section) + "v.avi");
        record.AddPicture(Folder.Path(PictureOf(section, number)), TimeOf(section, number));
        return record;
    }

    std::shared_ptr<CMediaMemory> m_memory = std::make_shared<CMediaMemory>();
};
