// Nobody is there: messages go nowhere, and every question and chooser is cancelled. For looking at what may
// not be readable without a word about it.
#pragma once

#include "shell/CPrompts.h"

class CSilentPrompts : public CPrompts {
public:
    void ShowMessage(int, const std::string&) override {}
    bool AskOkCancel(int, const std::string&) override { return false; }
    std::string PickOpenFile(const std::string&, const std::vector<FileFilter>&) override { return {}; }
    std::string PickSaveFile(const std::string&, const std::string&, const std::string&,
                             const std::vector<FileFilter>&) override {
        return {};
    }
    std::string PickFolder(const std::string&) override { return {}; }
    std::optional<std::uint32_t> PickColour(std::uint32_t) override { return std::nullopt; }
};
