// What the operator is told of steps back and forth.
#pragma once

struct StepResult;

// Nothing for a step that was taken, and for a failure, which has told its message.
void TellStepResult(const StepResult& result, bool undo);
