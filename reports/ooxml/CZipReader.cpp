#include "reports/ooxml/CZipReader.h"

#include <zip.h>

#include <memory>
#include <vector>

#include "reports/ooxml/COoxmlError.h"

namespace {

constexpr std::size_t PieceBytes = 1U << 20U;

struct CloseEntry {
    void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};

}  // namespace

CZipReader::CZipReader(std::string_view bytes) {
    zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, nullptr);
    m_archive = source == nullptr ? nullptr : zip_open_from_source(source, ZIP_RDONLY, nullptr);
    if (m_archive == nullptr) {
        if (source != nullptr) {
            zip_source_free(source);
        }
        throw COoxmlError(OoxmlFault::NoDocument);
    }
}

CZipReader::~CZipReader() {
    zip_discard(m_archive);
}

std::int64_t CZipReader::Find(const std::string& name) const {
    return zip_name_locate(m_archive, name.c_str(), ZIP_FL_NOCASE);
}

void CZipReader::Read(const std::string& name, std::uint64_t most,
                      const std::function<void(std::string_view)>& take) const {
    const std::int64_t index = Find(name);
    zip_stat_t about;
    zip_stat_init(&about);
    if (index < 0 || zip_stat_index(m_archive, static_cast<zip_uint64_t>(index), 0, &about) != 0 ||
        (about.valid & ZIP_STAT_SIZE) == 0) {
        throw COoxmlError(OoxmlFault::DamagedPart, {name});
    }
    if (about.size > most) {
        throw COoxmlError(OoxmlFault::TooLarge);
    }
    const std::unique_ptr<zip_file_t, CloseEntry> entry(
        zip_fopen_index(m_archive, static_cast<zip_uint64_t>(index), 0));
    std::vector<char> piece(PieceBytes);
    std::uint64_t total = 0;
    for (;;) {
        const zip_int64_t got = entry ? zip_fread(entry.get(), piece.data(), piece.size()) : -1;
        // The checksum is compared at the end.
        if (got < 0) {
            throw COoxmlError(OoxmlFault::DamagedPart, {name});
        }
        if (got == 0) {
            return;
        }
        total += static_cast<std::uint64_t>(got);
        if (total > most) {
            throw COoxmlError(OoxmlFault::TooLarge);
        }
        take({piece.data(), static_cast<std::size_t>(got)});
    }
}
