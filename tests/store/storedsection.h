// A section as a project of some years ago holds it.
#pragma once

#include "store/records/records.h"

inline _TESTING_DATA StoredSection() {
    _TESTING_DATA section;
    section.ID = 7;
    section.TestingOrder = 3;
    section.TestingName = "段";
    section.Comment = "kept";
    section.GpsXStart = 121.4737021;
    section.GpsYStart = 31.2;
    section.GpsXEnd = -121.5;
    section.GpsYEnd = -90;
    section.VideoFileList = "\\v\\W1-W2.avi*\\v\\more.avi";
    section.TestingDirection = "上游";
    section.TestingDate = "2021-3-5 8:07:09";
    section.StartWell = "W1";
    section.EndWell = "W2";
    section.DepthStart = "1.5";
    section.PipeLength = "12.3";
    section.LayingTime = "1990";
    section.PipeDiameter = "300mm";
    return section;
}
