#include "tests/support/CScriptedPrompts.h"

#include <gtest/gtest.h>

#include <algorithm>

CScriptedPrompts::~CScriptedPrompts() {
    for (const Expected& missing : m_expected) {
        ADD_FAILURE() << "message " << missing.Number << " didn't come";
    }
}

bool CScriptedPrompts::Take(int number, const std::string& text) {
    m_lastText = text;
    if (!m_expected.empty() && m_expected.front().Number == number) {
        const bool answer = m_expected.front().Answer;
        m_expected.pop_front();
        return answer;
    }
    if (std::find(m_allowed.begin(), m_allowed.end(), number) == m_allowed.end()) {
        ADD_FAILURE() << "unexpected message " << number << ": " << text;
    }
    return false;
}

void CScriptedPrompts::ShowMessage(int number, const std::string& text) {
    (void)Take(number, text);
}

bool CScriptedPrompts::AskOkCancel(int number, const std::string& text) {
    return Take(number, text);
}

std::string CScriptedPrompts::TakePath() {
    if (m_paths.empty()) {
        ADD_FAILURE() << "unexpected chooser";
        return {};
    }
    std::string path = m_paths.front();
    m_paths.pop_front();
    return path;
}

std::string CScriptedPrompts::PickOpenFile(const std::string&, const std::vector<FileFilter>&) {
    return TakePath();
}

std::string CScriptedPrompts::PickSaveFile(const std::string&, const std::string&, const std::string&,
                                           const std::vector<FileFilter>&) {
    return TakePath();
}

std::size_t CScriptedPrompts::Choose(int, const std::string& text, const std::vector<std::string>& options) {
    m_lastText = text;
    if (m_choices.empty()) {
        return 0;
    }
    const std::size_t row = m_choices.front();
    m_choices.pop_front();
    EXPECT_LT(row, options.size()) << text;
    return row;
}

std::string CScriptedPrompts::PickFolder(const std::string&) {
    return TakePath();
}

std::vector<std::string> CScriptedPrompts::PickOpenFiles(const std::string&, const std::vector<FileFilter>&) {
    if (m_pathLists.empty()) {
        ADD_FAILURE() << "unexpected chooser";
        return {};
    }
    std::vector<std::string> paths = m_pathLists.front();
    m_pathLists.pop_front();
    return paths;
}

std::optional<std::uint32_t> CScriptedPrompts::PickColour(std::uint32_t) {
    if (m_colours.empty()) {
        ADD_FAILURE() << "unexpected chooser of colours";
        return std::nullopt;
    }
    const auto colour = m_colours.front();
    m_colours.pop_front();
    return colour;
}
