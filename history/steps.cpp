#include "history/steps.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>

#include "history/CJournal.h"
#include "history/fileidentity.h"
#include "history/heldpictures.h"
#include "history/undo.h"
#include "shell/CHostFiles.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/stepnames.h"

namespace {

constexpr int MessageSections = 3475;

constexpr const char* StepColumns =
    "SELECT ID, Name, Time, Account, Section, Record, Label, Detail, Undone FROM Aux_Step ";

HistoryStep ReadStep(CDbCursor& row) {
    HistoryStep step;
    step.Number = row.GetLong("ID");
    step.Name = row.GetLong("Name");
    step.Time = row.GetText("Time");
    step.Account = row.GetText("Account");
    step.Section = row.GetLong("Section");
    step.Record = row.GetLong("Record");
    step.Label = row.GetText("Label");
    step.Detail = row.GetText("Detail");
    step.Undone = row.GetLong("Undone") != 0;
    return step;
}

// Rows of the table by step, several images of a row counted once.
void Count(CDbRec& database, const char* table, const char* row, std::vector<HistoryStep>& steps,
           std::int32_t HistoryStep::*count) {
    if (!HasTable(database, table)) {
        return;
    }
    auto step = steps.begin();
    for (CDbCursor rows = database.ExecuteAsIs(std::string("SELECT Aux_Seq >> 32 AS Step, count(DISTINCT ") +
                                               row + ") AS Number FROM " + table + " GROUP BY Aux_Seq >> 32");
         !rows.IsEof(); rows.MoveNext()) {
        const std::int32_t number = rows.GetLong("Step");
        while (step != steps.end() && step->Number < number) {
            ++step;
        }
        if (step != steps.end() && step->Number == number) {
            (*step).*count = rows.GetLong("Number");
        }
    }
}

bool IsOwn(CDbRec& database) {
    return !database
                .ExecuteAsIs("SELECT 1 FROM Aux_Journal WHERE Identity = " +
                             QuotedText(FileIdentity(HostFiles().HostPath(database.Path()))))
                .IsEof();
}

HistoryStep FirstStep(CDbRec& database, const char* selection) {
    CDbCursor row = database.ExecuteAsIs(std::string(StepColumns) + selection);
    return row.IsEof() ? HistoryStep() : ReadStep(row);
}

HistoryStep NextStep(CDbRec& database, bool undo) {
    return FirstStep(database, undo ? "WHERE Undone = 0 ORDER BY ID DESC LIMIT 1"
                                    : "WHERE Undone = 1 ORDER BY ID LIMIT 1");
}

// Steps one by one, each stored for itself. If one doesn't fit, those before it are taken back.
StepResult Take(CDbRec& database, int count, bool undo) {
    StepResult result;
    CJournal* const journal = CJournal::Of(database);
    try {
        result.Result = StepResult::Outcome::Nothing;
        if (journal == nullptr || count <= 0 || !HasTable(database, "Aux_Journal") || !IsOwn(database)) {
            return result;
        }
        journal->Prepare();
        journal->FinishMoves();
        for (int i = 0; i < count; ++i) {
            const HistoryStep step = NextStep(database, undo);
            if (step.Number == 0) {
                result.Result = StepResult::Outcome::Nothing;
            } else {
                const StepFit fit = TakeStep(database, *journal, step.Number, undo);
                result.Result = fit.Fits ? StepResult::Outcome::Done : StepResult::Outcome::Unfit;
                result.Why = fit.Why;
            }
            if (result.Result != StepResult::Outcome::Done) {
                for (; i > 0; --i) {
                    (void)TakeStep(database, *journal, NextStep(database, !undo).Number, !undo);
                }
                result.Steps = {step};
                return result;
            }
            result.Steps.push_back(step);
        }
        return result;
    } catch (const CDbError& error) {
        ShowFailure(MessageHistoryFailed, error);
        result.Result = StepResult::Outcome::Failed;
        return result;
    }
}

}  // namespace

History ReadHistory(CDbRec& database) {
    History history;
    if (!HasTable(database, "Aux_Journal")) {
        return history;
    }
    if (!IsOwn(database)) {
        history.Foreign = true;
        return history;
    }
    CDbCursor journal = database.ExecuteAsIs("SELECT Began, Former FROM Aux_Journal");
    history.Began = journal.GetText("Began");
    history.Former = journal.GetLong("Former") != 0;
    for (CDbCursor row = database.ExecuteAsIs(std::string(StepColumns) + "ORDER BY ID"); !row.IsEof();
         row.MoveNext()) {
        history.Steps.push_back(ReadStep(row));
    }
    Count(database, "Aux_Testing", "Aux_Row", history.Steps, &HistoryStep::Sections);
    Count(database, "Aux_Record", "Aux_Row", history.Steps, &HistoryStep::Records);
    Count(database, "Aux_Picture", "Path", history.Steps, &HistoryStep::Pictures);
    return history;
}

NextSteps ReadNextSteps(CDbRec& database) {
    if (!HasTable(database, "Aux_Journal") || !IsOwn(database)) {
        return {};
    }
    NextSteps next{NextStep(database, true), NextStep(database, false)};
    for (HistoryStep* const step : {&next.Undo, &next.Redo}) {
        step->Sections = database
                             .ExecuteAsIs("SELECT count(DISTINCT Aux_Row) AS Number FROM Aux_Testing WHERE " +
                                          OfStep(step->Number))
                             .GetLong("Number");
    }
    return next;
}

HistorySpace ReadHistorySpace(CDbRec& database) {
    HistorySpace space;
    if (!HasTable(database, "Aux_Journal") || !IsOwn(database)) {
        return space;
    }
    space.Steps = database.ExecuteAsIs("SELECT count(*) AS Number FROM Aux_Step").GetLong("Number");
    for (CDbCursor row = database.ExecuteAsIs("SELECT Path, Before, After FROM Aux_Picture"); !row.IsEof();
         row.MoveNext()) {
        const std::string path = row.GetText("Path");
        for (const char* const slot : {"Before", "After"}) {
            if (const std::string name = row.GetText(slot); IsHeldName(name)) {
                std::error_code error;
                const auto size =
                    std::filesystem::file_size(HostFiles().HostPath(HeldPath(path, name)), error);
                space.PictureBytes += error ? 0 : static_cast<std::int64_t>(size);
            }
        }
    }
    return space;
}

std::vector<std::string> DrawnPictures(CDbRec& database) {
    std::set<std::string> drawn;
    if (!HasTable(database, "Aux_Journal") || !IsOwn(database)) {
        return {};
    }
    for (CDbCursor row = database.ExecuteAsIs(
             "SELECT Path, Name FROM Aux_Picture JOIN Aux_Step ON Aux_Step.ID = Aux_Seq >> 32 "
             "WHERE Undone = 0 ORDER BY Aux_Seq");
         !row.IsEof(); row.MoveNext()) {
        if (row.GetLong("Name") == StepDrawPicture) {
            drawn.insert(row.GetText("Path"));
        } else {
            drawn.erase(row.GetText("Path"));  // it is another picture since
        }
    }
    return {drawn.begin(), drawn.end()};
}

std::string StepPlace(const HistoryStep& step) {
    // Steps of many rows began with some row, which tells nothing.
    constexpr std::array ofRecord{StepAddRecord,   StepChangeRecord, StepDeleteRecord,  StepAddPicture,
                                  StepDrawPicture, StepResetPicture, StepDeletePicture, StepChange};
    constexpr std::array ofProject{StepOrderSections, StepImportPositions, StepLoadDocument,
                                   StepChangeProject};
    const auto isOneOf = [&](const auto& names) {
        return std::find(names.begin(), names.end(), step.Name) != names.end();
    };
    if (step.Sections > 1) {
        return FillText(LoadMessage(MessageSections), {FormatInt(step.Sections)});
    }
    std::string place = isOneOf(ofProject) ? std::string() : step.Label;
    if (step.Record >= 0 && !step.Detail.empty() && isOneOf(ofRecord)) {
        place += (place.empty() ? "" : "  ") + step.Detail + " m";
    }
    return place;
}

std::string StepTitle(const HistoryStep& step) {
    const std::string place = StepPlace(step);
    return LoadMessage(step.Name) + (place.empty() ? "" : "  " + place);
}

StepResult UndoSteps(CDbRec& database, int count) {
    return Take(database, count, true);
}

StepResult RedoSteps(CDbRec& database, int count) {
    return Take(database, count, false);
}

StepResult GoToStep(CDbRec& database, std::int64_t number) {
    int back = 0;
    int forth = 0;
    try {
        for (const HistoryStep& step : ReadHistory(database).Steps) {
            back += !step.Undone && step.Number > number ? 1 : 0;
            forth += step.Undone && step.Number <= number ? 1 : 0;
        }
    } catch (const CDbError& error) {
        ShowFailure(MessageHistoryFailed, error);
        return {};
    }
    return back > 0 ? UndoSteps(database, back) : RedoSteps(database, forth);
}

bool ForgetHistory(CDbRec& database) {
    CJournal* const journal = CJournal::Of(database);
    try {
        if (journal != nullptr) {
            journal->Forget();
        }
        return journal != nullptr;
    } catch (const CDbError& error) {
        ShowFailure(MessageForgetFailed, error);
        return false;
    }
}
