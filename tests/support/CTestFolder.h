// A program folder in a temporary place, with the real language files and criterion databases, and all
// seams set up for a test. Everything is gone when it ends.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "shell/CDesktop.h"
#include "shell/CHostFiles.h"
#include "shell/seams.h"
#include "tests/support/CScriptedPrompts.h"
#include "tests/support/CSetClock.h"

class CRecordingDesktop : public CNoDesktop {
public:
    struct Process {
        std::string Program;
        std::vector<std::string> Arguments;
        std::string Folder;
    };

    bool OpenFile(std::string_view path) override;
    bool StartProcess(std::string_view program, const std::vector<std::string>& arguments,
                      std::string_view folder,
                      const std::function<void(const std::string&)>& failed) override;
    bool CopyToTrash(std::string_view path) override;

    bool CanOpen = false;    // whether there is a program for files
    bool TakesTrash = true;  // or there is none
    std::vector<std::string> Opened;
    std::vector<Process> Started;
    std::vector<std::string> Trashed;  // content of the files that went to the trash
};

class CTestFolder {
public:
    CTestFolder();
    ~CTestFolder();
    CTestFolder(const CTestFolder&) = delete;
    CTestFolder& operator=(const CTestFolder&) = delete;

    // Of a file in the program folder; `name` has "/" as separator.
    std::filesystem::path Host(std::string_view name) const { return m_root / name; }
    std::string Path(std::string_view name) const;
    // Makes the parents too. Returns the path text.
    std::string WriteFile(std::string_view name, std::string_view bytes) const;
    std::string ReadFile(std::string_view name) const;
    // An empty project of the standard ("GB", "GZ", "SH", "CQ"), by default of the national one.
    std::string MakeProject(std::string_view fileName = "p.mdb", std::string_view standard = "GB") const;
    void UseLanguage(std::string_view name) const;

    CScriptedPrompts Prompts;
    CSetClock Clock;
    CRecordingDesktop Desktop;

private:
    std::filesystem::path m_root;
    CHostFiles m_files;
    CSeamScope m_seams;
    std::filesystem::path m_formerFolder;
};

// Whatever a file holds; empty if it isn't there.
std::string ReadHostFile(const std::filesystem::path& path);
