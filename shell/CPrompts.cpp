#include "shell/CPrompts.h"

#include "shell/CHostFiles.h"
#include "shell/language.h"
#include "shell/seams.h"

namespace {

// Files may change while a box waits for the operator.
class CAnsweredLater {
public:
    CAnsweredLater() : m_depth(HostFiles().Folders().PauseScope()) {}
    ~CAnsweredLater() { HostFiles().Folders().ResumeScope(m_depth); }
    CAnsweredLater(const CAnsweredLater&) = delete;
    CAnsweredLater& operator=(const CAnsweredLater&) = delete;

private:
    int m_depth;
};

}  // namespace

void ShowMessage(int number, std::string_view appended) {
    const CAnsweredLater later;
    Prompts().ShowMessage(number, LoadMessage(number).append(appended));
}

bool AskBeforeLoss(int number) {
    const CAnsweredLater later;
    return Prompts().AskBeforeLoss(number, LoadMessage(number));
}

bool AskOkCancel(int number) {
    const CAnsweredLater later;
    return Prompts().AskOkCancel(number, LoadMessage(number));
}

std::size_t CPrompts::Choose(int, const std::string&, const std::vector<std::string>&) {
    return 0;
}

std::vector<std::string> CPrompts::PickOpenFiles(const std::string& title,
                                                 const std::vector<FileFilter>& filters) {
    std::string path = PickOpenFile(title, filters);
    return path.empty() ? std::vector<std::string>() : std::vector<std::string>{std::move(path)};
}
