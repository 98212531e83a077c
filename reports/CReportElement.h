// An element of a report's data file while it is being made. The file of a large project has a million of
// them, so attributes lie packed in one text; a tree of a parser's nodes takes ten times the memory.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class CReportElement {
public:
    // A root.
    explicit CReportElement(std::string name)
        : m_name(std::move(name)), m_names(std::make_shared<CNames>()) {}
    CReportElement(const CReportElement&) = delete;
    CReportElement& operator=(const CReportElement&) = delete;

    CReportElement& Add(std::string name);  // at the end; this owns it
    // Attributes stand in the order in which they are set first. What can't stand in XML at all, such as a
    // control character, is left out.
    void Set(std::string_view name, std::string_view value);

    // Room for so many more bytes of values in so many attributes, in one piece.
    void Reserve(std::size_t attributes, std::size_t bytes);

    // Elements in lines of their own, indented by four blanks a level, as the readers of the file know it.
    // `sink` gets whole lines, some at a time.
    using Sink = std::function<bool(std::string_view text)>;
    bool Print(const Sink& sink) const;  // false as soon as the sink is

private:
    // The few names of attributes, of a whole tree. Up to 65,535 of them.
    class CNames {
    public:
        std::size_t NumberOf(std::string_view name);
        const std::string& Name(std::size_t number) const { return m_names[number]; }

    private:
        std::deque<std::string> m_names;
        std::map<std::string, std::size_t, std::less<>> m_numbers;
    };

    CReportElement(std::string name, std::shared_ptr<CNames> names)
        : m_name(std::move(name)), m_names(std::move(names)) {}
    bool Print(std::string& text, int depth, const Sink& sink) const;

    std::string m_name;
    std::string m_attributes;  // number of the name in two bytes, value, zero byte
    std::shared_ptr<CNames> m_names;
    std::vector<std::unique_ptr<CReportElement>> m_children;
};
