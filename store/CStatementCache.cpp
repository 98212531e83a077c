#include "store/CStatementCache.h"

#include <sqlcipher/sqlite3.h>

#include <algorithm>
#include <array>

#include "shell/numbers.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "store/engineerror.h"

namespace {

constexpr std::size_t MaxIdle = 32;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsWordCharacter(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte | 32) >= 'a' && (byte | 32) <= 'z' ? true : IsDigit(c) || c == '_' || byte >= 0x80;
}

// Definitions can't have their values beside them.
bool CanLift(const std::string& statement) {
    constexpr std::array<std::string_view, 4> verbs{"select", "insert", "update", "delete"};
    const std::string_view verb = TrimBlanks(statement).substr(0, 6);
    return std::any_of(verbs.begin(), verbs.end(),
                       [&](std::string_view known) { return EqualNoCase(verb, known); });
}

std::size_t NumberEnd(const std::string& text, std::size_t at) {
    const auto skipDigits = [&] {
        while (at < text.size() && IsDigit(text[at])) {
            ++at;
        }
    };
    skipDigits();
    if (at < text.size() && text[at] == '.') {
        ++at;
        skipDigits();
    }
    if (at < text.size() && (text[at] | 32) == 'e') {
        ++at;
        if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
            ++at;
        }
        skipDigits();
    }
    return at;
}

// The text behind the quote at `at`; `at` moves behind its end.
std::string TakeQuoted(const std::string& statement, std::size_t& at) {
    std::string text;
    for (++at; at < statement.size(); ++at) {
        if (statement[at] == '\'') {
            ++at;
            if (at >= statement.size() || statement[at] != '\'') {
                break;
            }
        }
        text += statement[at];
    }
    return text;
}

void Bind(sqlite3_stmt* statement, int index, const LiftedSql::Value& value) {
    int result = SQLITE_OK;
    if (value.IsText) {
        result = sqlite3_bind_text(statement, index, value.Text.data(), static_cast<int>(value.Text.size()),
                                   SQLITE_TRANSIENT);
    } else if (const auto whole = ParseWholeInt(value.Text)) {
        result = sqlite3_bind_int64(statement, index, *whole);
    } else {
        result = sqlite3_bind_double(statement, index, ParseDouble(value.Text));
    }
    if (result != SQLITE_OK) {
        throw CDbError("a value that the engine doesn't take");
    }
}

}  // namespace

LiftedSql LiftValues(const std::string& statement) {
    LiftedSql lifted;
    if (!CanLift(statement)) {
        lifted.Text = statement;
        return lifted;
    }
    for (std::size_t at = 0; at < statement.size();) {
        const char c = statement[at];
        if (c == '\'') {
            lifted.Values.push_back({true, TakeQuoted(statement, at)});
            lifted.Text += '?';
        } else if (IsDigit(c)) {
            const std::size_t end = NumberEnd(statement, at);
            lifted.Values.push_back({false, statement.substr(at, end - at)});
            lifted.Text += '?';
            at = end;
        } else if (IsWordCharacter(c)) {
            while (at < statement.size() && IsWordCharacter(statement[at])) {
                lifted.Text += statement[at++];
            }
        } else {
            lifted.Text += c;
            ++at;
        }
    }
    return lifted;
}

CStatementCache::Idle::~Idle() {
    for (const auto& [text, statement] : Statements) {
        sqlite3_finalize(statement);
    }
}

void CStatementCache::Returner::operator()(sqlite3_stmt* statement) const {
    const std::shared_ptr<Idle> cache = m_cache.lock();
    if (cache && cache->Statements.size() < MaxIdle && !cache->Statements.contains(m_key)) {
        sqlite3_reset(statement);
        sqlite3_clear_bindings(statement);
        cache->Statements.emplace(m_key, statement);
    } else {
        sqlite3_finalize(statement);
    }
}

CStatementCache::Statement CStatementCache::TakeAsIs(sqlite3* connection, const std::string& statement) {
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(connection, statement.data(), static_cast<int>(statement.size()), &prepared,
                           nullptr) != SQLITE_OK) {
        throw EngineError(connection);
    }
    if (prepared == nullptr) {
        throw CDbError("an empty statement");
    }
    return Statement(prepared, Returner());
}

CStatementCache::Statement CStatementCache::Take(sqlite3* connection, const std::string& text) {
    const LiftedSql lifted = LiftValues(text);
    Statement statement;
    const auto idle = m_idle->Statements.find(lifted.Text);
    if (idle != m_idle->Statements.end()) {
        statement = Statement(idle->second, Returner(m_idle, lifted.Text));
        m_idle->Statements.erase(idle);
    } else {
        statement = Statement(TakeAsIs(connection, lifted.Text).release(), Returner(m_idle, lifted.Text));
    }
    for (std::size_t i = 0; i < lifted.Values.size(); ++i) {
        Bind(statement.get(), static_cast<int>(i) + 1, lifted.Values[i]);
    }
    return statement;
}
