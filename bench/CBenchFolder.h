// A program folder in a temporary place, gone when it ends.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "shell/CHostFiles.h"
#include "shell/CStreamPrompts.h"
#include "shell/seams.h"

class CBenchFolder {
public:
    CBenchFolder();
    ~CBenchFolder();
    CBenchFolder(const CBenchFolder&) = delete;
    CBenchFolder& operator=(const CBenchFolder&) = delete;

    std::filesystem::path Host(std::string_view name) const { return m_root / name; }
    std::string Path(std::string_view name) const;
    // An empty project of the national standard, or of the one in another file of the folder of criteria;
    // returns its path text.
    std::string MakeProject(std::string_view fileName, std::string_view criterion = "GB.mdb") const;

private:
    std::filesystem::path m_root;
    CHostFiles m_files;
    CStreamPrompts m_prompts;
    CSeamScope m_seams;
};
