// Copies of files that are to be like their sources, such as the pictures of a project in the folder that
// reports take them from. A copy takes over the modification time and remembers its source, so that looking
// again whether it still holds costs one look at the source.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "shell/CFolderCache.h"

class CHostFiles;

class CFileMirror {
public:
    explicit CFileMirror(CHostFiles& files) : m_files(files) {}
    CFileMirror(const CFileMirror&) = delete;
    CFileMirror& operator=(const CFileMirror&) = delete;

    // Makes `to` a copy of `from` if it isn't one yet. Both are path texts; `to` lies in a folder of the
    // program's own.
    bool Copy(std::string_view from, std::string_view to);

private:
    // Where a file resolves to, as long as neither folder changes.
    // One a picture of a project, so what many share is kept once.
    struct Mirror {
        const std::string* ToFolder = nullptr;  // the copy's path text, in two parts
        std::string ToName;
        CFolderCache::Folder* SourceFolder = nullptr;
        CFolderCache::Folder* TargetFolder = nullptr;
        std::uint64_t SourceStamp = 0;
        std::uint64_t TargetStamp = 0;
        const std::string* SourceParent = nullptr;  // as written
        const std::string* TargetParent = nullptr;
        std::string SourceName;  // what they are called in truth
        std::string TargetName;
        // What the copy was made from, once it has been seen to hold; it stays so until the folder changes.
        bool Holds = false;
        off_t Size = 0;
        timespec Time{};
    };

    // Looks up without making a string of the key.
    struct TextHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };

    const std::string* Shared(std::string text) { return &*m_shared.insert(std::move(text)).first; }
    Mirror& Resolve(std::string_view from, std::string_view to);

    CHostFiles& m_files;
    std::unordered_set<std::string> m_shared;
    // By source path text.
    std::unordered_map<std::string, Mirror, TextHash, std::equal_to<>> m_mirrors;
    std::unordered_map<std::string, std::string> m_mirrored;  // copy to source, host paths
};
