// Boxes and choosers of the desktop.
#pragma once

#include <QString>

#include "shell/CPrompts.h"

class CQtPrompts : public CPrompts {
public:
    void ShowMessage(int number, const std::string& text) override;
    bool AskOkCancel(int number, const std::string& text) override;
    std::size_t Choose(int number, const std::string& text, const std::vector<std::string>& options) override;
    bool AskBeforeLoss(int number, const std::string& text) override;
    std::string PickOpenFile(const std::string& title, const std::vector<FileFilter>& filters) override;
    std::vector<std::string> PickOpenFiles(const std::string& title,
                                           const std::vector<FileFilter>& filters) override;
    std::string PickSaveFile(const std::string& title, const std::string& defaultName,
                             const std::string& defaultExtension,
                             const std::vector<FileFilter>& filters) override;
    std::string PickFolder(const std::string& title) override;
    std::optional<std::uint32_t> PickColour(std::uint32_t colour) override;

private:
    // Keeps where the operator was last.
    std::string Chosen(const QString& hostPath);

    QString m_folder;
};

// As the toolkit's choosers take them: both cases of each pattern, "*" for all files.
QString ChooserFilters(const std::vector<FileFilter>& filters);
