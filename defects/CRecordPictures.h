// The pictures of one record on the disk, from the frame or file that becomes one to its deletion. A record
// has at most two. What was drawn on ends as pixels of the picture's file, so the first version of each is
// kept as a twin beside it ("a_original.jpg") before that happens.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/records/records.h"

class CRecordPictures {
public:
    // Works on the record, which must outlive it.
    explicit CRecordPictures(_REC_DATA& record) : m_record(record) {}

    enum class Twin { AtOnce, WhenDrawnOn };

    // The frame of the video at `seconds` becomes the record's next picture, with `time`. Where it can't be
    // taken message `failure` tells the video, and the record gets the name of the missing file; beside a
    // video that isn't there nothing is made. False, with the record as it was, if there is no place for
    // pictures.
    bool AddFrame(std::string_view video, double seconds, double time, int failure, Twin twin);
    // Asks for a file and makes a copy of it the second picture, with the time of the first. A record that
    // has lost its first gets a new one, with the time given here. Messages 2199 and 2702. False if nothing
    // was added.
    bool AddFile(double firstTime = -1.0);
    // Asks for a file and copies it into "picture\" in `folder`, named for the present time, or the next
    // second that is free. The folder of the record's video stands in for a `folder` that isn't absolute, as
    // of a section without a video; if that isn't either, and if the copy fails, there is message 2702. False
    // if nothing was added.
    bool AddManholeFile(std::string_view folder);
    // The picture leaves record and disk at once, without a question. A file that can't be deleted is told
    // with message 2105.
    void RemoveManholeFile(int index);

    // A new record was cancelled or could not be stored: what AddFrame and AddFile made goes, with its twins.
    // Files that were there before stay.
    void TakeBack();
    // Takes over what was made by a window that ended with a crash.
    void Adopt(std::vector<std::string> made) { m_made = std::move(made); }
    // The files that AddFrame, AddFile and AddManholeFile made, whether or not they are still there.
    std::vector<std::string> Made() const;

private:
    const std::string& Make(std::string path);
    bool Names(std::string_view path) const;

    _REC_DATA& m_record;
    std::vector<std::string> m_made;
    std::vector<std::string> m_copies;  // of AddManholeFile, which a cancelled form leaves where they are
};

// Where the second picture lies if it comes from a file: beside the first, "a_Ex.jpg" for "a.jpg".
std::string SecondPicturePath(std::string_view first);

// Before a picture is drawn on: keeps its first version unless there is a twin already. False, after a
// message that names the reason, if that can't be done: nobody may draw on the only original then.
bool KeepOriginal(std::string_view path);
// Brings back the picture as it was. That there is no twin, or that it can't be copied, is told.
bool ResetPicture(std::string_view path);
// The file and its twin; one that can't be deleted is told with message 2105.
void DeletePictureFiles(std::string_view path);
