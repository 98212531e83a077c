// One step of the journal, back or forth.
#pragma once

#include <cstdint>
#include <string>

class CDbRec;
class CJournal;

struct StepFit {
    bool Fits = true;
    std::string Why;  // for the operator
};

// Puts the rows that the step changed back to what they were before it (`undo`) or after it, and its
// pictures. Nothing has changed if it doesn't fit. Throws CDbError, with nothing changed.
StepFit TakeStep(CDbRec& database, CJournal& journal, std::int64_t step, bool undo);
