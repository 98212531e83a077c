// A project that has one of everything that a report treats in its own way.
#pragma once

#include <string>

#include "reports/CRecExport.h"
#include "tests/support/CTestFolder.h"

// Sections 1 to 5 and records 1 to 8; section 1 is the one that nobody chooses.
class CReportProject {
public:
    CReportProject(CTestFolder& folder, const char* standard) {
        Database.OpenDatabase(folder.MakeProject("p.mdb", standard), CDbPassword);
        FillProject();
        FillSections();
        FillRecords();
    }

    CRecExport Database;
    CArrID Chosen = {2, 3, 4, 5};

private:
    struct Defect {
        std::int32_t Section;
        const char* Code;
        std::uint8_t Grade;
        float Start;
        float End;
        std::uint8_t From;
        std::uint8_t To;
        const char* Comment = "";
        const char* Picture1 = "";
        const char* Picture2 = "";
        double Time1 = 0.0;
        double Time2 = 0.0;
    };

    void FillProject() {
        _PRO_DATA project;
        project.ProjectName = "工程<1> \"A&B\" 'x'";
        project.Comment = "A&#x41;\n第二行";
        project.ProjectIndex = "GC-7";
        project.Location = "重庆😀";
        project.GpsX = 113.99;
        project.GpsY = -23.5;
        EXPECT_TRUE(Database.WriteAttrib(project, true));
    }

    void FillSections() {
        _TESTING_DATA section;
        section.TestingName = "零号";
        section.StartWell = "W0";
        section.EndWell = "W1";
        section.PipeLength = "1000";
        section.TestingDate = "2026/03/14 09:26:53";
        section.TestingCompany = "甲公司";
        section.Tester = "张三";
        EXPECT_TRUE(Database.AddTesting(section));

        section = _TESTING_DATA();
        section.TestingName = "一号";
        section.StartWell = "W1";
        section.EndWell = "W2";
        section.PipeDiameter = "800";
        section.PipeMaterial = "混凝土管";
        section.PipeLength = "50.5";
        section.DistanceStart = 0.5F;
        section.VideoFileList = "\\v\\一.avi*\\v\\x.avi";
        section.TestingDate = "2026/03/15 10:00:00";
        section.TestingCompany = "乙公司";
        section.Tester = "李四";
        section.PipeType = "雨水";
        section.DepthStart = "1.2";
        section.DepthEnd = "1.4";
        section.TestingDirection = "顺流";
        section.LayingTime = "2001";
        section.Location = "望川路";
        EXPECT_TRUE(Database.AddTesting(section));

        section = _TESTING_DATA();
        section.TestingName = "一号复测";
        section.StartWell = "W1";
        section.EndWell = "W2";
        section.PipeMaterial = "PVC";
        section.PipeLength = "49";
        section.DetectionLength = "48.9";
        section.TestingDate = "2026-03-16";
        EXPECT_TRUE(Database.AddTesting(section));

        section = _TESTING_DATA();
        section.TestingName = "三号";
        section.StartWell = "W3";
        section.EndWell = "W4";
        section.PipeDiameter = "1000";
        section.PipeMaterial = "铸铁";
        section.PipeLength = "20.75";
        section.DetectionLength = "20";
        EXPECT_TRUE(Database.AddTesting(section));

        section = _TESTING_DATA();
        section.TestingName = "五号";
        section.StartWell = "W5";
        section.EndWell = "W6";
        section.PipeDiameter = "600";
        section.PipeLength = "30";
        section.DetectionLength = "30";
        EXPECT_TRUE(Database.AddTesting(section));
    }

    void FillRecords() {
        Add({1, "PL", 1, 1, 1, 0, 0});
        Add({2, "PL", 2, 1.234F, 1.239F, 3, 9, "渗水", "\\pic\\a.jpg", "\\pic\\b.jpg", 12.9, 20.2});
        Add({5, "GDZC", 1, 0, 30, 0, 0, "无缺陷"});
        Add({3, "CJ", 1, 10, 10, 6, 6, "<泥>", "\\pic\\c.jpg", "", 3.7});
        Add({3, "ZW", 3, 2, 4.5F, 5, 7});
        _REC_DATA manhole;
        manhole.JcjNo = "H1";
        manhole.JcjType = 1;
        manhole.JcjUnderRoad = 1;
        manhole.JcjMaterial = 2;
        Add({4, "JCJ_JGKTCHAX", 0, 0, 0, 0, 0, "下沉", "\\pic\\m.jpg"}, manhole);
        Add({2, "bx", 4, 20, 21, 10, 2});
        Add({3, "XX", 1, 7, 7.4F, 0, 12});
    }

    void Add(const Defect& defect, _REC_DATA record = {}) {
        record.TestingID = defect.Section;
        record.DefectCode = defect.Code;
        record.DefectType = Database.GetDefectType(defect.Code);
        record.DefectLevel = defect.Grade;
        record.DistanceStart = defect.Start;
        record.DistanceEnd = defect.End;
        record.DirectionStart = defect.From;
        record.DirectionEnd = defect.To;
        record.Comment = defect.Comment;
        record.GpsX = defect.Time2 > 0.0 ? 113.99 : 0.0;
        record.GpsY = defect.Time2 > 0.0 ? -22.5 : 0.0;
        record.AddPicture(defect.Picture1, defect.Time1);
        record.AddPicture(defect.Picture2, defect.Time2);
        EXPECT_TRUE(Database.AddRecord(record));
    }
};
