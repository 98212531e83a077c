// The values that the rest of the program hands around: a project, its pipe sections, the records of a
// section, the pictures of a record, and the entries of the list of standards. Field names are the
// column names of the database; texts are UTF-8.
//
// A project is one inspection job and one database file. A section is the run of pipe between two
// manholes, inspected by one video. A record is one observation in a section, as a rule a defect, at a
// distance along the pipe and a position on the clock face of its cross section.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "store/records/CRecordArray.h"

// The one row of table `Attrib`, and the file that holds it.
struct _PRO_DATA {
    std::string ProjectPath;  // no column; set by whoever scans or opens
    std::string ProjectName;  // never empty in a stored project
    std::string Comment;
    std::string
        CriterionName;         // display name of the regional standard; a property of the file, never written
    std::string CreateTime;    // YYYY-MM-DD HH:MM:SS, local time
    double GpsX = 0.0;         // longitude, degrees
    double GpsY = 0.0;         // latitude, degrees
    std::string ProjectIndex;  // project number, free text
    std::string Location;
    std::string StandardIndex;  // decimal index in the list of standards at creation; a hint only
};

// One row of table `Testing`. Figures of the pipe are texts, since they are shown and reported as typed;
// who computes with them reads them with ParseDouble, so that what isn't a number counts 0.
struct _TESTING_DATA {
    std::int32_t ID = -1;           // -1: not stored yet
    std::int32_t TestingOrder = 0;  // place in the project's list; given on storing, changed by dragging
    std::string TestingName;
    std::string Comment;
    float DistanceStart = 0.0F;  // metres along the pipe where the inspection starts
    float DistanceEnd = 0.0F;    // metres along the pipe where it ends
    double GpsXStart = 0.0;      // start manhole: longitude, latitude, degrees
    double GpsYStart = 0.0;
    double GpsXEnd = 0.0;  // end manhole: longitude, latitude, degrees
    double GpsYEnd = 0.0;
    std::string VideoFileList;  // full paths, joined by "*"
    std::string CreateTime;     // YYYY-MM-DD HH:MM:SS, local time
    std::string TaskIndex;
    std::string TestingDirection;  // "顺流" or "逆流"
    std::string TaskName;
    std::string Location;
    std::string TestingDate;  // written as YYYY/MM/DD HH:MM:SS, read with "-" too
    std::string StartWell;    // numbers of the manholes
    std::string EndWell;
    std::string PipeType;  // "雨水", "污水" or "雨污合流"
    std::string PipeMaterial;
    std::string DepthStart;
    std::string DepthEnd;
    std::string ManholeDepth;
    std::string PipeLength;       // metres
    std::string DetectionLength;  // metres
    std::string LayingTime;
    std::string EngineeringUnits;
    std::string PipeDiameter;  // millimetres
    std::string TestingCompany;
    std::string Tester;

    std::string FirstVideo() const { return VideoFileList.substr(0, VideoFileList.find('*')); }
    // By which sections are matched across projects and shown: "%s - %s" of both manholes.
    std::string Label() const { return StartWell + " - " + EndWell; }
};

struct _PIC_DATA {
    std::string Picture;           // full path of the image file
    double PicTimeInVideo = -1.0;  // seconds; -1 means none
};

using CPicDataArray = CRecordArray<_PIC_DATA>;

// One row of table `Record`.
struct _REC_DATA {
    std::int32_t ID = 0;
    std::int32_t TestingID = 0;  // of the owning section
    std::string DefectCode;      // code in the criterion, such as "GDZC"
    std::string Comment;
    std::uint8_t DefectLevel = 0;     // grade
    float DistanceStart = 0.0F;       // metres along the pipe where the defect starts
    float DistanceEnd = 0.0F;         // metres along the pipe where it ends
    std::uint8_t DirectionStart = 0;  // hours on the clock face
    std::uint8_t DirectionEnd = 0;
    std::string Video;
    CPicDataArray Pictures;  // the first two are stored
    double GpsX = 0.0;       // longitude, degrees
    double GpsY = 0.0;       // latitude, degrees
    std::string DefectType;  // group of the code in the criterion, "JG", "GN" or "JCJ"; no column
    float Evaluate = 0.0F;   // score of the code at its grade, filled when asked for; no column
    std::string JcjNo;       // manhole number; this and the next four only for group "JCJ"
    std::int32_t JcjType = 0;
    std::int32_t JcjUnderRoad = 0;
    std::int32_t JcjMaterial = 0;
    std::int32_t JcjCoverMaterial = 0;

    std::string GetPicture1() const { return PictureAt(0).Picture; }
    std::string GetPicture2() const { return PictureAt(1).Picture; }
    double GetPicTime1() const { return PictureAt(0).PicTimeInVideo; }
    double GetPicTime2() const { return PictureAt(1).PicTimeInVideo; }

    bool IsJG() const;   // structural defect
    bool IsGN() const;   // functional defect
    bool IsJCJ() const;  // manhole defect
    // The record that says "no defect in this section". Asks DefectType, so that must be filled.
    bool IsPipeNormal() const;

    // Appends the picture; an empty path adds nothing. Whoever reads or makes a picture of a project also copies
    // it for reports: AddPicture of the store does both.
    void AddPicture(std::string_view path, double time);

private:
    _PIC_DATA PictureAt(int index) const;
};

// One entry of the list of standards.
struct _CRITERION_DATA {
    std::string Path;  // of the criterion database
    std::string Name;  // its CriterionName, or a text that says that it can't be read
};

using CProjectDataArray = CRecordArray<_PRO_DATA>;
using CTestingDataArray = CRecordArray<_TESTING_DATA>;
using CRecDataArray = CRecordArray<_REC_DATA>;
using CCriterionDataArray = CRecordArray<_CRITERION_DATA>;

// IDs of chosen sections, in list order, each once.
using CArrID = std::vector<std::uint32_t>;
