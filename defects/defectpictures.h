// The pictures of a defect, at most two, each with a twin that keeps it as it was before anything was drawn.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "store/records/records.h"

// Where the second picture lies if it comes from a file: beside the first, "a_Ex.jpg" for "a.jpg".
std::string SecondPicturePath(std::string_view first);

// Asks for a file and makes a copy of it the record's second picture, with the time of the first. A record
// that has lost its first gets a new one, with the time given here. Messages 2199 and 2702. False if nothing
// was added.
bool AddPictureFromFile(_REC_DATA& record, double firstTime = -1.0);
// The file and its twin; one that can't be deleted is told with message 2105.
void DeletePictureFiles(const std::string& path);
// Brings back the picture as it was. Without a twin nothing happens.
void ResetPicture(const std::string& path);

// A new defect is to be recorded at `seconds` of the video. The record has the frame there as its picture,
// the video, and the position of the section's start. A frame that can't be taken is told with 2195, and the
// record gets the name of the missing file. Nothing if there is no place for pictures.
std::optional<_REC_DATA> TakeDefect(const _TESTING_DATA& section, std::string_view video, double seconds);
// The operator has thought better of it: neither picture nor twin stays.
void DropDefect(std::string_view picture);

// The same for the state of a manhole. There is no twin, and no position; and a manhole can be described
// without a picture, so that a missing place for it is told with 2195 too, and the record has none then.
_REC_DATA TakeManhole(std::string_view video, double seconds);
void DropManhole(std::string_view picture);
