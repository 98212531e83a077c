// How the commands of the review window look: picture, texts, key and place.
#pragma once

#include <array>

struct ReviewButton {
    int Id;
    const char* Caption;   // where there is no language table
    int Text;              // message of its text; the tip's is TipOffset more
    const char* Bitmap;    // path text
    int Size;              // pixels of the bitmap at 100 %
    const char* Shortcut;  // portable key text
};

inline constexpr int TipOffset = 30;

const ReviewButton& ButtonOf(int id);

// The tool bar from left to right.
inline constexpr int ToolbarLine = -1;
inline constexpr int ToolbarStretch = -2;
inline constexpr std::array ToolbarOrder = {1038,        1024, ToolbarLine,    1082, 1027,
                                            ToolbarLine, 1026, 1025,           1019, 1018,
                                            ToolbarLine, 1081, ToolbarStretch, 1080, 2};

// The window's own texts.
inline constexpr int MessageNoProject = 3050;
inline constexpr int MessageNoSections = 3051;
inline constexpr int MessageChooseSection = 3052;
inline constexpr int MessageNoDefects = 3053;
inline constexpr int MessageNoProjectVideo = 3054;
inline constexpr int MessageChooseVideo = 3055;
inline constexpr int MessageNotBuilt = 3056;
inline constexpr int MessageImportXml = 3057;
inline constexpr int MessageCopying = 3058;
inline constexpr int MessageSortByWells = 3059;
inline constexpr int MessageNoVideo = 3082;
inline constexpr int MessageSonarNotBuilt = 3083;
inline constexpr int MessageNoSonarReport = 3230;
inline constexpr int MessageSectionList = 3080;
inline constexpr int MessageDefectList = 3081;
