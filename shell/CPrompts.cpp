#include "shell/CPrompts.h"

#include "shell/language.h"
#include "shell/seams.h"

void ShowMessage(int number, std::string_view appended) {
    Prompts().ShowMessage(number, LoadMessage(number).append(appended));
}

bool AskOkCancel(int number) {
    return Prompts().AskOkCancel(number, LoadMessage(number));
}
