// A file descriptor that closes itself, and whole reads and writes on it.
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

// What a new file gets: readable for all, less what the process's umask takes away.
mode_t DefaultMode();

class CUnixFile {
public:
    CUnixFile(const std::string& hostPath, int flags);
    explicit CUnixFile(int descriptor) : m_descriptor(descriptor) {}
    ~CUnixFile() { Close(); }
    CUnixFile(const CUnixFile&) = delete;
    CUnixFile& operator=(const CUnixFile&) = delete;

    void Take(int descriptor);  // closes what was open
    bool IsOpen() const { return m_descriptor >= 0; }
    int Descriptor() const { return m_descriptor; }
    bool State(struct stat& state) const;
    // False unless exactly `size` bytes came.
    bool ReadAll(char* bytes, std::size_t size) const;
    bool WriteAll(std::string_view bytes) const;
    // False if the file wasn't open or its last bytes could not be stored.
    bool Close();

private:
    int m_descriptor = -1;
};
