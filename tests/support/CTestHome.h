// A home folder for a test, so that none writes among the documents of whoever runs it.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

class CTestHome {
public:
    explicit CTestHome(const std::filesystem::path& folder) : m_folder(folder) {
        std::filesystem::create_directories(folder / ".config");
        setenv("HOME", folder.c_str(), 1);
        unsetenv("XDG_CONFIG_HOME");
    }
    ~CTestHome() {
        m_home.PutBack();
        m_config.PutBack();
    }
    CTestHome(const CTestHome&) = delete;
    CTestHome& operator=(const CTestHome&) = delete;

    void WriteUserFolders(const std::string& text) const {
        std::ofstream(m_folder / ".config" / "user-dirs.dirs") << text;
    }

private:
    class CVariable {
    public:
        explicit CVariable(const char* name) : m_name(name) {
            if (const char* value = getenv(name)) {
                m_value = value;
            }
        }
        void PutBack() const {
            if (m_value) {
                setenv(m_name, m_value->c_str(), 1);
            } else {
                unsetenv(m_name);
            }
        }

    private:
        const char* m_name;
        std::optional<std::string> m_value;
    };

    std::filesystem::path m_folder;
    CVariable m_home{"HOME"};
    CVariable m_config{"XDG_CONFIG_HOME"};
};
