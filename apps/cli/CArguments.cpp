#include "apps/cli/CArguments.h"

#include <limits>

#include "shell/numbers.h"

CArguments::CArguments(const std::vector<std::string>& words, const std::set<std::string>& withValue,
                       const std::set<std::string>& flags) {
    bool onlyPlaces = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (onlyPlaces || !word.starts_with('-') || word == "-" || ParseWholeDouble(word)) {
            m_places.push_back(word);
        } else if (word == "--") {
            onlyPlaces = true;
        } else if (flags.contains(word)) {
            m_options.emplace(word, "");
        } else if (withValue.contains(word) || withValue.contains(word + "*")) {
            if (i + 1 == words.size()) {
                throw CUsageError(word + " needs a value");
            }
            if (m_options.contains(word) && !withValue.contains(word + "*")) {
                throw CUsageError(word + " stands twice");
            }
            m_options.emplace(word, words[++i]);
        } else {
            throw CUsageError("unknown option " + word);
        }
    }
}

std::optional<std::string> CArguments::Get(const std::string& option) const {
    const auto found = m_options.find(option);
    return found == m_options.end() ? std::nullopt : std::optional(found->second);
}

std::vector<std::string> CArguments::GetAll(const std::string& option) const {
    std::vector<std::string> values;
    const auto [begin, end] = m_options.equal_range(option);
    for (auto at = begin; at != end; ++at) {
        values.push_back(at->second);
    }
    return values;
}

std::string CArguments::Require(const std::string& option) const {
    const std::optional<std::string> value = Get(option);
    if (!value) {
        throw CUsageError(option + " is needed");
    }
    return *value;
}

std::int32_t CArguments::RequireId(const std::string& option) const {
    return ParseId(Require(option));
}

std::optional<float> CArguments::GetNumber(const std::string& option) const {
    const std::optional<std::string> text = Get(option);
    if (!text) {
        return std::nullopt;
    }
    const std::optional<double> value = ParseWholeDouble(*text);
    if (!value || !(*value >= 0 && *value <= 1e6)) {
        throw CUsageError(option + " needs a number");
    }
    return static_cast<float>(*value);
}

void CArguments::ExpectPlaces(std::size_t least, std::size_t most) const {
    if (m_places.size() < least) {
        throw CUsageError("something is missing");
    }
    if (m_places.size() > most) {
        throw CUsageError("too many words: " + m_places[most]);
    }
}

std::int32_t ParseId(std::string_view text) {
    const std::optional<std::int64_t> id = ParseWholeInt(text);
    if (!id || *id < 0 || *id > std::numeric_limits<std::int32_t>::max()) {
        throw CUsageError("no ID: " + std::string(text));
    }
    return static_cast<std::int32_t>(*id);
}
