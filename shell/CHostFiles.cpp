#include "shell/CHostFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>

#include "shell/CFileMirror.h"
#include "shell/CProgress.h"
#include "shell/CUnixFile.h"
#include "shell/hostnames.h"
#include "shell/sweeptwins.h"
#include "shell/textcodec.h"

namespace fs = std::filesystem;

namespace {

bool IsSeparator(char c) {
    return c == '\\' || c == '/';
}

bool HasDrive(std::string_view path) {
    return path.size() >= 2 && std::isalpha(static_cast<unsigned char>(path[0])) && path[1] == ':';
}

// Tells the cache of folders what the program is doing to one of them.
class CCreation {
public:
    CCreation(CFolderCache& cache, const std::string& target)
        : m_cache(cache),
          m_folder(cache.Look(ParentOf(target), CFolderCache::Trust::OwnFolder)),
          m_name(NameOf(target)) {
        m_cache.BeforeCreation(m_folder);
    }
    ~CCreation() { m_cache.AfterCreation(m_folder, m_name); }
    CCreation(const CCreation&) = delete;
    CCreation& operator=(const CCreation&) = delete;

private:
    CFolderCache& m_cache;
    CFolderCache::Folder& m_folder;
    std::string m_name;
};

// Why a file that is there can't be replaced; 0 if it can.
int RefusalOf(const std::string& target, const struct stat& former, CHostFiles::Existing existing) {
    if (existing == CHostFiles::Existing::Keep) {
        return EEXIST;
    }
    if (!S_ISREG(former.st_mode)) {
        return EINVAL;
    }
    return access(target.c_str(), W_OK) == 0 ? 0 : errno;
}

// Where what is written to a name ends up: links are followed.
std::string Followed(const std::string& hostPath) {
    std::error_code error;
    const fs::path real = fs::canonical(hostPath, error);
    return error ? hostPath : real.string();
}

}  // namespace

CHostFiles::CHostFiles(fs::path appFolder)
    : m_appFolder(std::move(appFolder)), m_mirror(std::make_unique<CFileMirror>(*this)) {}

CHostFiles::~CHostFiles() = default;

fs::path CHostFiles::DriveFolder(char letter) const {
    return m_appFolder / "drives" / std::string(1, static_cast<char>(std::tolower(letter)));
}

void CHostFiles::MakeDrive(std::string_view path) const {
    if (HasDrive(path)) {
        std::error_code error;
        fs::create_directories(DriveFolder(path[0]), error);
    }
}

std::string CHostFiles::Unresolved(std::string_view path) const {
    std::string host;
    if (path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1])) {
        host = (m_appFolder / "drives" / "unc").string() + '/';
        path.remove_prefix(2);
    } else if (HasDrive(path)) {
        host = DriveFolder(path[0]).string() + '/';
        path.remove_prefix(2);
    }
    for (const char c : path) {
        if (!IsSeparator(c)) {
            host += c;
        } else if (!host.ends_with('/')) {
            host += '/';
        }
    }
    return host;
}

std::string CHostFiles::HostPath(std::string_view path) const {
    std::string host = Unresolved(path);
    if (host.empty() || (!m_folders.InScope() && access(host.c_str(), F_OK) == 0)) {
        return host;
    }
    const std::string tail(host.size() > 1 && host.ends_with('/') ? 1 : 0, '/');
    host.erase(host.size() - tail.size());
    if (host == "/") {
        return host;
    }
    CFolderCache::Folder& folder = m_folders.Look(ParentOf(host));
    const std::string name = NameOf(host);
    const std::string match = m_folders.Match(folder, name);
    return Join(folder.Host, match.empty() ? name : match) + tail;
}

std::optional<std::string> CHostFiles::PathText(std::string_view hostPath) {
    if (hostPath.find('\\') != std::string_view::npos) {
        return std::nullopt;
    }
    std::string text(hostPath);
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

bool CHostFiles::Exists(std::string_view path) const {
    return access(HostPath(path).c_str(), F_OK) == 0;
}

bool CHostFiles::IsFolder(std::string_view path) const {
    std::error_code error;
    return fs::is_directory(HostPath(path), error);
}

std::vector<std::string> CHostFiles::ListFiles(std::string_view folder, std::string_view extension) const {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator at(HostPath(folder), error), end; !error && at != end; at.increment(error)) {
        const std::string name = at->path().filename().string();
        std::error_code typeError;
        // A name with a backslash would stand for another file.
        if (PathText(name) && LowerCase(name).ends_with(LowerCase(extension)) &&
            !at->is_directory(typeError)) {
            names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        const int order = CompareNoCase(a, b);
        return order != 0 ? order < 0 : a < b;
    });
    return names;
}

std::optional<std::string> CHostFiles::ReadFile(std::string_view path, std::size_t most) const {
    std::optional<std::string> bytes = ReadBeginning(path, most + 1);
    return bytes && bytes->size() > most ? std::nullopt : std::move(bytes);
}

std::optional<std::string> CHostFiles::ReadBeginning(std::string_view path, std::size_t most) const {
    // Without blocking: a pipe in the file's place would stop the program for good.
    CUnixFile file(HostPath(path), O_RDONLY | O_NONBLOCK);
    struct stat state {};
    if (!file.IsOpen() || !file.State(state) || !S_ISREG(state.st_mode)) {
        return std::nullopt;
    }
    std::string bytes(std::min(most, static_cast<std::size_t>(state.st_size)), '\0');
    return file.ReadAll(bytes.data(), bytes.size()) ? std::optional(std::move(bytes)) : std::nullopt;
}

// Before anything else can set errno.
bool CHostFiles::Done(bool done) {
    return done || Refused(errno);
}

bool CHostFiles::Refused(int error) {
    m_lastError = error;
    return false;
}

bool CHostFiles::WriteFile(std::string_view path, std::string_view bytes, Existing existing) {
    return WriteFile(
        path, [bytes](const CUnixFile& file) { return file.WriteAll(bytes); }, existing);
}

bool CHostFiles::WriteFile(std::string_view path, const std::function<bool(const CUnixFile&)>& write,
                           Existing existing) {
    MakeDrive(path);
    const std::string target = Followed(HostPath(path));
    struct stat former {};
    const bool replaces = stat(target.c_str(), &former) == 0;
    if (const int refusal = replaces ? RefusalOf(target, former, existing) : 0; refusal != 0) {
        return Refused(refusal);
    }
    const CCreation creation(m_folders, target);
    Sweep(target);
    CTemporaryTwin twin(target, replaces ? former.st_mode & 07777 : DefaultMode());
    return Done(twin.File().IsOpen() && write(twin.File()) && twin.TakePlace(true, existing));
}

std::size_t CHostFiles::WriteFiles(const std::vector<FileContent>& files) {
    std::vector<std::unique_ptr<CTemporaryTwin>> twins;
    for (const FileContent& file : files) {
        MakeDrive(file.Path);
        const std::string target = Followed(HostPath(file.Path));
        struct stat former {};
        const bool replaces = stat(target.c_str(), &former) == 0;
        const int refusal = replaces ? RefusalOf(target, former, Existing::Replace) : 0;
        if (refusal != 0) {
            Refused(refusal);
            return twins.size();
        }
        Sweep(target);
        twins.push_back(
            std::make_unique<CTemporaryTwin>(target, replaces ? former.st_mode & 07777 : DefaultMode()));
        if (!Done(twins.back()->Write(file.Bytes) && fsync(twins.back()->File().Descriptor()) == 0)) {
            return twins.size() - 1;
        }
    }
    std::size_t written = 0;
    while (written < twins.size() && Done(twins[written]->TakePlace(true))) {
        ++written;
    }
    m_folders.Forget();
    return written;
}

// Once a folder: what processes that were killed have left there.
void CHostFiles::Sweep(const std::string& target) {
    if (const std::string folder = ParentOf(target); m_swept.insert(folder).second) {
        SweepTwins(folder);
    }
}

bool CHostFiles::CopyFile(std::string_view from, std::string_view to, Existing existing) {
    CProgress silent;
    return CopyFile(from, to, existing, silent);
}

bool CHostFiles::CopyFile(std::string_view from, std::string_view to, Existing existing,
                          CProgress& progress) {
    MakeDrive(to);
    const std::string source = HostPath(from);
    const std::string target = HostPath(to);
    struct stat sourceState {};
    struct stat targetState {};
    if (stat(source.c_str(), &sourceState) != 0) {
        return Refused(errno);
    }
    if (!S_ISREG(sourceState.st_mode)) {
        return Refused(EINVAL);
    }
    if (stat(target.c_str(), &targetState) == 0) {
        const bool same =
            sourceState.st_ino == targetState.st_ino && sourceState.st_dev == targetState.st_dev;
        const int refusal = same ? EEXIST : RefusalOf(target, targetState, existing);
        if (refusal != 0) {
            return Refused(refusal);
        }
    }
    return CopyBytes(source, target, sourceState, true, existing, progress);
}

bool CHostFiles::CopyBytes(const std::string& from, const std::string& to, const struct stat& source,
                           bool flush, Existing existing, CProgress& progress) {
    const std::string target = Followed(to);
    const CCreation creation(m_folders, target);
    Sweep(target);
    CUnixFile in(from, O_RDONLY);
    CTemporaryTwin twin(target, DefaultMode());
    return Done(in.IsOpen() && twin.File().IsOpen() && twin.CopyFrom(in, progress) &&
                twin.SetTime(source.st_mtim) && twin.TakePlace(flush, existing));
}

bool CHostFiles::DeleteFile(std::string_view path) {
    const bool done = Done(unlink(HostPath(path).c_str()) == 0);
    m_folders.Forget();
    return done;
}

bool CHostFiles::MoveFile(std::string_view from, std::string_view to, Existing existing) {
    const bool done = Done(CTemporaryTwin::Rename(HostPath(from), HostPath(to), existing));
    m_folders.Forget();
    return done;
}

bool CHostFiles::LinkFile(std::string_view from, std::string_view to) {
    const std::string source = HostPath(from);
    const std::string target = HostPath(to);
    struct stat state {};
    // A second name for a link would be one for whatever the link leads to later.
    if (lstat(source.c_str(), &state) != 0 || !S_ISREG(state.st_mode) ||
        link(source.c_str(), target.c_str()) != 0) {
        return CopyFile(from, to, Existing::Keep);
    }
    for (const std::string& written : {source, ParentOf(target)}) {
        const CUnixFile file(written, O_RDONLY | O_NONBLOCK);
        if (file.IsOpen()) {
            fsync(file.Descriptor());
        }
    }
    m_folders.Forget();
    return true;
}

bool CHostFiles::HaveSameContent(std::string_view a, std::string_view b) const {
    constexpr std::size_t slice = 1 << 16;
    const CUnixFile first(HostPath(a), O_RDONLY | O_NONBLOCK);
    const CUnixFile second(HostPath(b), O_RDONLY | O_NONBLOCK);
    struct stat stateA {};
    struct stat stateB {};
    if (!first.IsOpen() || !second.IsOpen() || !first.State(stateA) || !second.State(stateB) ||
        !S_ISREG(stateA.st_mode) || !S_ISREG(stateB.st_mode) || stateA.st_size != stateB.st_size) {
        return false;
    }
    if (stateA.st_ino == stateB.st_ino && stateA.st_dev == stateB.st_dev) {
        return true;
    }
    std::string bytesA(slice, '\0');
    std::string bytesB(slice, '\0');
    for (auto left = static_cast<std::size_t>(stateA.st_size); left > 0;) {
        const std::size_t size = std::min(left, slice);
        if (!first.ReadAll(bytesA.data(), size) || !second.ReadAll(bytesB.data(), size) ||
            bytesA.compare(0, size, bytesB, 0, size) != 0) {
            return false;
        }
        left -= size;
    }
    return true;
}

bool CHostFiles::MakeFolder(std::string_view path) {
    const std::string host = HostPath(path);
    std::error_code error;
    fs::create_directories(host, error);
    m_folders.Forget();
    return fs::is_directory(host, error);
}

bool CHostFiles::RemoveFolder(std::string_view path) {
    std::error_code error;
    fs::remove_all(HostPath(path), error);
    m_folders.Forget();
    return !error;
}

bool CHostFiles::RemoveEmptyFolder(std::string_view path) {
    const bool done = rmdir(HostPath(path).c_str()) == 0;
    m_folders.Forget();
    return done;
}

bool CHostFiles::SetCurrentFolder(std::string_view path) const {
    return chdir(HostPath(path).c_str()) == 0;
}
