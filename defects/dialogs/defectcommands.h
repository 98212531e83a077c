// The commands of the review window that record a defect, whole: they open a form and leave nothing behind if
// it is cancelled. Whether there is a section, a video and a defect is the caller's to ask.
#pragma once

#include <string_view>

#include "store/records/records.h"

class CDbRec;
struct FormDraft;
class QWidget;

// At `seconds` of the video, whose player has been paused. True if a record was stored. `filled` is what the
// form opens with: code, grade, comment, distances and clock, each only if it is known.
bool NewDefect(CDbRec& database, const _TESTING_DATA& section, std::string_view video, double seconds,
               QWidget* parent, const _REC_DATA& filled = {});
bool NewManholeDefect(CDbRec& database, const _TESTING_DATA& section, std::string_view video, double seconds,
                      QWidget* parent, const _REC_DATA& filled = {});

// True if the list of defects is to be filled anew: also after Cancel, since pictures may have changed, but
// not for a manhole, whose changes show when the section is selected next. `control` has the focus first.
bool EditDefect(CDbRec& database, const _TESTING_DATA& section, const _REC_DATA& record, QWidget* parent,
                int control = 0);

// The window of a defect or a manhole once more, with what was typed there before a crash. The draft has
// ended then. False, after message 3473, if its section or record isn't there any more.
inline constexpr const char* DefectDraft = "defect";
inline constexpr const char* ManholeDraft = "manhole";
bool ResumeDefect(CDbRec& database, const FormDraft& draft, QWidget* parent);
