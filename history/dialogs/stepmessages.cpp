#include "history/dialogs/stepmessages.h"

#include "history/steps.h"
#include "shell/CPrompts.h"

namespace {

constexpr int MessageNothingToUndo = 3385;
constexpr int MessageNothingToRedo = 3386;
constexpr int MessageUnfit = 3387;

}  // namespace

void TellStepResult(const StepResult& result, bool undo) {
    switch (result.Result) {
        case StepResult::Outcome::Nothing:
            ShowMessage(undo ? MessageNothingToUndo : MessageNothingToRedo);
            break;
        case StepResult::Outcome::Unfit:
            ShowMessage(MessageUnfit,
                        (result.Steps.empty() ? std::string() : "\r\n" + StepTitle(result.Steps.front())) +
                            "\r\n" + result.Why);
            break;
        case StepResult::Outcome::Done:
        case StepResult::Outcome::Failed:
            break;
    }
}
