// The sonar data of a project: a profile of the silt along one of its sections, measured by a sonar device.
// A project has at most one set. It lies in a folder beside the project file, which holds the device's
// description as it came ("sn.xml") and the section that it belongs to ("test_id.ini").
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class CDbRec;

inline constexpr const char* SonarXmlName = "sn.xml";
inline constexpr const char* SonarIniName = "test_id.ini";
// Section and key of the profile.
inline constexpr const char* SonarIniKey = "test_id";

// Longer descriptions aren't read: one of a kilometre with a cross-section each centimetre takes less.
inline constexpr std::size_t MaxSonarBytes = std::size_t{32} << 20;

// One cross-section.
struct PipeItem {
    std::int32_t CurRadius = 0;
    std::int32_t CurSiltDepth = 0;
    float Meter = 0;             // metres along the pipe
    std::int32_t PipeWidth = 0;  // millimetres
    std::int32_t SiltDepth = 0;  // millimetres
    float SiltDepthPer = 0;      // share of the pipe's width
};

struct SonarData {
    std::vector<PipeItem> PipeItems;  // as they stand in the file
    // The summary that the device makes, carried as it is.
    std::array<std::pair<std::string, std::string>, 5> SiltItems;
    std::string cfginfo;
    std::string videofilename;
    std::string dixmlfilename;  // the acquisition description in the same folder
    // Paths, of the records of the section; only LoadSonarData fills it.
    std::vector<std::string> Pictures;
};

// With its trailing "\"; each ".mdb" of the path becomes "_sn". Empty for a project whose name doesn't end in
// ".mdb": by that rule its folder would be the file itself.
std::string SonarFolder(std::string_view projectPath);
// The same without the trailing "\" if it is there and may be removed: not a link, and not one that belongs
// to a project of nearly the same name. Else empty.
std::string OwnSonarFolder(std::string_view projectPath);

// `path` is a path text. What can't be read as XML gives an empty structure. The texts of the file are bytes
// of the code page, whatever its declaration says; an attribute that is missing counts as 0 or empty. Silent.
void ReadSonarXml(std::string_view path, SonarData& data);

// True if the project holds sonar data. Boxes: those of ReadRecords. Without an open project false, silently.
bool LoadSonarData(CDbRec& database, SonarData& data);
