// A user's runtime folder of its own, so that a test meets no live instance but
// its own.
#pragma once

#include <QByteArray>
#include <filesystem>

#include "tests/support/CTestFolder.h"

class CRuntimeFolder {
public:
    explicit CRuntimeFolder(const CTestFolder& folder)
        : m_path(folder.Host("run")), m_former(qgetenv("XDG_RUNTIME_DIR")) {
        std::filesystem::create_directory(m_path);
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all);
        qputenv("XDG_RUNTIME_DIR", m_path.c_str());
    }
    ~CRuntimeFolder() {
        if (m_former.isEmpty()) {
            qunsetenv("XDG_RUNTIME_DIR");
        } else {
            qputenv("XDG_RUNTIME_DIR", m_former);
        }
    }
    CRuntimeFolder(const CRuntimeFolder&) = delete;
    CRuntimeFolder& operator=(const CRuntimeFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    std::filesystem::path Socket() const { return m_path / "DROVANEWNDCLASS"; }

private:
    std::filesystem::path m_path;
    QByteArray m_former;
};
