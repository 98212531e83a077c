#include "defects/dialogs/defectcommands.h"

#include <algorithm>
#include <utility>

#include "defects/dialogs/CDlgEdit.h"
#include "defects/dialogs/CJcjDlg.h"
#include "defects/dialogs/draftpictures.h"
#include "defects/recordchanges.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/paths.h"
#include "store/CDbRec.h"
#include "store/sectionform.h"

namespace {

constexpr int MessageDraftWithout = 3473;

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

namespace {

FormDraft DraftOf(const char* kind, CDbRec& database, std::int32_t section, std::int32_t record) {
    FormDraft draft;
    draft.Kind = kind;
    draft.Project = database.Path();
    draft.Section = section;
    draft.Record = record;
    return draft;
}

// A window on a new record that leaves nothing behind if it is cancelled.
template <class Dialog>
bool RunNew(Dialog& dialog) {
    const bool stored = dialog.DoModal() == CSizeDlg::IdOk;
    if (!stored) {
        dialog.Pictures.TakeBack();  // of a manhole, what came from a file stays
    }
    return stored;
}

}  // namespace

bool NewDefect(CDbRec& database, const _TESTING_DATA& section, std::string_view video, double seconds,
               QWidget* parent, const _REC_DATA& filled) {
    CDlgEdit dialog(true, database, section.ID, LengthOf(section), parent);
    dialog.Record = filled;
    dialog.GiveLength = LengthGiver(database, section);
    dialog.Draft = DraftOf(DefectDraft, database, section.ID, -1);
    dialog.Record.Video = video;
    StandIn(section, dialog.Record);
    return AddFrame(dialog.Pictures, video, seconds, static_cast<float>(seconds),
                    CRecordPictures::Twin::AtOnce) &&
           RunNew(dialog);
}

bool NewManholeDefect(CDbRec& database, const _TESTING_DATA& section, std::string_view video, double seconds,
                      QWidget* parent, const _REC_DATA& filled) {
    CJcjDlg dialog(database, section.ID, FolderOf(section), true, parent);
    dialog.Record.DefectCode = filled.DefectCode;
    dialog.Draft = DraftOf(ManholeDraft, database, section.ID, -1);
    dialog.Record.Video = video;
    // A manhole can be described without a picture.
    if (!AddFrame(dialog.Pictures, video, seconds, seconds, CRecordPictures::Twin::WhenDrawnOn)) {
        ShowMessage(MessageNoFrame);
    }
    return RunNew(dialog);
}

namespace {

bool RunEdit(CDbRec& database, const _TESTING_DATA& section, const _REC_DATA& record, FormDraft draft,
             QWidget* parent, int control = 0) {
    if (record.IsJCJ()) {
        CJcjDlg dialog(database, record.ID, FolderOf(section), false, parent);
        dialog.FirstFocus = control;
        dialog.Record = record;
        ResumePictures(draft, dialog.Record, dialog.Pictures);
        dialog.Draft = std::move(draft);
        (void)dialog.DoModal();
        return false;
    }
    CDlgEdit dialog(false, database, record.ID, LengthOf(section), parent);
    dialog.FirstFocus = control;
    dialog.GiveLength = LengthGiver(database, section);
    dialog.Record = record;
    ResumePictures(draft, dialog.Record, dialog.Pictures);
    dialog.Draft = std::move(draft);
    (void)dialog.DoModal();
    return true;
}

template <class Rows>
const auto* RowOf(const Rows& rows, std::int32_t id) {
    const auto found = std::find_if(rows.begin(), rows.end(), [id](const auto& row) { return row.ID == id; });
    return found == rows.end() ? nullptr : &*found;
}

}  // namespace

bool EditDefect(CDbRec& database, const _TESTING_DATA& section, const _REC_DATA& record, QWidget* parent,
                int control) {
    return RunEdit(database, section, record,
                   DraftOf(record.IsJCJ() ? ManholeDraft : DefectDraft, database, section.ID, record.ID),
                   parent, control);
}

bool ResumeDefect(CDbRec& database, const FormDraft& draft, QWidget* parent) {
    CTestingDataArray sections;
    CRecDataArray records;
    if (!database.ReadTestings(sections) || !database.ReadRecords(draft.Section, records, false)) {
        return false;
    }
    const _TESTING_DATA* section = RowOf(sections, draft.Section);
    const _REC_DATA* record = draft.Record < 0 ? nullptr : RowOf(records, draft.Record);
    if (section == nullptr || (draft.Record >= 0 && record == nullptr)) {
        ShowMessage(MessageDraftWithout);
        return false;
    }
    if (record != nullptr) {
        (void)RunEdit(database, *section, *record, draft, parent);
    } else if (draft.Kind == ManholeDraft) {
        CJcjDlg dialog(database, section->ID, FolderOf(*section), true, parent);
        ResumePictures(draft, dialog.Record, dialog.Pictures);
        dialog.Draft = draft;
        (void)RunNew(dialog);
    } else {
        CDlgEdit dialog(true, database, section->ID, LengthOf(*section), parent);
        dialog.GiveLength = LengthGiver(database, *section);
        StandIn(*section, dialog.Record);
        ResumePictures(draft, dialog.Record, dialog.Pictures);
        dialog.Draft = draft;
        (void)RunNew(dialog);
    }
    return true;
}
