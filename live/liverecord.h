// What an acquisition program hands over for each defect that its operator marks. docs/files.md tells the
// block byte by byte.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "store/records/records.h"

struct LiveRecord {
    // Path texts.
    std::string Video;
    std::string Picture;
    double PictureTime = 0;  // seconds
    // Metres.
    float Start = 0;
    float End = 0;
    // Of the section: TaskIndex, TestingDirection, TaskName, Location, StartWell, EndWell, PipeType,
    // PipeMaterial, PipeDiameter, TestingCompany, Tester.
    std::array<std::string, 11> Texts;
};

// Of a block of CLiveChannel::RecordBytes. Numbers that aren't finite count as 0.
LiveRecord ReadLiveRecord(std::string_view block);
// A new section of the record's texts and its video.
_TESTING_DATA SectionOf(const LiveRecord& record);
// The way back, for programs of our own that play an acquisition program. What is too long is cut; a text
// that fills its field has no zero behind it.
std::string MakeLiveBlock(const LiveRecord& record);

// What the sender is told of a record that was stored, in the code page.
std::string LiveAnswer(const _REC_DATA& record, std::string_view defectName);
