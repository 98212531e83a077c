// Which database files this process has open. File locks don't hold against the own process, and they
// vanish when any descriptor of the file is closed in it: whoever wants to touch a database file in
// another way asks here first.
#pragma once

#include <sys/types.h>

#include <string>
#include <utility>

class COpenFile {
public:
    COpenFile() = default;
    ~COpenFile() { Release(); }
    COpenFile(const COpenFile&) = delete;
    COpenFile& operator=(const COpenFile&) = delete;

    // False if the file is open already, or isn't a regular file.
    bool Claim(const std::string& hostPath);
    void Release();
    // Whether the claimed file is what the name leads to.
    bool IsAt(const std::string& hostPath) const;
    static bool IsOpen(const std::string& hostPath);
    // Whether another process holds a lock on it, or this one has it open.
    static bool IsHeld(const std::string& hostPath);

private:
    std::pair<dev_t, ino_t> m_key{};
    bool m_claimed = false;
};
