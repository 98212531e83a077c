// One entry of a zip archive after the other, unpacked piece by piece: for parts that are too large to be
// held whole, such as the sheet of a workbook with a million rows.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

struct zip;

class CZipReader {
public:
    // `bytes` is the whole archive and must outlive this. Throws COoxmlError, as Read does.
    explicit CZipReader(std::string_view bytes);
    ~CZipReader();
    CZipReader(const CZipReader&) = delete;
    CZipReader& operator=(const CZipReader&) = delete;

    // Names are compared without regard to case, as those of parts of documents are.
    bool Has(const std::string& name) const { return Find(name) >= 0; }
    // At most `most` bytes; a larger entry is refused before anything of it is unpacked.
    void Read(const std::string& name, std::uint64_t most,
              const std::function<void(std::string_view)>& take) const;

private:
    std::int64_t Find(const std::string& name) const;

    zip* m_archive;
};
