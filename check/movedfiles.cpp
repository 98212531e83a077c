#include "check/movedfiles.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>

#include "shell/CHostFiles.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t MostFiles = 1'000'000;  // an operator who picks "\" doesn't wait for ever

struct Candidate {
    std::string Path;      // path text
    std::string Relative;  // lower case, from the folder on
};
using Candidates = std::unordered_map<std::string, std::vector<Candidate>>;  // by lower-cased name

Candidates ListBelow(std::string_view folder, const std::set<std::string>& names) {
    Candidates candidates;
    const std::string root = HostFiles().HostPath(folder);
    const std::string begin = folder.ends_with('\\') ? std::string(folder) : std::string(folder) + '\\';
    std::error_code error;
    fs::recursive_directory_iterator at(root, fs::directory_options::skip_permission_denied, error);
    std::size_t count = 0;
    for (const fs::recursive_directory_iterator end; !error && at != end && count < MostFiles;
         at.increment(error), ++count) {
        std::error_code failure;
        if (at->is_directory(failure)) {
            if (at->path().filename().native().starts_with('.')) {
                at.disable_recursion_pending();
            }
            continue;
        }
        const std::string name = LowerCase(at->path().filename().native());
        const std::optional<std::string> relative =
            names.contains(name) && at->is_regular_file(failure)
                ? CHostFiles::PathText(at->path().lexically_relative(root).native())
                : std::nullopt;
        if (relative) {
            candidates[name].push_back({begin + *relative, LowerCase(*relative)});
        }
    }
    return candidates;
}

bool EndsWithPath(const std::string& path, const std::string& end) {
    return path.ends_with(end) && (path.size() == end.size() || path[path.size() - end.size() - 1] == '\\');
}

std::string LastTwo(const std::string& path) {
    const std::string name = GetFileName(path);
    std::string folder = GetParentFolder(path);
    if (folder.ends_with('\\')) {
        folder.pop_back();
    }
    folder = GetFileName(folder);
    return folder.empty() ? std::string() : folder + '\\' + name;
}

std::optional<std::uintmax_t> SizeOf(std::string_view path) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(HostFiles().HostPath(path), error);
    return error ? std::nullopt : std::optional(size);
}

// Less fits better.
enum Fit { WholePath, Folder, Name, No };

Fit FitOf(const std::string& missing, const Candidate& candidate, bool nameIsUnique) {
    if (EndsWithPath(missing, candidate.Relative) && candidate.Relative.find('\\') != std::string::npos) {
        return WholePath;
    }
    if (const std::string end = LastTwo(LowerCase(candidate.Path));
        !end.empty() && EndsWithPath(missing, end)) {
        return Folder;
    }
    if (!nameIsUnique) {
        return No;
    }
    const auto copy = SizeOf(GetReportImageFolder() + GetFileName(missing));
    return !copy || copy == SizeOf(candidate.Path) ? Name : No;
}

// Those that fit best.
std::pair<Fit, std::vector<const Candidate*>> BestOf(const std::string& missing,
                                                     const std::vector<Candidate>& candidates,
                                                     bool nameIsUnique) {
    std::pair<Fit, std::vector<const Candidate*>> best{No, {}};
    for (const Candidate& candidate : candidates) {
        const Fit fit = FitOf(missing, candidate, nameIsUnique);
        if (fit < best.first) {
            best = {fit, {}};
        }
        if (fit == best.first && fit != No) {
            best.second.push_back(&candidate);
        }
    }
    // The longest way of those below the folder; equal files are one.
    if (best.first == WholePath) {
        const auto longest = std::max_element(
            best.second.begin(), best.second.end(),
            [](const Candidate* a, const Candidate* b) { return a->Relative.size() < b->Relative.size(); });
        best.second = {*longest};
    }
    return best;
}

}  // namespace

MovedFiles FindMovedFiles(const std::vector<std::string>& missing, const std::vector<std::string>& all,
                          std::string_view folder) {
    std::set<std::string> names;
    for (const std::string& path : missing) {
        names.insert(GetFileName(LowerCase(path)));
    }
    std::map<std::string, std::set<std::string>> pathsOfName;
    for (const std::string& path : all) {
        const std::string lower = LowerCase(path);
        pathsOfName[GetFileName(lower)].insert(lower);
    }
    const Candidates candidates = ListBelow(folder, names);
    MovedFiles result;
    struct Taken {
        Fit How;
        std::vector<std::string> By;
    };
    std::map<std::string, Taken> taken;  // by the new path
    for (const std::string& path : missing) {
        const std::string lower = LowerCase(path);
        const std::string name = GetFileName(lower);
        const auto found = candidates.find(name);
        if (found == candidates.end()) {
            result.None.push_back(path);
            continue;
        }
        const auto [fit, best] = BestOf(lower, found->second, pathsOfName[name].size() <= 1);
        if (best.size() != 1) {
            (best.empty() ? result.None : result.Several).push_back(path);
            continue;
        }
        Taken& place = taken.try_emplace(best.front()->Path, Taken{fit, {}}).first->second;
        if (fit < place.How) {
            result.None.insert(result.None.end(), place.By.begin(), place.By.end());
            place = {fit, {path}};
        } else if (fit == place.How) {
            place.By.push_back(path);
        } else {
            result.None.push_back(path);
        }
    }
    for (auto& [to, place] : taken) {
        if (place.By.size() == 1) {
            result.Found.push_back({place.By.front(), to});
        } else {
            result.Several.insert(result.Several.end(), place.By.begin(), place.By.end());
        }
    }
    return result;
}
