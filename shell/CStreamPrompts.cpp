#include "shell/CStreamPrompts.h"

#include <ostream>

void CStreamPrompts::ShowMessage(int number, const std::string& text) {
    // Without a language file every text is empty; the number still tells what happened.
    m_out << (text.empty() ? "message " + std::to_string(number) : text) << '\n';
}

bool CStreamPrompts::AskOkCancel(int number, const std::string& text) {
    ShowMessage(number, text);
    return m_answer;
}
