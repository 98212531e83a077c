// Statements come as texts with their values in them. Most differ in these values only, so the values are
// taken out and handed to the engine beside the statement, which then need be compiled only once. That
// also keeps values what they are: no text of a field file is ever parsed by the engine.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

// A statement whose values have become "?".
struct LiftedSql {
    struct Value {
        bool IsText;
        std::string Text;  // of a number: as it stood
    };
    std::string Text;
    std::vector<Value> Values;
};

// From the engine's dialect (texts in single quotes).
LiftedSql LiftValues(const std::string& statement);

class CStatementCache {
private:
    // Compiled statements that nobody uses at the moment.
    struct Idle {
        ~Idle();
        std::unordered_map<std::string, sqlite3_stmt*> Statements;
    };

public:
    // Gives the statement back to its cache, or ends it if that is gone.
    class Returner {
    public:
        Returner() = default;
        Returner(std::weak_ptr<Idle> cache, std::string key)
            : m_cache(std::move(cache)), m_key(std::move(key)) {}
        void operator()(sqlite3_stmt* statement) const;

    private:
        std::weak_ptr<Idle> m_cache;
        std::string m_key;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Returner>;

    // Ready to run. Throws CDbError.
    Statement Take(sqlite3* connection, const std::string& statement);
    // In the engine's dialect, with its values left in it; it isn't kept. Throws CDbError.
    Statement TakeAsIs(sqlite3* connection, const std::string& statement);
    // Before the connection goes. Statements still in use end themselves.
    void Clear() { m_idle = std::make_shared<Idle>(); }

private:
    std::shared_ptr<Idle> m_idle = std::make_shared<Idle>();
};
