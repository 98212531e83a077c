// Zip archives, as office documents are packed in: read whole from memory, written in one go. Nothing but
// content goes in: every entry carries the same time, so that equal documents are equal files.
#pragma once

#include <string>
#include <string_view>
#include <vector>

class CUnixFile;

struct ZipEntry {
    std::string Name;
    std::string Bytes;
    // If not empty the content is that of this file, and `Bytes` stays empty. Pictures are read only when the
    // archive is written, since thousands of them don't fit into memory.
    std::string HostPath;
    // Deflate level 1 to 9; 0 stores, as for pictures, which are compressed as they are.
    unsigned int Level = 6;
};

// What a hostile or broken archive may cost at most.
struct ZipLimits {
    std::size_t Entries = 1000;
    std::size_t EntryBytes = 64U << 20U;
    std::size_t TotalBytes = 128U << 20U;
};

// Folders are left out. Throws COoxmlError: not an archive, damaged, encrypted, two entries of one name,
// names that lead elsewhere, over the limits.
std::vector<ZipEntry> ReadZip(std::string_view bytes, const ZipLimits& limits = {});

// Writes to the descriptor of an empty file; entries in their order. False if it can't be written or a file
// of an entry can't be read.
bool WriteZip(const CUnixFile& file, const std::vector<ZipEntry>& entries);
// Throws COoxmlError. For small archives.
std::string WriteZip(const std::vector<ZipEntry>& entries);
