#include "store/CDbBase.h"

#include <openssl/evp.h>
#include <sqlcipher/sqlite3.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>

#include "shell/CClock.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "store/CNewDatabaseFile.h"
#include "store/engineerror.h"
#include "store/sqltext.h"

namespace {

// The key of a file follows from its password alone, so that one stretching a process is enough and the
// listing of a folder of projects doesn't pay for each. The password is a constant that anybody can
// read; more rounds would cost time and protect nothing.
constexpr std::string_view KeySalt = "drovane project";
constexpr int KeyRounds = 10000;

constexpr std::uintmax_t PageSize = 4096;

int CollateNoCase(void*, int sizeA, const void* a, int sizeB, const void* b) {
    return CompareNoCase({static_cast<const char*>(a), static_cast<std::size_t>(sizeA)},
                         {static_cast<const char*>(b), static_cast<std::size_t>(sizeB)});
}

void SqlNow(sqlite3_context* context, int, sqlite3_value**) {
    const std::string text = FormatTime(Clock().LocalNow(), DatabaseTimeFormat);
    sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

bool StartsWithSelect(std::string_view statement) {
    constexpr std::string_view word = "select";
    return EqualNoCase(statement.substr(0, word.size()), word);
}

bool ChangesRows(std::string_view statement) {
    constexpr std::array<std::string_view, 3> words{"insert", "update", "delete"};
    return std::any_of(words.begin(), words.end(), [&](std::string_view word) {
        return EqualNoCase(statement.substr(0, word.size()), word);
    });
}

template <class Function>
const Function& FunctionOf(sqlite3_context* context) {
    return *static_cast<const Function*>(sqlite3_user_data(context));
}

void CallNumber(sqlite3_context* context, int, sqlite3_value**) {
    sqlite3_result_int64(context, FunctionOf<std::function<std::int64_t()>>(context)());
}

void CallText(sqlite3_context* context, int, sqlite3_value**) {
    const std::string text = FunctionOf<std::function<std::string()>>(context)();
    sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

template <class Function>
void AddFunction(sqlite3* connection, const char* name, Function function,
                 void (*call)(sqlite3_context*, int, sqlite3_value**)) {
    const auto destroy = [](void* known) { delete static_cast<Function*>(known); };
    // Destroys it also if it fails.
    if (sqlite3_create_function_v2(connection, name, 0, SQLITE_UTF8, new Function(std::move(function)), call,
                                   nullptr, nullptr, destroy) != SQLITE_OK) {
        throw EngineError(connection);
    }
}

using Backup = std::unique_ptr<sqlite3_backup, int (*)(sqlite3_backup*)>;

constexpr int BackupSlice = 512;  // pages

}  // namespace

std::string DatabaseKey(std::string_view password) {
    static std::map<std::string, std::string, std::less<>> known;
    const auto found = known.find(password);
    if (found != known.end()) {
        return found->second;
    }
    std::array<unsigned char, 32> key{};
    if (PKCS5_PBKDF2_HMAC(password.data(), static_cast<int>(password.size()),
                          reinterpret_cast<const unsigned char*>(KeySalt.data()),
                          static_cast<int>(KeySalt.size()), KeyRounds, EVP_sha256(),
                          static_cast<int>(key.size()), key.data()) != 1) {
        throw CDbError("no key could be made");
    }
    std::string hex;
    for (const unsigned char byte : key) {
        constexpr char digits[] = "0123456789abcdef";
        hex += digits[byte >> 4];
        hex += digits[byte & 15];
    }
    return known.emplace(password, hex).first->second;
}

CDbBase::~CDbBase() {
    Disconnect();
}

void CDbBase::Close() {
    Disconnect();
}

void CDbBase::Disconnect() {
    if (m_watch != nullptr) {
        if (m_batchDepth == 0) {
            m_watch->Closing();
        }
        m_watch.reset();
    }
    if (m_connection != nullptr) {
        if (m_batchDepth > 0 && !IsBatchLost()) {
            sqlite3_exec(m_connection, "COMMIT", nullptr, nullptr, nullptr);
        }
        m_statements.Clear();
        sqlite3_close_v2(m_connection);
        m_connection = nullptr;
    }
    m_batchDepth = 0;
    m_openFile.Release();
    m_path.clear();
    m_hostPath.clear();
}

bool CDbBase::IsReadOnly() const {
    return IsOpen() && sqlite3_db_readonly(m_connection, "main") == 1;
}

bool CDbBase::FileGone() const {
    return IsOpen() && !m_hostPath.empty() && !m_openFile.IsAt(m_hostPath);
}

void CDbBase::SaveCopy(std::string_view path, CTemporaryTwin::Existing existing,
                       const std::function<void(std::int64_t, std::int64_t)>& progress) {
    if (!IsOpen()) {
        throw CDbError("no database is open");
    }
    const std::string target = HostFiles().HostPath(path);
    if (COpenFile::IsOpen(target)) {
        throw CDbError("the target is open");
    }
    CNewDatabaseFile file(target);
    {
        CDbBase copy;
        copy.Create(file.Name(), CDbPassword);
        Backup backup(sqlite3_backup_init(copy.m_connection, "main", m_connection, "main"),
                      sqlite3_backup_finish);
        int result = backup == nullptr ? SQLITE_ERROR : SQLITE_OK;
        while (result == SQLITE_OK) {
            result = sqlite3_backup_step(backup.get(), progress ? BackupSlice : -1);
            if (progress) {
                const int pages = sqlite3_backup_pagecount(backup.get());
                progress(pages - sqlite3_backup_remaining(backup.get()), pages);
            }
        }
        if (sqlite3_backup_finish(backup.release()) != SQLITE_OK || result != SQLITE_DONE) {
            throw EngineError(copy.m_connection);
        }
        copy.DropOwnTables();
    }
    file.Flush(DefaultMode());
    file.TakePlace(existing);
}

// Nothing of them is left in the bytes of the file.
void CDbBase::DropOwnTables() {
    std::vector<std::string> names;
    for (CDbCursor rows = ExecuteAsIs(std::string("SELECT name FROM sqlite_master WHERE type = 'table' AND "
                                                  "substr(name, 1, 4) = '") +
                                      OwnTablePrefix + "'");
         !rows.IsEof(); rows.MoveNext()) {
        names.push_back(rows.GetText("name"));
    }
    if (names.empty()) {
        return;
    }
    Run("PRAGMA secure_delete = ON");
    CDbBatch batch(*this);
    for (const std::string& name : names) {
        Run("DROP TABLE \"" + name + '"');
    }
    batch.Commit();
}

bool CDbBase::Open(std::string_view path, std::string_view password, Access access) {
    Close();
    try {
        const std::string hostPath = HostFiles().HostPath(path);
        if (!m_openFile.Claim(hostPath)) {
            throw CDbError("no such file, or open already");
        }
        // The engine takes an empty file for a new database and would write into it.
        std::error_code error;
        if (std::filesystem::file_size(hostPath, error) < PageSize) {
            throw CDbError("too short for a database");
        }
        // What a crash left half done can only be taken back by who may write.
        const bool shared =
            (access == Access::Shared || EqualNoCase(GetFileExtension(path), ReadOnlyExtension)) &&
            !std::filesystem::exists(hostPath + "-journal", error);
        Connect(hostPath, password, shared ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
        m_path = path;
        m_hostPath = hostPath;
        return true;
    } catch (const CDbError&) {
        Disconnect();
        ShowMessage(2000, path);
        return false;
    }
}

void CDbBase::Create(const std::string& hostPath, std::string_view password) {
    Close();
    std::error_code error;
    if (std::filesystem::exists(hostPath, error)) {
        throw CDbError("the new file is there already");
    }
    Connect(hostPath, password, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    Run("CREATE TABLE Probe (ID INTEGER)");  // makes the file come into being
    Run("DROP TABLE Probe");
    if (!m_openFile.Claim(hostPath)) {
        throw CDbError("the new file isn't there");
    }
}

void CDbBase::Connect(const std::string& hostPath, std::string_view password, int flags) {
    const std::string key = DatabaseKey(password);
    // A connection never leaves its thread, so the engine needs no locks of its own.
    if (sqlite3_open_v2(hostPath.c_str(), &m_connection, flags | SQLITE_OPEN_NOMUTEX, nullptr) != SQLITE_OK) {
        throw EngineError(m_connection);
    }
    Run("PRAGMA key = \"x'" + key + "'\"");
    Run("PRAGMA cipher_page_size = " + std::to_string(PageSize));
    Run("PRAGMA locking_mode = EXCLUSIVE");
    Run("PRAGMA synchronous = FULL");
    AddFunctions();
    // The first lock is taken here, and with the locking mode above it stays. The engine refuses an
    // exclusive one on a file that can't be written.
    const bool readOnly = sqlite3_db_readonly(m_connection, "main") == 1;
    Run(readOnly ? "BEGIN" : "BEGIN EXCLUSIVE");
    Run("SELECT count(*) FROM sqlite_master");
    Run("COMMIT");
}

void CDbBase::AddFunctions() {
    // The schema says NOCASE, which every tool knows but folds ASCII only; here it folds all letters. No
    // text column has an index, so the other order inside the files of other tools does no harm.
    sqlite3_create_collation(m_connection, "NOCASE", SQLITE_UTF8, nullptr, CollateNoCase);
    sqlite3_create_function(m_connection, "now", 0, SQLITE_UTF8, nullptr, SqlNow, nullptr, nullptr);
}

void CDbBase::CreateInMemory() {
    Close();
    constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    if (sqlite3_open_v2(":memory:", &m_connection, flags, nullptr) != SQLITE_OK) {
        throw CDbError("no memory for a database");
    }
    AddFunctions();
}

void CDbBase::Run(const std::string& statement) const {
    if (sqlite3_exec(m_connection, statement.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw EngineError(m_connection);
    }
}

CDbBase::COther::COther(CDbBase& database, std::string_view path) : m_database(database) {
    const std::string hostPath = HostFiles().HostPath(path);
    if (!m_openFile.Claim(hostPath)) {
        throw CDbError("no such file, or open already");
    }
    std::string quoted;
    for (const char c : hostPath) {
        quoted += c == '\'' ? "''" : std::string(1, c);
    }
    m_database.Run("PRAGMA cipher_default_page_size = " + std::to_string(PageSize));
    m_database.Run("ATTACH DATABASE '" + quoted + "' AS other KEY \"x'" + DatabaseKey(CDbPassword) + "'\"");
    try {
        m_database.Run("SELECT count(*) FROM other.sqlite_master");
    } catch (const CDbError&) {
        sqlite3_exec(m_database.m_connection, "DETACH DATABASE other", nullptr, nullptr, nullptr);
        throw;
    }
}

CDbBase::COther::~COther() {
    // Statements kept for later would hold it.
    m_database.m_statements.Clear();
    sqlite3_exec(m_database.m_connection, "DETACH DATABASE other", nullptr, nullptr, nullptr);
}

void CDbBase::Define(const char* name, std::function<std::int64_t()> function) {
    AddFunction(m_connection, name, std::move(function), CallNumber);
}

void CDbBase::Define(const char* name, std::function<std::string()> function) {
    AddFunction(m_connection, name, std::move(function), CallText);
}

void CDbBase::RequireUsable(bool changes) const {
    if (m_connection == nullptr) {
        throw CDbError("no database is open");
    }
    if (m_batchDepth > 0 && IsBatchLost()) {
        throw CDbError("the batch was lost");
    }
    if (changes && FileGone()) {
        throw CDbError("the file has gone", CDbError::Why::FileGone);
    }
}

CDbCursor CDbBase::Execute(std::string_view statement) {
    RequireUsable(!StartsWithSelect(statement));
    if (m_watch != nullptr && ChangesRows(statement)) {
        return ExecuteWatched(statement);
    }
    return ExecuteNow(statement);
}

CDbCursor CDbBase::ExecuteNow(std::string_view statement) {
    CDbCursor cursor(m_statements.Take(m_connection, TranslateSql(statement)));
    m_lastInsertId = sqlite3_last_insert_rowid(m_connection);
    return cursor;
}

CDbCursor CDbBase::ExecuteAsIs(const std::string& statement) {
    RequireUsable(!StartsWithSelect(statement));
    return CDbCursor(m_statements.TakeAsIs(m_connection, statement));
}

CDbCursor CDbBase::ExecuteWatched(std::string_view statement) {
    m_watch->BeforeChange();
    if (!m_watch->HasPending()) {
        return ExecuteNow(statement);
    }
    CDbBatch batch(*this);
    try {
        CDbCursor cursor = ExecuteNow(statement);
        m_watch->WritePending();
        batch.Commit();
        return cursor;
    } catch (const CDbError&) {
        if (m_batchDepth == 1) {
            batch.Discard();
        }
        throw;
    }
}

std::int64_t CDbBase::ChangeCount() const {
    return m_connection == nullptr ? 0 : sqlite3_total_changes(m_connection);
}

std::int32_t CDbBase::LastInsertId() const {
    return m_connection == nullptr ? 0 : static_cast<std::int32_t>(m_lastInsertId);
}

void CDbBase::BeginBatch() {
    if (m_connection == nullptr) {
        throw CDbError("no database is open");
    }
    if (m_batchDepth == 0) {
        Run("BEGIN");
        ++m_batchSerial;
    }
    ++m_batchDepth;
}

void CDbBase::EndBatch() {
    if (m_batchDepth == 0 || --m_batchDepth > 0) {
        return;  // closed in between, or an inner one
    }
    if (IsBatchLost()) {
        throw CDbError("the batch was lost");
    }
    try {
        if (FileGone()) {
            throw CDbError("the file has gone", CDbError::Why::FileGone);
        }
        Run("COMMIT");
    } catch (const CDbError&) {
        sqlite3_exec(m_connection, "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

void CDbBase::DiscardBatch() {
    if (m_batchDepth > 0 && !IsBatchLost()) {
        Run("ROLLBACK");  // the batch counts as lost from here on
    }
}

bool CDbBase::IsBatchLost() const {
    return sqlite3_get_autocommit(m_connection) != 0;
}

CDbBatch::CDbBatch(CDbBase& database) : m_database(database) {
    m_database.BeginBatch();
}

CDbBatch::~CDbBatch() {
    try {
        Commit();
    } catch (const CDbError&) {
        // Whoever leaves without Commit has told of a failure already.
    }
}

void CDbBatch::Commit() {
    if (m_open) {
        m_open = false;
        m_database.EndBatch();
    }
}

void CDbBatch::Discard() {
    m_database.DiscardBatch();
}

bool CDbBatch::IsLost() const {
    return !m_database.IsOpen() || m_database.IsBatchLost();
}
