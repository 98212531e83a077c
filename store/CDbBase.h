// The thin layer between the program and its database files: one connection, statements as text, values
// read by column name. Nothing above it sees the engine.
//
// A file is SQLCipher, AES-256, with pages of 4096 bytes; docs/files.md tells how to open one with
// standard tools. An open file is locked exclusively: a second open fails, from another process and from
// this one, until Close. A file that can't be written opens for reading, with a shared lock.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "shell/CTemporaryTwin.h"
#include "store/CChangeWatch.h"
#include "store/CDbCursor.h"
#include "store/COpenFile.h"
#include "store/CStatementCache.h"

struct sqlite3;

// Of project files and criterion files alike.
inline constexpr const char* CDbPassword = "qmyd7315_=";

// Files of this ending are never changed, whatever they are opened for: restore points.
inline constexpr const char* ReadOnlyExtension = "point";

// Tables named so are about this one file, and not about the project in it.
inline constexpr const char* OwnTablePrefix = "Aux_";

// The raw key of files with this password, 64 hexadecimal digits. Throws CDbError.
std::string DatabaseKey(std::string_view password);

class CDbBase {
public:
    CDbBase() = default;
    virtual void Close();
    virtual ~CDbBase();
    CDbBase(const CDbBase&) = delete;
    CDbBase& operator=(const CDbBase&) = delete;

    // Shared is for looking: others may look at the same time, and nothing can be changed.
    // Making is for a file that comes into being or goes: what changes there is in no journal.
    enum class Access { Exclusive, Shared, Making };
    // `path` is a path text. Closes what was open. Failure shows message 2000 with the path.
    bool Open(std::string_view path, std::string_view password, Access access = Access::Exclusive);
    bool IsOpen() const { return m_connection != nullptr; }
    // The path text that it was opened with; empty for what has no file.
    const std::string& Path() const { return m_path; }
    // Open for reading only, since the file can't be written.
    bool IsReadOnly() const;
    // The file has been moved, replaced or removed since it was opened: its name leads elsewhere. What is
    // changed now would be in no project, so Execute refuses changes then; reading goes on.
    bool FileGone() const;
    // Makes a copy of what is open, whole or not at all, and without the tables that belong to this file
    // alone (OwnTablePrefix). Throws CDbError. `path` is a path text; a file there is replaced, or with Keep
    // an error. Not while changes of a batch are pending. `progress` is told pages, done and in total; what
    // it throws ends the copy.
    void SaveCopy(std::string_view path,
                  CTemporaryTwin::Existing existing = CTemporaryTwin::Existing::Replace,
                  const std::function<void(std::int64_t, std::int64_t)>& progress = {});

    // Runs exactly one statement. Throws CDbError, also in a batch that was lost (see CDbBatch).
    CDbCursor Execute(std::string_view statement);
    // The same for a statement in the engine's own dialect; what it changes isn't watched.
    CDbCursor ExecuteAsIs(const std::string& statement);
    // While one lives, statements may name the tables of another database of the same password as
    // "other.Table". It is locked as if it were open. Throws CDbError; not inside a batch.
    class COther {
    public:
        COther(CDbBase& database, std::string_view path);
        ~COther();
        COther(const COther&) = delete;
        COther& operator=(const COther&) = delete;

    private:
        CDbBase& m_database;
        COpenFile m_openFile;
    };
    // What happens along with changes; null if nobody watches. It goes with Close.
    CChangeWatch* Watch() const { return m_watch.get(); }
    void SetWatch(std::unique_ptr<CChangeWatch> watch) { m_watch = std::move(watch); }
    // A function without arguments that statements of this connection may use. It must not throw.
    void Define(const char* name, std::function<std::int64_t()> function);
    void Define(const char* name, std::function<std::string()> function);
    // Counts up whenever a batch begins; 0 outside of batches. What is remembered for the length of a
    // batch carries it.
    std::uint64_t BatchSerial() const { return m_batchDepth > 0 ? m_batchSerial : 0; }
    // Counts the rows that this connection has changed.
    std::int64_t ChangeCount() const;
    // The key that the last insert of Execute was given; what a watch inserts along with it doesn't count.
    std::int32_t LastInsertId() const;

    // A new, empty, encrypted file for the makers of criterion files; an existing one is an error.
    // Throws CDbError.
    void Create(const std::string& hostPath, std::string_view password);
    // Without a file, gone with Close. Throws CDbError.
    void CreateInMemory();

private:
    friend class CDbBatch;
    friend class CTableWriter;
    void BeginBatch();
    void EndBatch();
    void DiscardBatch();
    bool IsBatchLost() const;

    void Connect(const std::string& hostPath, std::string_view password, int flags);
    void AddFunctions();
    void DropOwnTables();
    void RequireUsable(bool changes) const;
    CDbCursor ExecuteNow(std::string_view statement);
    CDbCursor ExecuteWatched(std::string_view statement);
    void Run(const std::string& statement) const;
    void Disconnect();

    sqlite3* m_connection = nullptr;
    CStatementCache m_statements;
    std::unique_ptr<CChangeWatch> m_watch;
    COpenFile m_openFile;
    std::string m_path;
    std::string m_hostPath;  // empty for what has no file
    std::int64_t m_lastInsertId = 0;
    int m_batchDepth = 0;
    std::uint64_t m_batchSerial = 0;
};

// Operations of many statements run inside one. It commits whatever was done on every way out, failing
// ones included: what an operation has done so far stays, statement by statement, but a crash leaves all
// of it or nothing, and two thousand statements cost one flush. Batches nest; the outermost one commits.
class CDbBatch {
public:
    explicit CDbBatch(CDbBase& database);  // throws CDbError
    ~CDbBatch();
    CDbBatch(const CDbBatch&) = delete;
    CDbBatch& operator=(const CDbBatch&) = delete;

    // Throws CDbError if what was done could not be stored; nothing of it is in the file then.
    void Commit();
    // Takes back what was done since the outermost batch began. Nothing more can be done in it.
    void Discard();
    // Whether the engine had to give the whole batch up (a full disk). Nothing more can be done in it.
    bool IsLost() const;

private:
    CDbBase& m_database;
    bool m_open = true;
};
