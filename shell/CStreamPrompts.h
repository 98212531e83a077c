// Prompts of a program without windows: messages become lines of a stream, and a question is answered
// as the caller decided beforehand. Choosers give nothing.
#pragma once

#include <iosfwd>

#include "shell/CPrompts.h"

class CStreamPrompts : public CPrompts {
public:
    CStreamPrompts(std::ostream& out, bool answer) : m_out(out), m_answer(answer) {}

    void ShowMessage(int number, const std::string& text) override;
    bool AskOkCancel(int number, const std::string& text) override;
    std::string PickOpenFile(const std::string&, const std::vector<FileFilter>&) override { return {}; }
    std::string PickSaveFile(const std::string&, const std::string&, const std::string&,
                             const std::vector<FileFilter>&) override {
        return {};
    }
    std::string PickFolder(const std::string&) override { return {}; }
    std::optional<std::uint32_t> PickColour(std::uint32_t) override { return std::nullopt; }

private:
    std::ostream& m_out;
    bool m_answer;
};
