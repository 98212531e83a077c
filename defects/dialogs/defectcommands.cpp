#include "defects/dialogs/defectcommands.h"

#include "defects/dialogs/CDlgEdit.h"
#include "defects/dialogs/CJcjDlg.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/paths.h"
#include "store/CDbRec.h"
#include "store/sectionform.h"

namespace {

constexpr int MessageNoFrame = 2195;

float LengthOf(const _TESTING_DATA& section) {
    return section.DistanceEnd - section.DistanceStart;
}

// Imported sections end at 0 m until their properties were confirmed.
std::function<std::optional<float>()> LengthGiver(CDbRec& database, const _TESTING_DATA& section) {
    const std::optional<_TESTING_DATA> changed = WithPipeLength(section);
    if (!changed) {
        return {};
    }
    return [&database, changed]() -> std::optional<float> {
        return database.UpdateTesting(*changed) ? std::optional(LengthOf(*changed)) : std::nullopt;
    };
}

bool AddFrame(CRecordPictures& pictures, std::string_view video, double seconds, double time,
              CRecordPictures::Twin twin) {
    const CWaitCursor wait;
    return pictures.AddFrame(video, seconds, time, MessageNoFrame, twin);
}

std::string FolderOf(const _TESTING_DATA& section) {
    return GetParentFolder(section.FirstVideo());
}

}  // namespace

bool NewDefect(CDbRec& database, const _TESTING_DATA& section, std::string_view video, double seconds,
               QWidget* parent) {
    CDlgEdit dialog(true, database, section.ID, LengthOf(section), parent);
    dialog.GiveLength = LengthGiver(database, section);
    dialog.Record.Video = video;
    dialog.Record.GpsX = section.GpsXStart;
    dialog.Record.GpsY = section.GpsYStart;
    if (!AddFrame(dialog.Pictures, video, seconds, static_cast<float>(seconds),
                  CRecordPictures::Twin::AtOnce)) {
        return false;
    }
    const bool stored = dialog.DoModal() == CSizeDlg::IdOk;
    if (!stored) {
        dialog.Pictures.TakeBack();
    }
    return stored;
}

bool NewManholeDefect(CDbRec& database, const _TESTING_DATA& section, std::string_view video, double seconds,
                      QWidget* parent) {
    CJcjDlg dialog(database, section.ID, FolderOf(section), true, parent);
    dialog.Record.Video = video;
    // A manhole can be described without a picture.
    if (!AddFrame(dialog.Pictures, video, seconds, seconds, CRecordPictures::Twin::WhenDrawnOn)) {
        ShowMessage(MessageNoFrame);
    }
    const bool stored = dialog.DoModal() == CSizeDlg::IdOk;
    if (!stored) {
        dialog.Pictures.TakeBack();  // what came from a file stays
    }
    return stored;
}

bool EditDefect(CDbRec& database, const _TESTING_DATA& section, const _REC_DATA& record, QWidget* parent) {
    if (record.IsJCJ()) {
        CJcjDlg dialog(database, record.ID, FolderOf(section), false, parent);
        dialog.Record = record;
        (void)dialog.DoModal();
        return false;
    }
    CDlgEdit dialog(false, database, record.ID, LengthOf(section), parent);
    dialog.GiveLength = LengthGiver(database, section);
    dialog.Record = record;
    (void)dialog.DoModal();
    return true;
}
