// The history of a project: its steps, back and forth.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class CDbRec;

struct HistoryStep {
    std::int64_t Number = 0;
    int Name = 0;               // the language message that names it
    std::string Time;           // local, "YYYY-MM-DD HH:MM:SS"
    std::string Account;        // of the system
    std::int32_t Section = -1;  // where it began; -1 for nowhere
    std::int32_t Record = -1;
    std::string Label;  // of that section, and of the record: code and metres
    std::string Detail;
    bool Undone = false;
    std::int32_t Sections = 0;  // rows that it changed
    std::int32_t Records = 0;
    std::int32_t Pictures = 0;  // files
};

struct History {
    std::vector<HistoryStep> Steps;  // oldest first
    // The file was made from another one whose history is in it. That isn't shown, and ends with the first
    // change.
    bool Foreign = false;
    std::string Began;    // when the history began; empty if there is none yet
    bool Former = false;  // and whether it did since the file was a copy
};

// Reads what stands in the file, also in one that is open for reading only. Throws CDbError.
History ReadHistory(CDbRec& database);
// Only what a button shows: the steps that Undo and Redo would take; null numbers for none. Throws CDbError.
struct NextSteps {
    HistoryStep Undo;
    HistoryStep Redo;
};
NextSteps ReadNextSteps(CDbRec& database);

// "Delete section  A - B", "Change defect  A - B  PL 12.4".
std::string StepTitle(const HistoryStep& step);
// Where it happened, without its name.
std::string StepPlace(const HistoryStep& step);

struct StepResult {
    enum class Outcome {
        Done,
        Nothing,  // there are fewer steps
        Unfit,    // what a step would change has been changed by somebody else meanwhile; `Why` tells what
        Failed    // the message was shown
    };
    Outcome Result = Outcome::Failed;
    std::string Why;
    std::vector<HistoryStep> Steps;  // that were taken, in this order
};

// Takes so many steps back or forth, all or none. The rows are exactly what they were, and the pictures lie
// where they lay. Never inside a batch or a step.
StepResult UndoSteps(CDbRec& database, int count = 1);
StepResult RedoSteps(CDbRec& database, int count = 1);
// Undoes or redoes until this step is the last that is done; 0 undoes all.
StepResult GoToStep(CDbRec& database, std::int64_t number);

// Pictures that were drawn on and not reset since, as far as the history goes; as they stand in it. Throws
// CDbError.
std::vector<std::string> DrawnPictures(CDbRec& database);

// What the history takes beside the project.
struct HistorySpace {
    std::int32_t Steps = 0;
    std::int64_t PictureBytes = 0;  // of files that are held
};
HistorySpace ReadHistorySpace(CDbRec& database);  // throws CDbError

// Nothing of what was can be brought back, or read, afterwards. Failure shows message 3366.
bool ForgetHistory(CDbRec& database);

inline constexpr int MessageHistoryFailed = 3365;
inline constexpr int MessageForgetFailed = 3366;
