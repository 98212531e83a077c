// Everything that the program asks or tells its operator in a box goes through here, so that the same
// operations run in windows, on a command line and under test.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// One row of a file chooser: a label and its patterns, such as {"XML File(*.xml)", {"*.xml"}}.
// "*.*" means all files; case is ignored.
struct FileFilter {
    std::string Label;
    std::vector<std::string> Patterns;
};

class CPrompts {
public:
    virtual ~CPrompts() = default;

    // A box with an OK button. `number` is the language message that the text was made from.
    virtual void ShowMessage(int number, const std::string& text) = 0;
    // A box with OK and Cancel: whether OK was chosen.
    virtual bool AskOkCancel(int number, const std::string& text) = 0;
    // Before something is lost or ended: the same box, in which Enter answers Cancel.
    virtual bool AskBeforeLoss(int number, const std::string& text) { return AskOkCancel(number, text); }
    // One of several, as a number from 0; the first where nobody can be asked or nothing is chosen.
    virtual std::size_t Choose(int number, const std::string& text, const std::vector<std::string>& options);
    // The choosers give path texts; empty when the operator cancels.
    virtual std::string PickOpenFile(const std::string& title, const std::vector<FileFilter>& filters) = 0;
    // Several at once, in the order chosen. By default one.
    virtual std::vector<std::string> PickOpenFiles(const std::string& title,
                                                   const std::vector<FileFilter>& filters);
    virtual std::string PickSaveFile(const std::string& title, const std::string& defaultName,
                                     const std::string& defaultExtension,
                                     const std::vector<FileFilter>& filters) = 0;
    virtual std::string PickFolder(const std::string& title) = 0;
    // Colours are 0x00BBGGRR; nothing when the operator cancels.
    virtual std::optional<std::uint32_t> PickColour(std::uint32_t colour) = 0;
};

// Shows the numbered language message, with `appended` directly behind it.
void ShowMessage(int number, std::string_view appended = {});
bool AskOkCancel(int number);
bool AskBeforeLoss(int number);
