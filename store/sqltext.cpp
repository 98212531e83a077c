#include "store/sqltext.h"

#include <algorithm>
#include <cmath>

#include "shell/numbers.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"

namespace {

// Copies the quoted text that begins at `at` as an engine's literal; returns where it ends.
std::size_t CopyQuoted(std::string_view statement, std::size_t at, std::string& out) {
    const char quote = statement[at];
    out += '\'';
    for (++at; at < statement.size(); ++at) {
        const char c = statement[at];
        if (c == quote) {
            const bool doubled = at + 1 < statement.size() && statement[at + 1] == quote;
            if (!doubled) {
                out += '\'';
                return at + 1;
            }
            ++at;
        }
        out += c;
        if (c == '\'') {
            out += '\'';
        }
    }
    throw CDbError("text without an end in a statement");
}

std::string DoubleQuotes(std::string_view text, char quote) {
    std::string out;
    for (const char c : text.substr(0, text.find('\0'))) {
        out += c;
        if (c == quote) {
            out += c;
        }
    }
    return out;
}

std::string SqlNumber(double value, int digits) {
    if (std::isnan(value)) {
        return "'NaN'";
    }
    if (std::isinf(value)) {
        return value < 0 ? "'-Infinity'" : "'Infinity'";
    }
    return FormatNumber(value, digits);
}

}  // namespace

std::string FormatSql(std::string_view statement, const std::vector<std::string>& values) {
    std::string out;
    auto value = values.begin();
    for (std::size_t at = 0; at < statement.size();) {
        const std::string_view rest = statement.substr(at);
        const std::size_t length = rest.starts_with("%s") || rest.starts_with("%d") ? 2U
                                   : rest.starts_with("%ld")                        ? 3U
                                                                                    : 0U;
        if (length == 0) {
            out += rest.front();
            ++at;
            continue;
        }
        if (value == values.end()) {
            throw CDbError("a statement with more places than values");
        }
        out += *value++;
        at += length;
    }
    if (value != values.end()) {
        throw CDbError("a statement with fewer places than values");
    }
    return out;
}

std::string EscapeSqlText(std::string_view text) {
    return DoubleQuotes(text, '\'');
}

std::string EscapeSqlQuoted(std::string_view text) {
    return DoubleQuotes(text, '"');
}

std::string QuoteSqlName(std::string_view name) {
    std::string text = "\"";
    for (const char c : name) {
        text += c;
        if (c == '"') {
            text += c;
        }
    }
    return text + '"';
}

std::string EscapeSqlPath(std::string_view path) {
    std::string text = LowerCase(path);
    std::replace(text.begin(), text.end(), '/', '\\');
    return EscapeSqlText(text);
}

std::string SqlDistance(double metresOrSeconds) {
    return SqlNumber(metresOrSeconds, 3);
}

std::string SqlCoordinate(double degrees) {
    return SqlNumber(degrees, 12);
}

std::string TranslateSql(std::string_view statement) {
    std::string out;
    out.reserve(statement.size() + 16);
    bool ended = false;
    for (std::size_t at = 0; at < statement.size();) {
        const std::string_view rest = statement.substr(at);
        const char c = rest.front();
        if (c == '\0' || rest.starts_with("--") || rest.starts_with("/*")) {
            throw CDbError("a comment or a zero character in a statement");
        }
        if (ended && c != ' ' && c != '\t') {
            throw CDbError("characters behind the end of a statement");
        }
        if (c == '\'' || c == '"') {
            at = CopyQuoted(statement, at, out);
            continue;
        }
        ended = ended || c == ';';
        out += c;
        ++at;
    }
    return out;
}
