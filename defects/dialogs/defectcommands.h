// The commands of the review window that record a defect, whole: they open a form and leave nothing behind if
// it is cancelled. Whether there is a section, a video and a defect is the caller's to ask.
#pragma once

#include <string_view>

#include "store/records/records.h"

class CDbRec;
class QWidget;

// At `seconds` of the video, whose player has been paused. True if a record was stored.
bool NewDefect(CDbRec& database, const _TESTING_DATA& section, std::string_view video, double seconds,
               QWidget* parent);
bool NewManholeDefect(CDbRec& database, const _TESTING_DATA& section, std::string_view video, double seconds,
                      QWidget* parent);

// True if the list of defects is to be filled anew: also after Cancel, since pictures may have changed, but
// not for a manhole, whose changes show when the section is selected next.
bool EditDefect(CDbRec& database, const _TESTING_DATA& section, const _REC_DATA& record, QWidget* parent);
