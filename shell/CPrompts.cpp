#include "shell/CPrompts.h"

#include "shell/language.h"
#include "shell/seams.h"

void ShowMessage(int number, std::string_view appended) {
    Prompts().ShowMessage(number, LoadMessage(number).append(appended));
}

bool AskBeforeLoss(int number) {
    return Prompts().AskBeforeLoss(number, LoadMessage(number));
}

bool AskOkCancel(int number) {
    return Prompts().AskOkCancel(number, LoadMessage(number));
}

std::vector<std::string> CPrompts::PickOpenFiles(const std::string& title,
                                                 const std::vector<FileFilter>& filters) {
    std::string path = PickOpenFile(title, filters);
    return path.empty() ? std::vector<std::string>() : std::vector<std::string>{std::move(path)};
}
