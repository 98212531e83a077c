// The settings: the work folder, and where the drive letters of projects from other machines lie. The box of
// languages shows what is in force. Changes of drives wait for OK like everything else.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "shell/dialogs/CSizeDlg.h"

class QComboBox;
class QTreeWidget;

class CDlgSet : public CSizeDlg {
public:
    static constexpr int IdFolderLabel = 1065;
    static constexpr int IdFolder = 1063;
    static constexpr int IdBrowse = 1064;
    static constexpr int IdLanguageLabel = 1066;
    static constexpr int IdLanguage = 1082;
    static constexpr int IdDrivesLabel = 1501;
    static constexpr int IdDrives = 1502;
    static constexpr int IdLetter = 1503;
    static constexpr int IdSetDrive = 1504;
    static constexpr int IdRemoveDrive = 1505;

    static constexpr int IdKeptLabel = 5055;
    static constexpr int IdClearKept = 5056;

    explicit CDlgSet(QWidget* parent = nullptr);

    // What the open project keeps for undoing, in words, and how it is cleared; a row of their own shows
    // them. It is done at once, whatever button ends the window. By default there is none.
    std::function<std::string()> KeptText;
    std::function<void()> ClearKept;

protected:
    void OnInitDialog() override;
    void OnOK() override;

private:
    void FillLanguages();
    void FillDrives();
    void OnBrowse();
    void OnSetDrive();
    void OnRemoveDrive();
    void OnDriveSelected();
    void UpdateControls();
    void ShowKept();
    char Letter() const;
    bool StoreDrives();

    QTreeWidget* m_drives = nullptr;
    QComboBox* m_letter = nullptr;
    // Folders of this machine by letter; those that are links, and so can be changed here.
    std::map<char, std::string> m_links;
};
