// Files in memory for the library of shapefiles, so that they reach the disk by our own way: whole, through
// links, and none before all are complete.
#pragma once

#include <shapefil.h>

#include <map>
#include <string>

class CMemoryFiles {
public:
    // While one lives, the files that this thread's calls of the library make with Hooks() are its own.
    CMemoryFiles();
    ~CMemoryFiles();
    CMemoryFiles(const CMemoryFiles&) = delete;
    CMemoryFiles& operator=(const CMemoryFiles&) = delete;

    SAHooks* Hooks() { return &m_hooks; }
    // Empty if there is none of that name.
    const std::string& Bytes(const std::string& name) { return m_files[name]; }

private:
    struct OpenFile;
    static SAFile Open(const char* name, const char* access);
    static SAOffset Read(void* bytes, SAOffset size, SAOffset count, SAFile file);
    static SAOffset Write(void* bytes, SAOffset size, SAOffset count, SAFile file);
    static SAOffset Seek(SAFile file, SAOffset offset, int whence);
    static SAOffset Tell(SAFile file);
    static int Flush(SAFile file);
    static int Close(SAFile file);
    static int Remove(const char* name);
    static void Error(const char* message);

    SAHooks m_hooks;
    CMemoryFiles* m_former;
    std::map<std::string, std::string> m_files;
};
