// Texts made from records that windows and reports share.
#pragma once

#include <string>
#include <string_view>

class CDbRec;

// Of a code in the criterion; the code itself if it has no name.
std::string DefectName(const CDbRec& database, std::string_view code);

// As minutes and seconds. A negative time counts as the unsigned number that its bits make, so that a
// record without a picture, whose time is -1, shows 71582788:15, which no video reaches.
std::string PictureTimeText(double seconds);
