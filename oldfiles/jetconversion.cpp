#include "oldfiles/jetconversion.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "shell/CLateProgress.h"
#include "oldfiles/jetlisting.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/CUnixFile.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "store/CDbCriterion.h"
#include "store/CDbError.h"
#include "store/CNewDatabaseFile.h"
#include "store/COpenFile.h"
#include "store/jet/jetfile.h"

namespace {

namespace fs = std::filesystem;

using Existing = CTemporaryTwin::Existing;

constexpr std::string_view OldEnding = ".jet";

// The new database can't be used, and its message was shown.
class CUnusable {};

[[noreturn]] void Fail(const std::string& text) {
    throw CDbError(text);
}

bool IsSame(const struct stat& one, const struct stat& other) {
    return one.st_ino == other.st_ino && one.st_dev == other.st_dev;
}

bool Names(const std::string& hostPath, const struct stat& state) {
    struct stat named {};
    return stat(hostPath.c_str(), &named) == 0 && IsSame(named, state);
}

// The old file as it was when it was opened. Whoever reads it gets a descriptor that can't write.
class CSource {
public:
    explicit CSource(const std::string& hostPath) : m_file(hostPath, O_RDONLY | O_NONBLOCK) {
        if (!m_file.IsOpen() || !m_file.State(State) || !S_ISREG(State.st_mode)) {
            throw CJetError(CJetError::Why::Machine, "the old file can't be read");
        }
    }

    const CUnixFile& File() const { return m_file; }
    void ExpectUnchanged() const {
        struct stat now {};
        if (!m_file.State(now) || now.st_size != State.st_size ||
            now.st_mtim.tv_sec != State.st_mtim.tv_sec || now.st_mtim.tv_nsec != State.st_mtim.tv_nsec) {
            throw CJetError(CJetError::Why::Machine, "the old file was written meanwhile");
        }
    }

    struct stat State {};

private:
    CUnixFile m_file;
};

// The old file, held so that nobody converts it at the same time.
class COldFile : public CSource {
public:
    explicit COldFile(const std::string& hostPath)
        : CSource(hostPath), m_path(hostPath), m_lock(OpenToLock(hostPath, O_NONBLOCK)) {
        struct stat locked {};
        if (!m_lock.IsOpen() || flock(m_lock.Descriptor(), LOCK_EX | LOCK_NB) != 0 || !m_lock.State(locked) ||
            !IsSame(locked, State)) {
            Fail("the old file can't be had alone");
        }
        ExpectInPlace();  // somebody may have converted it before the lock was ours
    }
    // Without the new file in its place all is as it was.
    ~COldFile() {
        // A failure may be told of a renaming that was done: never the last name of the old file.
        if (!m_made.empty() && Names(m_path, State)) {
            unlink(m_made.c_str());
        }
    }
    COldFile(const COldFile&) = delete;
    COldFile& operator=(const COldFile&) = delete;

    void ExpectInPlace() const {
        if (!Names(m_path, State)) {
            Fail("the old file has gone");
        }
    }
    // Gives it a second name, the first free one; returns it. The name goes with this object unless the
    // place was taken.
    std::string Keep() {
        for (int number = 1;; ++number) {
            const std::string kept =
                m_path + std::string(OldEnding) + (number == 1 ? std::string() : FormatInt(number));
            if (link(m_path.c_str(), kept.c_str()) == 0) {
                m_made = kept;
                return kept;
            }
            if (errno != EEXIST) {
                KeepCopy(kept);
                m_made = kept;
                return kept;
            }
            // Of a conversion that was cut off.
            if (Names(kept, State)) {
                return kept;
            }
        }
    }

private:
    // On file systems that know no second names.
    void KeepCopy(const std::string& kept) const {
        const auto from = CHostFiles::PathText(m_path);
        const auto to = CHostFiles::PathText(kept);
        if (!from || !to || !HostFiles().CopyFile(*from, *to, CHostFiles::Existing::Keep)) {
            Fail("the old file can't be kept");
        }
    }

    std::string m_path;
    CUnixFile m_lock;
    std::string m_made;
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
    } catch (const CLateProgress::CStopped&) {
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
        COldFile old(hostPath);
        CNewDatabaseFile fresh(hostPath);
        CLateProgress progress(LoadMessage(3201) + ' ' + GetFileName(path));
        std::vector<JetTableCount> tables = Fill(fresh.Name(), old.File(), password, progress);
        constexpr mode_t modes = 07777;
        fresh.Flush((old.State.st_mode & modes) | S_IRUSR | S_IWUSR);
        old.ExpectUnchanged();
        old.ExpectInPlace();
        const std::string kept = old.Keep();
        fresh.TakePlace(Existing::Replace);
        if (conversion != nullptr) {
            *conversion = {std::move(tables), CHostFiles::PathText(kept).value_or(kept)};
        }
    });
}

bool ConvertTo(std::string_view path, std::string_view target, std::string_view password,
               JetConversion* conversion) {
    return WithMessages(path, 2203, target, [&] {
        const CSource old(HostFiles().HostPath(path));
        if (HostFiles().Exists(target)) {
            Fail("the new file is there already");
        }
        CNewDatabaseFile fresh(HostFiles().HostPath(target));
        CLateProgress progress(LoadMessage(3201) + ' ' + GetFileName(path));
        std::vector<JetTableCount> tables = Fill(fresh.Name(), old.File(), password, progress);
        fresh.Flush(DefaultMode());
        old.ExpectUnchanged();
        fresh.TakePlace(Existing::Keep);
        if (conversion != nullptr) {
            *conversion = {std::move(tables), std::string(path)};
        }
    });
}

bool PrepareOldToOpen(std::string_view path, std::string_view password) {
    if (!IsOldDatabase(path)) {
        return true;
    }
    // What can't be converted is told before anybody is asked.
    const OldFileListing listed = ListOldDatabase(path, password);
    if (listed.Stopped) {
        return false;
    }
    if (listed.OpenFailure != 0) {
        ShowMessage(listed.OpenFailure, listed.OpenFailure == 2000 ? path : std::string_view());
        return false;
    }
    return Prompts().AskOkCancel(3200, LoadMessage(3200).append("\n").append(path)) &&
           ConvertInPlace(path, password);
}
