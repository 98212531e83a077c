// The parts of an office document: files in an archive, with their media types and the relationships between
// them. What isn't touched is written as it was read.
#pragma once

#include <tinyxml2.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "reports/ooxml/ziparchive.h"

// Numbers go on from the largest one in use, but not from any up here: some writers draw them by lot, and
// behind the largest of all there is none.
inline constexpr int LargestCountedNumber = 1'000'000'000;

class CPackage {
public:
    // Throws COoxmlError.
    explicit CPackage(std::string_view bytes);

    // Parts are named without a leading "/".
    bool Has(const std::string& name) const { return m_byName.contains(name); }
    std::vector<std::string> Names() const;
    // Throws COoxmlError if it isn't there.
    const std::string& Bytes(const std::string& name) const;
    void Set(const std::string& name, std::string bytes);
    // Read from the file when the package is written.
    void AddFile(const std::string& name, const std::string& hostPath, unsigned int level);
    // `folder` with `stem`, the next number and `extension`, for a part that isn't there yet.
    std::string FreeName(const std::string& stem, const std::string& extension);

    // The part's media type; empty if none is told.
    std::string MediaType(const std::string& name) const;
    void SetMediaType(const std::string& name, const std::string& type);
    void SetExtensionType(const std::string& extension, const std::string& type);

    // The part that a relationship of that kind leads to, by the last word of the relationship's type; empty
    // if there is none. `from` empty is the package.
    std::string Related(const std::string& from, std::string_view kind) const;
    // The identifier of the new relationship. `target` is relative to the part's folder.
    std::string Relate(const std::string& from, const std::string& type, const std::string& target);

    bool Write(const CUnixFile& file);
    std::string Write();

private:
    const std::vector<ZipEntry>& Assemble();
    ZipEntry& Entry(const std::string& name);
    tinyxml2::XMLDocument& Relations(const std::string& from);

    std::vector<ZipEntry> m_entries;
    std::map<std::string, std::size_t> m_byName;
    tinyxml2::XMLDocument m_types;
    // Of those parts that were given relationships, by part name.
    std::map<std::string, tinyxml2::XMLDocument> m_relations;
    std::map<std::string, int> m_lastNumbers;
};
