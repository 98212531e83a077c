#include "defects/recordchanges.h"

#include "defects/CRecordPictures.h"
#include "defects/picturesteps.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/language.h"
#include "shell/seams.h"
#include "store/CDbRec.h"
#include "store/stepnames.h"

namespace {

constexpr int MostPictures = 2;

void DeletePicture(const std::string& path) {
    if (!path.empty() && !HostFiles().DeleteFile(path) && HostFiles().Exists(path)) {
        ShowMessage(2105, "\r\n" + path);
    }
}

bool AskForSecondPicture(std::string_view defectName) {
    return Prompts().AskOkCancel(2200, FillText(LoadMessage(2200), {std::string(defectName)}));
}

}  // namespace

float LengthOf(const _TESTING_DATA& section) {
    return section.DistanceEnd - section.DistanceStart;
}

void StandIn(const _TESTING_DATA& section, _REC_DATA& record) {
    record.GpsX = section.GpsXStart;
    record.GpsY = section.GpsYStart;
}

bool StoreRecord(CDbRec& database, const _REC_DATA& record, const CRecordPictures& pictures,
                 Storing storing) {
    NoteMadeForUndo(database, pictures.Made());
    if (storing == Storing::New ? database.AddRecord(record) : database.UpdateRecord(record)) {
        return true;
    }
    DropKept(database);
    return false;
}

bool DeleteDefect(CDbRec& database, const _REC_DATA& record) {
    const CDbStep step(database, StepDeleteRecord);
    // The originals stay, so there is nothing to keep of them.
    if (!KeepForUndo(database, {record.GetPicture1(), record.GetPicture2()}, KeptTwins::No)) {
        return false;
    }
    if (!database.DeleteRecord(record.ID)) {
        DropKept(database);
        return false;
    }
    DeletePicture(record.GetPicture1());
    DeletePicture(record.GetPicture2());
    return true;
}

bool AddSecondPicture(CDbRec& database, _REC_DATA record, std::string_view defectName, std::string_view video,
                      double seconds) {
    const CDbStep step(database, StepAddPicture);
    if (record.Pictures.GetSize() >= MostPictures) {
        ShowMessage(2199);
        return false;
    }
    if (!AskForSecondPicture(defectName)) {
        return false;
    }
    CRecordPictures pictures(record);
    if (!pictures.AddFrame(video, seconds, seconds, 2201, CRecordPictures::Twin::AtOnce)) {
        return false;
    }
    const bool stored = StoreRecord(database, record, pictures, Storing::Changed);
    if (!stored) {
        pictures.TakeBack();
    }
    return stored;
}
