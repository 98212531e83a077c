// Profile files (.ini): sections of `key=value` lines. Names of sections and keys ignore case; blanks
// around a value and one pair of quotes around it don't belong to it. Writing keeps everything else in
// the file as it stands: foreign sections and keys, comments, order.
#pragma once

#include <string>
#include <string_view>

// `content` is the whole file; texts are bytes, whatever their code page.
class CProfile {
public:
    explicit CProfile(std::string content) : m_content(std::move(content)) {}

    // The first key of that name in the first section of that name; empty if there is none.
    std::string Get(std::string_view section, std::string_view key) const;
    // Replaces the line of the key, or adds one at the end of the section. A line break can't be kept
    // in such a file: the value ends at the first.
    void Set(std::string_view section, std::string_view key, std::string_view value);

    const std::string& Content() const { return m_content; }

private:
    struct Place {
        bool SectionFound = false;
        bool KeyFound = false;
        std::size_t Begin = 0;  // of the key's line, or where a new line of the section belongs
        std::size_t End = 0;    // of the key's line, before its line break
    };
    Place Find(std::string_view section, std::string_view key) const;

    std::string m_content;
};
