#include "store/jetconversion.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>

#include "shell/CHostFiles.h"
#include "shell/CProgress.h"
#include "shell/CPrompts.h"
#include "shell/CUnixFile.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "store/CDbCriterion.h"
#include "store/CDbError.h"
#include "store/COpenFile.h"
#include "store/jet/jetfile.h"
#include "store/jetlisting.h"

namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;

constexpr std::string_view OldEnding = ".jet";

// The operator doesn't want it any more.
class CStopped {};
// The new database can't be used, and its message was shown.
class CUnusable {};

[[noreturn]] void Fail(const std::string& text) {
    throw CDbError(text);
}

// Tells of work that lasts, and that it is over.
class CLateProgress {
public:
    explicit CLateProgress(std::string name) : m_name(std::move(name)) {}
    ~CLateProgress() {
        if (m_shown) {
            Progress().At(m_total, m_total, {});
        }
    }
    CLateProgress(const CLateProgress&) = delete;
    CLateProgress& operator=(const CLateProgress&) = delete;

    void At(std::int64_t done, std::int64_t total) {
        constexpr std::chrono::milliseconds patience(500);
        constexpr std::chrono::milliseconds pace(50);
        const auto now = steady_clock::now();
        if (now < m_next) {
            return;
        }
        if (now - m_begin >= patience) {
            m_total = std::max<std::int64_t>(total, 1);
            m_shown = true;
            Progress().At(std::min(done, m_total - 1), m_total, LoadMessage(3201) + ' ' + m_name);
        }
        m_next = now + pace;
        if (Progress().Stopped()) {
            throw CStopped();
        }
    }

private:
    std::string m_name;
    steady_clock::time_point m_begin = steady_clock::now();
    steady_clock::time_point m_next = m_begin;
    std::int64_t m_total = 1;
    bool m_shown = false;
};

// The old file, held so that nobody converts it at the same time.
class COldFile {
public:
    explicit COldFile(const std::string& hostPath)
        : m_path(hostPath), m_file(hostPath, O_RDONLY | O_NONBLOCK) {
        struct stat named {};
        if (!m_file.IsOpen() || flock(m_file.Descriptor(), LOCK_EX | LOCK_NB) != 0 || !m_file.State(State) ||
            !S_ISREG(State.st_mode)) {
            Fail("the old file can't be had alone");
        }
        // Somebody may have converted it while we waited for the lock.
        if (stat(hostPath.c_str(), &named) != 0 || named.st_ino != State.st_ino ||
            named.st_dev != State.st_dev) {
            Fail("the old file has gone");
        }
    }

    const CUnixFile& File() const { return m_file; }
    void ExpectUnchanged() const {
        struct stat now {};
        if (!m_file.State(now) || now.st_size != State.st_size ||
            now.st_mtim.tv_sec != State.st_mtim.tv_sec || now.st_mtim.tv_nsec != State.st_mtim.tv_nsec) {
            Fail("the old file was written meanwhile");
        }
    }
    // Gives it a second name, the first free one; returns it.
    std::string Keep() const {
        for (int number = 1;; ++number) {
            const std::string kept =
                m_path + std::string(OldEnding) + (number == 1 ? std::string() : FormatInt(number));
            if (link(m_path.c_str(), kept.c_str()) == 0) {
                return kept;
            }
            struct stat there {};
            if (errno != EEXIST) {
                return KeepCopy(kept);
            }
            // Of a conversion that was cut off.
            if (stat(kept.c_str(), &there) == 0 && there.st_ino == State.st_ino &&
                there.st_dev == State.st_dev) {
                return kept;
            }
        }
    }

    struct stat State {};

private:
    // On file systems that know no second names.
    std::string KeepCopy(const std::string& kept) const {
        const auto from = CHostFiles::PathText(m_path);
        const auto to = CHostFiles::PathText(kept);
        if (!from || !to || !HostFiles().CopyFile(*from, *to, CHostFiles::Existing::Keep)) {
            Fail("the old file can't be kept");
        }
        return kept;
    }

    std::string m_path;
    CUnixFile m_file;
};

// The database that grows beside its place. Gone unless it takes it.
class CNewFile {
public:
    explicit CNewFile(const std::string& target)
        : m_target(target),
          m_name(
              (fs::path(target).parent_path() / ("." + fs::path(target).filename().string() + ".drovane-new"))
                  .string()) {
        Discard();  // what a conversion that was cut off left
    }
    ~CNewFile() {
        if (!m_placed) {
            Discard();
        }
    }
    CNewFile(const CNewFile&) = delete;
    CNewFile& operator=(const CNewFile&) = delete;

    const std::string& Name() const { return m_name; }
    void Flush(mode_t mode) const {
        const CUnixFile file(m_name, O_RDONLY);
        if (!file.IsOpen() || fchmod(file.Descriptor(), mode) != 0 || fsync(file.Descriptor()) != 0) {
            Fail("the new file isn't on the disk");
        }
        unlink(JournalName().c_str());  // empty; of the first steps, before there was a mode without it
    }
    void TakePlace(bool overOld) {
        FlushFolder();
        const unsigned int flags = overOld ? 0 : RENAME_NOREPLACE;
        if (renameat2(AT_FDCWD, m_name.c_str(), AT_FDCWD, m_target.c_str(), flags) != 0) {
            Fail("the new file can't take its place");
        }
        m_placed = true;
        FlushFolder();
    }

private:
    void Discard() const {
        unlink(m_name.c_str());
        unlink(JournalName().c_str());
    }
    std::string JournalName() const { return m_name + "-journal"; }
    void FlushFolder() const {
        const CUnixFile folder(fs::path(m_target).parent_path().string(), O_RDONLY);
        if (folder.IsOpen()) {
            fsync(folder.Descriptor());
        }
    }

    std::string m_target;
    std::string m_name;
    bool m_placed = false;
};

std::vector<JetTableCount> Fill(const std::string& newFile, const CUnixFile& old, std::string_view password,
                                CLateProgress& progress) {
    CDbCriterion database;
    std::optional<CDbBatch> batch;
    CJetTransfer::Hooks hooks;
    hooks.Begin = [&] {
        database.Create(newFile, password);
        // The file is nothing until it is complete, so it is flushed once, at the end.
        CTableWriter::Run(database, "PRAGMA journal_mode = OFF");
        CTableWriter::Run(database, "PRAGMA synchronous = OFF");
        batch.emplace(database);
    };
    hooks.Pulse = [&](std::int64_t done, std::int64_t total) { progress.At(done, total); };
    CJetTransfer transfer(database, CJetTransfer::Content::All, std::move(hooks));
    ReadJet(old, password, transfer);
    transfer.Complete();
    batch->Commit();
    if (!database.LoadDefectNames()) {
        throw CUnusable();
    }
    return transfer.Counts();
}

std::string RealPath(std::string_view path) {
    std::error_code error;
    const fs::path real = fs::canonical(HostFiles().HostPath(path), error);
    if (error) {
        Fail("no such file");
    }
    return real.string();
}

// Shows the message of whatever keeps `work` from its end: 2000 or 2002 if it is the old file at `path`, the
// given one if it is the new one.
template <class Work>
bool WithMessages(std::string_view path, int newNumber, std::string_view newPath, const Work& work) {
    try {
        work();
        return true;
    } catch (const CJetError&) {
        ShowMessage(2000, path);
    } catch (const CJetTransfer::CForeign&) {
        ShowMessage(2002);
    } catch (const CDbError&) {
        ShowMessage(newNumber, newPath);
    } catch (const CUnusable&) {
    } catch (const CStopped&) {
    }
    return false;
}

}  // namespace

bool IsOldDatabase(std::string_view path) {
    const std::string hostPath = HostFiles().HostPath(path);
    return !COpenFile::IsOpen(hostPath) && IsJetFile(hostPath);
}

bool ConvertInPlace(std::string_view path, std::string_view password, JetConversion* conversion) {
    return WithMessages(path, 2000, path, [&] {
        const std::string hostPath = RealPath(path);
        COpenFile claim;
        if (!claim.Claim(hostPath)) {
            Fail("open already");
        }
        const COldFile old(hostPath);
        CNewFile fresh(hostPath);
        CLateProgress progress(GetFileName(path));
        std::vector<JetTableCount> tables = Fill(fresh.Name(), old.File(), password, progress);
        constexpr mode_t modes = 07777;
        fresh.Flush((old.State.st_mode & modes) | S_IRUSR | S_IWUSR);
        old.ExpectUnchanged();
        const std::string kept = old.Keep();
        fresh.TakePlace(true);
        if (conversion != nullptr) {
            *conversion = {std::move(tables), CHostFiles::PathText(kept).value_or(kept)};
        }
    });
}

bool ConvertTo(std::string_view path, std::string_view target, std::string_view password,
               JetConversion* conversion) {
    return WithMessages(path, 2203, target, [&] {
        const CUnixFile old(HostFiles().HostPath(path), O_RDONLY | O_NONBLOCK);
        if (HostFiles().Exists(target)) {
            Fail("the new file is there already");
        }
        CNewFile fresh(HostFiles().HostPath(target));
        CLateProgress progress(GetFileName(path));
        std::vector<JetTableCount> tables = Fill(fresh.Name(), old, password, progress);
        fresh.Flush(0644);
        fresh.TakePlace(false);
        if (conversion != nullptr) {
            *conversion = {std::move(tables), std::string(path)};
        }
    });
}

bool PrepareToOpen(std::string_view path, std::string_view password) {
    if (!IsOldDatabase(path)) {
        return true;
    }
    // What can't be converted is told before anybody is asked.
    const JetListed listed = ListOldDatabase(path, password);
    if (listed.OpenFailure != 0) {
        ShowOldDatabaseFailure(listed.OpenFailure, path);
        return false;
    }
    return Prompts().AskOkCancel(3200, LoadMessage(3200).append("\n").append(path)) &&
           ConvertInPlace(path, password);
}
