#include "shell/documents.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "shell/CHostFiles.h"
#include "shell/CUnixFile.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "shell/textcodec.h"

namespace {

constexpr std::size_t LongestName = 200;  // bytes; leaves room for what a file system adds to a name
constexpr int MostNames = 10000;

std::string HomeFolder() {
    const char* home = std::getenv("HOME");
    if (home != nullptr && *home == '/') {
        return home;
    }
    const passwd* user = getpwuid(getuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/";
}

std::string ConfigFolder(const std::string& home) {
    const char* folder = std::getenv("XDG_CONFIG_HOME");
    return folder != nullptr && *folder == '/' ? folder : home + "/.config";
}

// What stands behind "XDG_DOCUMENTS_DIR=" in the file of the user's folders: in double quotes, from the home
// folder ("$HOME/...") or from the root. Nothing if it is none of these.
std::optional<std::string> NamedFolder(std::string_view value, const std::string& home) {
    value = TrimBlanks(value);
    if (value.size() < 2 || value.front() != '"' || value.back() != '"') {
        return std::nullopt;
    }
    value = value.substr(1, value.size() - 2);
    std::string folder;
    constexpr std::string_view Home = "$HOME";
    if (value == Home || value.starts_with("$HOME/")) {
        folder = home;
        value.remove_prefix(Home.size());
    } else if (!value.starts_with('/')) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) {
            ++i;
        }
        folder += value[i];
    }
    return folder;
}

std::string DocumentsOf(const std::string& home) {
    std::string folder = home + "/Documents";
    const auto file = CHostFiles::PathText(ConfigFolder(home) + "/user-dirs.dirs");
    constexpr std::size_t MostBytes = 65536;
    const std::optional<std::string> text = file ? HostFiles().ReadFile(*file, MostBytes) : std::nullopt;
    constexpr std::string_view Key = "XDG_DOCUMENTS_DIR=";
    for (std::size_t at = 0; text && at < text->size();) {
        const std::size_t end = std::min(text->find('\n', at), text->size());
        const std::string_view line = TrimBlanks(std::string_view(*text).substr(at, end - at));
        if (line.starts_with(Key)) {
            // The last one counts, as for the shell that the file is written for.
            const auto named = NamedFolder(line.substr(Key.size()), home);
            folder = named && CHostFiles::PathText(*named) ? *named : folder;
        }
        at = end + 1;
    }
    return folder;
}

// Without half a character at the end.
std::string_view Prefix(std::string_view utf8, std::size_t bytes) {
    if (utf8.size() > bytes) {
        while (bytes > 0 && (static_cast<unsigned char>(utf8[bytes]) & 0xC0) == 0x80) {
            --bytes;
        }
        utf8 = utf8.substr(0, bytes);
    }
    return utf8;
}

}  // namespace

std::string GetDocumentsFolder() {
    const std::string home = HomeFolder();
    // A home folder with a backslash in its name can't be a path text: the program's own folder then.
    std::string folder = CHostFiles::PathText(DocumentsOf(home)).value_or("Documents");
    while (folder.ends_with('\\')) {
        folder.pop_back();
    }
    return folder + '\\';
}

std::string GetSettingsFolder() {
    return CHostFiles::PathText(ConfigFolder(HomeFolder()) + "/drovane/").value_or(std::string());
}

std::string MakeDocumentName(std::string_view title, std::string_view ending) {
    std::string name;
    for (const char c : title) {
        const bool control = static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
        name += control || std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos ? '_' : c;
    }
    name = Prefix(TrimBlanks(name), LongestName - ending.size());
    if (name.empty()) {
        name = "_";
    } else if (name.front() == '.') {
        name.front() = '_';
    }
    return name.append(ending);
}

std::string WriteDocument(std::string_view title, std::string_view ending, std::string_view bytes) {
    return WriteDocument(title, ending, [bytes](const CUnixFile& file) { return file.WriteAll(bytes); });
}

std::string WriteDocument(std::string_view title, std::string_view ending,
                          const std::function<bool(const CUnixFile&)>& write) {
    const std::string folder = GetDocumentsFolder() + "Drovane\\";
    if (!HostFiles().MakeFolder(folder)) {
        return {};
    }
    for (int number = 1; number <= MostNames; ++number) {
        std::string counted = number == 1 ? std::string() : " (" + FormatInt(number) + ")";
        const std::string path = folder + MakeDocumentName(title, counted.append(ending));
        if (HostFiles().Exists(path)) {
            continue;
        }
        if (HostFiles().WriteFile(path, write, CHostFiles::Existing::Keep)) {
            return path;
        }
        // Another program may have taken the name in between; anything else is a failure.
        if (!HostFiles().Exists(path)) {
            return {};
        }
    }
    return {};
}
