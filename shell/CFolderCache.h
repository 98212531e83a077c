// What lies in which folder, looked up without regard to case. A listing is kept by the folder's
// modification time, so that it costs one look at the folder. Within a scope of LookOnce a folder is
// looked at once, however many names are looked up in it: reading the records of a section asks for
// many pictures in few folders.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

class CFolderCache {
public:
    // Times of folders move in steps of some milliseconds, so a listing read right after a change may miss
    // another change. Strict reads such a listing again; in a folder that belongs to the program alone
    // that would cost much for nothing.
    enum class Trust { Strict, OwnFolder };

    struct Folder {
        std::string Host;         // what it is called in truth
        bool Exists = false;      // as a folder
        std::uint64_t Stamp = 0;  // changes whenever its listing may have changed

    private:
        friend class CFolderCache;
        timespec m_time{};
        bool m_listed = false;
        bool m_fresh = false;       // changed right before it was listed
        std::uint64_t m_scope = 0;  // in which it was looked at last
        std::unordered_set<std::string> m_names;
        std::unordered_map<std::string, std::string> m_byLowerCase;  // the first of each by name
    };

    // `folder` is a path of this machine without a trailing "/", as written. Components that don't exist
    // so are matched without regard to case, the first by name; what isn't there at all keeps its name.
    // The reference holds as long as the cache.
    Folder& Look(const std::string& folder, Trust trust = Trust::Strict);
    // What the name is called in the folder; empty if there is none. Exact first, then the first by name.
    std::string Match(Folder& folder, const std::string& name);

    // The own program is about to create an entry, and has done so: a listing that was right before stays
    // right, where reading it again for each new file would make long copies slow.
    void BeforeCreation(Folder& folder);
    void AfterCreation(Folder& folder, const std::string& name);
    // For changes of other kinds.
    void Forget();

    void EnterScope();
    void LeaveScope() { --m_scopeDepth; }
    // While the operator is asked in the midst of a scope: others look for themselves, and afterwards all is
    // looked at anew.
    int PauseScope() { return std::exchange(m_scopeDepth, 0); }
    void ResumeScope(int depth) {
        m_scopeDepth = depth;
        ++m_scope;
    }
    bool InScope() const { return m_scopeDepth > 0; }
    // Whether the folder was looked at in this scope, so that it needn't be again.
    bool IsSeen(const Folder& folder) const { return InScope() && folder.m_scope == m_scope; }

private:
    void Refresh(Folder& folder, const std::string& written, Trust trust);
    void List(Folder& folder);
    static void AddName(Folder& folder, const std::string& name);

    std::unordered_map<std::string, std::unique_ptr<Folder>> m_folders;
    std::uint64_t m_nextStamp = 0;
    std::uint64_t m_scope = 0;
    int m_scopeDepth = 0;
};
