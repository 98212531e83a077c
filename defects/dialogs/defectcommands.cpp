#include "defects/dialogs/defectcommands.h"

#include "defects/defectpictures.h"
#include "defects/dialogs/CDlgEdit.h"
#include "defects/dialogs/CJcjDlg.h"
#include "shell/paths.h"

namespace {

float LengthOf(const _TESTING_DATA& section) {
    return section.DistanceEnd - section.DistanceStart;
}

std::string FolderOf(const _TESTING_DATA& section) {
    return GetParentFolder(section.FirstVideo());
}

}  // namespace

bool NewDefect(CDbRec& database, const _TESTING_DATA& section, std::string_view video, double seconds,
               QWidget* parent) {
    const auto taken = TakeDefect(section, video, seconds);
    if (!taken) {
        return false;
    }
    CDlgEdit dialog(true, database, section.ID, LengthOf(section), parent);
    dialog.Record = *taken;
    const bool stored = dialog.DoModal() == CSizeDlg::IdOk;
    if (!stored) {
        DropDefect(taken->GetPicture1());
    }
    return stored;
}

bool NewManholeDefect(CDbRec& database, const _TESTING_DATA& section, std::string_view video, double seconds,
                      QWidget* parent) {
    const _REC_DATA taken = TakeManhole(video, seconds);
    CJcjDlg dialog(database, section.ID, FolderOf(section), true, parent);
    dialog.Record = taken;
    const bool stored = dialog.DoModal() == CSizeDlg::IdOk;
    if (!stored) {
        DropManhole(taken.GetPicture1());
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
    dialog.Record = record;
    (void)dialog.DoModal();
    return true;
}
