#include "shell/CFileMirror.h"

#include <sys/stat.h>
#include <sys/xattr.h>

#include <filesystem>

#include "shell/CHostFiles.h"
#include "shell/CProgress.h"
#include "shell/hostnames.h"

namespace fs = std::filesystem;

namespace {

// Where a copy remembers its source, so that the next run needn't copy again. A file system without
// extended attributes costs one more copy a run.
constexpr const char* SourceAttribute = "user.drovane.source";

bool SameTime(const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

std::string ReadSource(const std::string& file) {
    char buffer[4096];
    const ssize_t length = getxattr(file.c_str(), SourceAttribute, buffer, sizeof buffer);
    return length < 0 ? std::string() : std::string(buffer, static_cast<std::size_t>(length));
}

}  // namespace

CFileMirror::Mirror& CFileMirror::Resolve(std::string_view from, std::string_view to) {
    using Trust = CFolderCache::Trust;
    CFolderCache& folders = m_files.m_folders;
    const auto known = m_mirrors.find(from);
    Mirror& mirror = known != m_mirrors.end() ? known->second : m_mirrors[std::string(from)];
    const std::size_t slash = to.rfind('\\') + 1;  // 0 without one
    if (mirror.ToFolder != nullptr && *mirror.ToFolder == to.substr(0, slash) &&
        mirror.ToName == to.substr(slash)) {
        if (!folders.IsSeen(*mirror.SourceFolder)) {
            (void)folders.Look(*mirror.SourceParent);
        }
        if (!folders.IsSeen(*mirror.TargetFolder)) {
            (void)folders.Look(*mirror.TargetParent, Trust::OwnFolder);
        }
        if (mirror.SourceFolder->Stamp == mirror.SourceStamp &&
            mirror.TargetFolder->Stamp == mirror.TargetStamp) {
            return mirror;
        }
    }
    mirror.ToFolder = Shared(std::string(to.substr(0, slash)));
    mirror.ToName = to.substr(slash);
    const std::string source = m_files.Unresolved(from);
    const std::string target = m_files.Unresolved(to);
    mirror.SourceParent = Shared(ParentOf(source));
    mirror.TargetParent = Shared(ParentOf(target));
    mirror.SourceFolder = &folders.Look(*mirror.SourceParent);
    mirror.TargetFolder = &folders.Look(*mirror.TargetParent, Trust::OwnFolder);
    const auto resolve = [&](CFolderCache::Folder& folder, const std::string& name) {
        const std::string match = folders.Match(folder, name);
        return match.empty() ? name : match;
    };
    mirror.SourceName = resolve(*mirror.SourceFolder, NameOf(source));
    mirror.TargetName = resolve(*mirror.TargetFolder, NameOf(target));
    mirror.Holds = false;
    mirror.SourceStamp = mirror.SourceFolder->Stamp;
    mirror.TargetStamp = mirror.TargetFolder->Stamp;
    return mirror;
}

bool CFileMirror::Copy(std::string_view from, std::string_view to) {
    Mirror& mirror = Resolve(from, to);
    const std::string source = Join(mirror.SourceFolder->Host, mirror.SourceName);
    const std::string target = Join(mirror.TargetFolder->Host, mirror.TargetName);
    struct stat sourceState {};
    if (stat(source.c_str(), &sourceState) != 0 || !S_ISREG(sourceState.st_mode)) {
        return false;
    }
    if (mirror.Holds && mirror.Size == sourceState.st_size && SameTime(mirror.Time, sourceState.st_mtim)) {
        return true;
    }
    mirror.Size = sourceState.st_size;
    mirror.Time = sourceState.st_mtim;
    struct stat targetState {};
    if (stat(target.c_str(), &targetState) == 0) {
        const bool same =
            sourceState.st_ino == targetState.st_ino && sourceState.st_dev == targetState.st_dev;
        if (same || !S_ISREG(targetState.st_mode)) {
            return false;
        }
        auto remembered = m_mirrored.find(target);
        if (remembered == m_mirrored.end()) {
            remembered = m_mirrored.emplace(target, ReadSource(target)).first;
        }
        if (sourceState.st_size == targetState.st_size &&
            SameTime(sourceState.st_mtim, targetState.st_mtim) && remembered->second == source) {
            mirror.Holds = true;
            return true;
        }
    } else {
        std::error_code error;
        fs::create_directories(ParentOf(target), error);
    }
    CProgress silent;
    if (!m_files.CopyBytes(source, target, sourceState, false, CHostFiles::Existing::Replace, silent)) {
        m_mirrored.erase(target);
        return false;
    }
    (void)setxattr(target.c_str(), SourceAttribute, source.data(), source.size(), 0);
    m_mirrored.insert_or_assign(target, source);
    return true;
}
