// Reader of the XML description that a field acquisition unit leaves in the folder of an inspected
// section, beside the video and the pictures.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "shell/CLineSink.h"

// Longer descriptions are refused: a section with ten thousand defects takes less, and the parsed form of
// a hostile file is up to thirty times as long as the file.
inline constexpr std::size_t MaxAcquisitionBytes = std::size_t{16} << 20;

// All fields are texts as they stand in the description. What the code page lacks is "?".
struct AcquisitionHeader {
    std::string Name;
    std::string GenTime;                // date and time of the inspection
    std::string VideoFileName;          // full path
    std::array<std::string, 18> Osd{};  // overlay texts osd1 to osd18, from index 0
};

// One defect.
struct AcquisitionItem {
    std::string Index;
    std::string Name;
    std::string Code;
    std::string FullName;
    std::string Dist;  // metres along the pipe where the defect starts
    std::string Len;   // metres that it goes on
    std::string Longitude;
    std::string Latitude;
    std::string Type;
    std::string ClockStart;  // the first hour of attribute `time`
    std::string ClockEnd;    // the second one, "0" if there is none
    std::string Level;
    std::string CodeId;
    std::string ItemId;
    std::string GenTime;
    std::string PicFileName;  // full path
    std::string PicTime;      // second of the video
    std::string PicFileName2;
    std::string PicTime2;
    std::string Desc;
};

// `folder` is the description's, without the trailing "\". True if the whole description was read. Whatever
// is missing gives a line, also what may be missing; a description without something required ends there.
bool ReadAcquisitionXml(std::string_view folder, std::string_view path, AcquisitionHeader& header,
                        std::vector<AcquisitionItem>& items, const CLineSink& sink);
