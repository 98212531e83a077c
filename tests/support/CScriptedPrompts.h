// Prompts that know beforehand what will be asked. Anything else fails the test.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "shell/CPrompts.h"

class CScriptedPrompts : public CPrompts {
public:
    ~CScriptedPrompts() override;

    // The next message or question must have this number.
    void Expect(int number) { m_expected.push_back({number, false}); }
    void ExpectQuestion(int number, bool answer) { m_expected.push_back({number, answer}); }
    // Messages that may come or not, in any number, such as those of a listing.
    void Allow(int number) { m_allowed.push_back(number); }
    // What the next chooser gives; without one a chooser fails the test.
    void GivePath(const std::string& path) { m_paths.push_back(path); }
    void GivePaths(std::vector<std::string> paths) { m_pathLists.push_back(std::move(paths)); }
    // What the next colour chooser gives; nothing means Cancel.
    void GiveColour(std::optional<std::uint32_t> colour) { m_colours.push_back(colour); }
    // The row taken in the next choice of several; the first without one.
    void GiveChoice(std::size_t row) { m_choices.push_back(row); }
    bool AllCame() const { return m_expected.empty(); }
    const std::string& LastText() const { return m_lastText; }

    void ShowMessage(int number, const std::string& text) override;
    bool AskOkCancel(int number, const std::string& text) override;
    std::size_t Choose(int number, const std::string& text, const std::vector<std::string>& options) override;
    std::string PickOpenFile(const std::string& title, const std::vector<FileFilter>& filters) override;
    std::string PickSaveFile(const std::string& title, const std::string& defaultName,
                             const std::string& defaultExtension,
                             const std::vector<FileFilter>& filters) override;
    std::string PickFolder(const std::string& title) override;
    std::optional<std::uint32_t> PickColour(std::uint32_t colour) override;
    std::vector<std::string> PickOpenFiles(const std::string& title,
                                           const std::vector<FileFilter>& filters) override;

private:
    struct Expected {
        int Number;
        bool Answer;
    };
    bool Take(int number, const std::string& text);
    std::string TakePath();

    std::deque<Expected> m_expected;
    std::vector<int> m_allowed;
    std::deque<std::string> m_paths;
    std::deque<std::vector<std::string>> m_pathLists;
    std::deque<std::optional<std::uint32_t>> m_colours;
    std::deque<std::size_t> m_choices;
    std::string m_lastText;
};
