// Changes of stored records with their pictures.
#pragma once

#include <string_view>

#include "store/records/records.h"

class CDbRec;
class CRecordPictures;

// What tells that the picture of a new defect could not be taken.
inline constexpr int MessageNoFrame = 2195;

// In metres; 0 for imported sections until their properties were confirmed.
float LengthOf(const _TESTING_DATA& section);
// A new record stands at the section's start until its position is worked out.
void StandIn(const _TESTING_DATA& section, _REC_DATA& record);
// Adds or updates the record with what was made of pictures for it. If it can't be stored, which has told its
// message, the history forgets them again; they stay on the disk.
enum class Storing { New, Changed };
bool StoreRecord(CDbRec& database, const _REC_DATA& record, const CRecordPictures& pictures, Storing storing);

// Deletes the row, then its picture files; one that can't be deleted is told with message 2105. The originals
// and the copies for reports stay. False, with the files untouched, if the row can't be deleted.
bool DeleteDefect(CDbRec& database, const _REC_DATA& record);

// Takes the frame of `video` at `seconds` as the record's second picture and stores the record. Asks with
// message 2200. True if the record was stored; a frame that can't be taken is told with 2201, and the record
// gets the name of the missing file.
bool AddSecondPicture(CDbRec& database, _REC_DATA record, std::string_view defectName, std::string_view video,
                      double seconds);
