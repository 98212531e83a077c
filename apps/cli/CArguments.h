// The words of a call: options by name, the rest by place.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// A call with wrong words; the program tells it with exit code 2.
class CUsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class CArguments {
public:
    // `withValue` options take the next word; `flags` stand alone. A repeated option throws, unless its
    // name ends in "*" in `withValue`. A negative number is no option.
    CArguments(const std::vector<std::string>& words, const std::set<std::string>& withValue,
               const std::set<std::string>& flags);

    bool Has(const std::string& option) const { return m_options.contains(option); }
    std::optional<std::string> Get(const std::string& option) const;
    std::vector<std::string> GetAll(const std::string& option) const;
    std::string Require(const std::string& option) const;
    std::int32_t RequireId(const std::string& option) const;
    std::optional<float> GetNumber(const std::string& option) const;

    const std::vector<std::string>& Places() const { return m_places; }
    // Throws unless there are between `least` and `most` words by place.
    void ExpectPlaces(std::size_t least, std::size_t most) const;

private:
    std::multimap<std::string, std::string> m_options;
    std::vector<std::string> m_places;
};

// A whole number from 0 on, as IDs are.
std::int32_t ParseId(std::string_view text);
