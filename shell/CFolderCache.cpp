#include "shell/CFolderCache.h"

#include <dirent.h>

#include <ctime>

#include "shell/textcodec.h"

namespace {

bool SameTime(const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// A folder changed this short a time ago may change again without its time moving on.
bool IsFresh(const timespec& time) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return (now.tv_sec - time.tv_sec) * 1000 + (now.tv_nsec - time.tv_nsec) / 1000000 < 100;
}

bool StatFolder(const std::string& host, struct stat& state) {
    return stat(host.empty() ? "." : host.c_str(), &state) == 0 && S_ISDIR(state.st_mode);
}

std::string Join(const std::string& folder, const std::string& name) {
    return folder.empty() || folder.ends_with('/') ? folder + name : folder + '/' + name;
}

}  // namespace

void CFolderCache::EnterScope() {
    if (m_scopeDepth++ == 0) {
        ++m_scope;
    }
}

void CFolderCache::Forget() {
    for (auto& [written, folder] : m_folders) {
        folder->m_listed = false;
        folder->m_scope = 0;
        folder->Stamp = ++m_nextStamp;
    }
}

CFolderCache::Folder& CFolderCache::Look(const std::string& written, Trust trust) {
    std::unique_ptr<Folder>& slot = m_folders[written];
    if (!slot) {
        slot = std::make_unique<Folder>();
        slot->Stamp = ++m_nextStamp;
    }
    Folder& folder = *slot;
    if (!InScope() || folder.m_scope != m_scope) {
        Refresh(folder, written, trust);
        folder.m_scope = m_scope;
    }
    return folder;
}

void CFolderCache::Refresh(Folder& folder, const std::string& written, Trust trust) {
    struct stat state {};
    std::string host = written;
    bool exists = StatFolder(host, state);
    const std::size_t slash = written.rfind('/');
    if (!exists && !written.empty() && written != "/") {
        const std::string name = written.substr(slash + 1);
        Folder& parent =
            Look(slash == std::string::npos ? std::string() : written.substr(0, slash == 0 ? 1 : slash));
        const std::string match = parent.Exists ? Match(parent, name) : std::string();
        host = Join(parent.Host, match.empty() ? name : match);
        exists = !match.empty() && StatFolder(host, state);
    }
    const bool same = exists && folder.Exists && folder.Host == host &&
                      SameTime(folder.m_time, state.st_mtim) &&
                      (!folder.m_fresh || trust == Trust::OwnFolder);
    if (!same) {
        folder.m_listed = false;
        folder.Stamp = ++m_nextStamp;
    }
    folder.Host = std::move(host);
    folder.Exists = exists;
    folder.m_time = state.st_mtim;
}

void CFolderCache::AddName(Folder& folder, const std::string& name) {
    if (!folder.m_names.insert(name).second) {
        return;
    }
    const auto [at, added] = folder.m_byLowerCase.try_emplace(LowerCase(name), name);
    if (!added && name < at->second) {
        at->second = name;
    }
}

void CFolderCache::List(Folder& folder) {
    folder.m_names.clear();
    folder.m_byLowerCase.clear();
    if (DIR* directory = opendir(folder.Host.empty() ? "." : folder.Host.c_str())) {
        while (const dirent* entry = readdir(directory)) {
            AddName(folder, entry->d_name);
        }
        closedir(directory);
    }
    folder.m_listed = true;
    folder.m_fresh = IsFresh(folder.m_time);
}

std::string CFolderCache::Match(Folder& folder, const std::string& name) {
    if (!folder.Exists) {
        return {};
    }
    if (!folder.m_listed) {
        List(folder);
    }
    if (folder.m_names.contains(name)) {
        return name;
    }
    const auto found = folder.m_byLowerCase.find(LowerCase(name));
    return found == folder.m_byLowerCase.end() ? std::string() : found->second;
}

void CFolderCache::BeforeCreation(Folder& folder) {
    struct stat state {};
    if (!StatFolder(folder.Host, state) || !SameTime(state.st_mtim, folder.m_time)) {
        folder.m_listed = false;
    }
}

void CFolderCache::AfterCreation(Folder& folder, const std::string& name) {
    folder.Stamp = ++m_nextStamp;
    if (!folder.m_listed) {
        folder.m_scope = 0;
        return;
    }
    AddName(folder, name);
    struct stat state {};
    if (StatFolder(folder.Host, state)) {
        folder.m_time = state.st_mtim;
        folder.m_fresh = true;
        folder.Exists = true;
    }
}
