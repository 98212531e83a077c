#include "defects/picturesteps.h"

#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/failures.h"
#include "shell/language.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "store/CDbBase.h"
#include "store/CDbError.h"

namespace {

constexpr int MessageNotKept = 3355;

std::vector<std::string> WithTwins(const std::vector<std::string>& pictures) {
    std::vector<std::string> paths;
    for (const std::string& picture : pictures) {
        if (!picture.empty()) {
            paths.push_back(picture);
            paths.push_back(MakeOriginalPath(picture));
        }
    }
    return paths;
}

bool AskToGoOn(std::string_view path, const std::string& reason) {
    return Prompts().AskBeforeLoss(
        MessageNotKept, LoadMessage(MessageNotKept) + "\r\n" + std::string(path) + "\r\n" + reason);
}

bool Hold(CChangeWatch& watch, const std::vector<std::string>& paths) {
    try {
        const std::string_view failed = watch.Hold({paths.begin(), paths.end()});
        return failed.empty() || AskToGoOn(failed, FailureText(HostFiles().LastError()));
    } catch (const CDbError& error) {
        return AskToGoOn(paths.empty() ? std::string_view() : std::string_view(paths.front()), error.what());
    }
}

}  // namespace

bool KeepForUndo(CDbBase& database, const std::vector<std::string>& pictures, KeptTwins twins) {
    CChangeWatch* const watch = database.Watch();
    if (watch == nullptr || Hold(*watch, twins == KeptTwins::Yes ? WithTwins(pictures) : pictures)) {
        return true;
    }
    watch->DropPending();
    return false;
}

void DropKept(CDbBase& database) {
    if (CChangeWatch* const watch = database.Watch()) {
        watch->DropPending();
    }
}

bool KeepAsStep(CDbBase& database, int name, PictureFate fate, const std::string& picture,
                std::int32_t section, std::int32_t record) {
    CChangeWatch* const watch = database.Watch();
    if (watch == nullptr) {
        return true;
    }
    const CDbStep step(database, name);
    if (!Hold(*watch, {picture})) {
        watch->DropPending();
        return false;
    }
    try {
        watch->WriteStep(section, record, fate == PictureFate::Replaced);
        return true;
    } catch (const CDbError& error) {
        watch->DropPending();
        return AskToGoOn(picture, error.what());
    }
}

void NoteMadeForUndo(CDbBase& database, const std::vector<std::string>& pictures) {
    CChangeWatch* const watch = database.Watch();
    try {
        for (const std::string& path : watch == nullptr ? std::vector<std::string>() : WithTwins(pictures)) {
            watch->NoteMade(path);
        }
    } catch (const CDbError&) {
        // The change that comes next fails for the same reason, and tells it.
    }
}
