// XML of any length as a row of events, without a tree.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

class CZipReader;

// Names come without their prefix. What a member throws ends the reading and comes out of StreamXml.
class CXmlEvents {
public:
    virtual ~CXmlEvents() = default;
    // `attributes`: name and value by turns, ending with null; names with their prefix.
    virtual void Begin(std::string_view name, const char** attributes) = 0;
    virtual void End(std::string_view name) = 0;
    // A text may come in several pieces.
    virtual void Text(std::string_view text) = 0;
};

// Empty if there is none of that name.
std::string_view AttributeOf(const char** attributes, std::string_view name);

// Reads a part of an archive. Throws COoxmlError: not there, damaged, more than `most` bytes, no XML, a
// document type, a name or tag of megabytes.
void StreamXml(const CZipReader& archive, const std::string& part, std::uint64_t most, CXmlEvents& events);
