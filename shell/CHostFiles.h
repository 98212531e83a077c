// From the program's path texts to files of this machine, and the few operations on files that the
// program needs. Path texts have "\" as separator and may carry a drive, as projects from other
// machines do:
//
//   \home\ann\job\a.avi        /home/ann/job/a.avi
//   D:\Works\a.avi             drives/d/Works/a.avi in the program folder (a folder or a link)
//   \\server\share\a.avi       drives/unc/server/share/a.avi in the program folder
//   ui\start.dt                relative to the current folder
//
// Stored paths are lower-cased by rule. So where the exact name doesn't exist, each component is matched
// without regard to case: exact first, then the first by name. Everything resolves this way, also the
// parents of what is created, so that no second twin of a file can arise.
//
// Not for several threads at once.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "shell/CFolderCache.h"
#include "shell/CTemporaryTwin.h"

class CFileMirror;
class CProgress;

class CHostFiles {
public:
    using Existing = CTemporaryTwin::Existing;

    // The program folder, as a path of this machine; `drives` lies in it.
    explicit CHostFiles(std::filesystem::path appFolder);
    ~CHostFiles();
    CHostFiles(const CHostFiles&) = delete;
    CHostFiles& operator=(const CHostFiles&) = delete;

    // Where the file lies, or where it would be created. Never fails: what doesn't exist keeps its name.
    std::string HostPath(std::string_view path) const;
    // The way back. A host name that holds a backslash can't be a path text: nothing then.
    static std::optional<std::string> PathText(std::string_view hostPath);
    // The link or folder that stands for a drive letter.
    std::filesystem::path DriveFolder(char letter) const;

    bool Exists(std::string_view path) const;
    bool IsFolder(std::string_view path) const;
    // Names (not paths) of the files that end in `extension` (such as ".mdb", case ignored), by name.
    std::vector<std::string> ListFiles(std::string_view folder, std::string_view extension) const;

    // Nothing if it can't be read, isn't a regular file, or is longer than `most` bytes.
    std::optional<std::string> ReadFile(std::string_view path, std::size_t most) const;
    // At most the first `most` bytes.
    std::optional<std::string> ReadBeginning(std::string_view path, std::size_t most) const;
    // Whole or not at all: written beside the target, flushed and renamed. Links are followed, the mode
    // of a former file is kept. With Keep, whatever has the name already makes it fail.
    bool WriteFile(std::string_view path, std::string_view bytes, Existing existing = Existing::Replace);
    // The same for what is too large for memory: `write` gets the new version, empty and open for reading and
    // writing, and says whether it is complete.
    bool WriteFile(std::string_view path, const std::function<bool(const CUnixFile&)>& write,
                   Existing existing = Existing::Replace);
    // Files that belong together: each whole or not at all, and none takes its place before all are on the
    // disk. How many of them are written; fewer than there are if one can't be, and then normally none.
    struct FileContent {
        std::string Path;
        std::string_view Bytes;
    };
    std::size_t WriteFiles(const std::vector<FileContent>& files);
    // The copy is writable, appears whole or not at all, and is flushed.
    bool CopyFile(std::string_view from, std::string_view to, Existing existing);
    // The same for large files: `progress` is told bytes, and can stop the copy.
    bool CopyFile(std::string_view from, std::string_view to, Existing existing, CProgress& progress);
    // Copies that follow their sources.
    CFileMirror& Mirror() { return *m_mirror; }
    bool DeleteFile(std::string_view path);
    // Within one file system; with Keep what has the name already stays, and makes it fail.
    bool MoveFile(std::string_view from, std::string_view to, Existing existing = Existing::Keep);
    // A second name for the content of a file, which stays when the first name is deleted or its file is
    // replaced. Where the file system has none, a copy. Both are flushed; what has the name makes it fail.
    bool LinkFile(std::string_view from, std::string_view to);
    // Whether both names lead to the same bytes. Also if one file has both names.
    bool HaveSameContent(std::string_view a, std::string_view b) const;
    bool MakeFolder(std::string_view path);    // with its parents; true if it is there afterwards
    bool RemoveFolder(std::string_view path);  // with all that is in it
    bool RemoveEmptyFolder(std::string_view path);
    bool SetCurrentFolder(std::string_view path) const;
    // Why the last file that could not be written, copied or deleted wasn't: one of errno, for FailureText.
    int LastError() const { return m_lastError; }
    // While the operator is asked, in the midst of a CLookOnce, files may change.
    CFolderCache& Folders() { return m_folders; }
    // After changes of folders that didn't go through here.
    void ForgetFolders() { m_folders.Forget(); }

    // While one lives, what lies in which folder is looked at once a folder and taken as it was then. For
    // operations that resolve many paths at one go.
    class CLookOnce {
    public:
        explicit CLookOnce(const CHostFiles& files) : m_cache(files.m_folders) { m_cache.EnterScope(); }
        ~CLookOnce() { m_cache.LeaveScope(); }
        CLookOnce(const CLookOnce&) = delete;
        CLookOnce& operator=(const CLookOnce&) = delete;

    private:
        CFolderCache& m_cache;
    };

private:
    friend class CFileMirror;

    // A drive comes into being when it is first written to.
    void MakeDrive(std::string_view path) const;
    bool Done(bool done);
    bool Refused(int error);
    std::string Unresolved(std::string_view path) const;
    void Sweep(const std::string& target);
    bool CopyBytes(const std::string& from, const std::string& to, const struct stat& source, bool flush,
                   Existing existing, CProgress& progress);

    std::filesystem::path m_appFolder;
    int m_lastError = 0;
    mutable CFolderCache m_folders;
    std::unordered_set<std::string> m_swept;  // folders
    std::unique_ptr<CFileMirror> m_mirror;
};
