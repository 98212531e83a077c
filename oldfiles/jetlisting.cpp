#include "oldfiles/jetlisting.h"

#include <fcntl.h>

#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "oldfiles/CJetTransfer.h"
#include "shell/CLateProgress.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/CStreamPrompts.h"
#include "shell/CUnixFile.h"
#include "shell/language.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/recordjson.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* FileName = "jetlist.json";
constexpr int Version = 1;  // of the file and of what the reader makes of the same bytes
constexpr std::size_t MostFileSize = 1u << 26;

struct Known {
    OldFileListing Listed;
    std::int64_t Size = 0;
    std::int64_t Seconds = 0;
    std::int64_t Nanoseconds = 0;
    bool Lasts = true;  // what a lack of time or memory decided is not for the next start

    bool IsOf(const struct stat& state) const {
        return Size == state.st_size && Seconds == state.st_mtim.tv_sec &&
               Nanoseconds == state.st_mtim.tv_nsec;
    }
};

Json ToJson(const Known& known) {
    return {{"size", known.Size},
            {"seconds", known.Seconds},
            {"nanoseconds", known.Nanoseconds},
            {"openFailure", known.Listed.OpenFailure},
            {"readFailure", known.Listed.ReadFailure},
            {"records", known.Listed.Records},
            {"attributes", ProjectToJson(known.Listed.Attributes)}};
}

Known FromJson(const std::string& path, const Json& json) {
    Known known;
    known.Size = json.at("size").get<std::int64_t>();
    known.Seconds = json.at("seconds").get<std::int64_t>();
    known.Nanoseconds = json.at("nanoseconds").get<std::int64_t>();
    known.Listed.OpenFailure = json.at("openFailure").get<int>();
    known.Listed.ReadFailure = json.at("readFailure").get<int>();
    known.Listed.Records = json.at("records").get<std::int32_t>();
    ProjectFromJson(json.at("attributes"), path, known.Listed.Attributes);
    return known;
}

// One a process, of the program folder in use. A lost or broken file costs time and nothing else.
class CMemory {
public:
    std::map<std::string, Known>& Files() {
        if (m_folder != GetAppFolder()) {
            Load();
        }
        return m_files;
    }
    void Changed() { m_changed = true; }
    void Enter() { ++m_depth; }
    void Leave() {
        if (--m_depth == 0 && m_changed) {
            Save();
        }
    }

private:
    void Load() {
        m_folder = GetAppFolder();
        m_files.clear();
        m_changed = false;
        const auto bytes = HostFiles().ReadFile(m_folder + FileName, MostFileSize);
        if (!bytes) {
            return;
        }
        try {
            const Json json = Json::parse(*bytes);
            if (json.at("version") != Version) {
                return;
            }
            for (const auto& [path, entry] : json.at("files").items()) {
                m_files[path] = FromJson(path, entry);
            }
        } catch (const std::exception&) {
            m_files.clear();
        }
    }
    void Save() {
        m_changed = false;
        Json files = Json::object();
        for (const auto& [path, known] : m_files) {
            if (known.Lasts && HostFiles().Exists(path)) {
                files[path] = ToJson(known);
            }
        }
        (void)HostFiles().WriteFile(m_folder + FileName, JsonText({{"version", Version}, {"files", files}}));
    }

    std::string m_folder;
    std::map<std::string, Known> m_files;
    bool m_changed = false;
    int m_depth = 0;
};

CMemory& Memory() {
    static CMemory memory;
    return memory;
}

class CScope {
public:
    CScope() { Memory().Enter(); }
    ~CScope() { Memory().Leave(); }
    CScope(const CScope&) = delete;
    CScope& operator=(const CScope&) = delete;
};

// Keeps the number of the message that an operation shows.
class CNotingPrompts : public CStreamPrompts {
public:
    CNotingPrompts() : CStreamPrompts(std::cerr, false) {}
    void ShowMessage(int number, const std::string&) override { Number = number; }
    int Number = 0;
};

// By the same operations that read a database of today, on one in memory that has what they need. Throws
// CLateProgress::CStopped.
Known Read(const CUnixFile& file, std::string_view path, std::string_view password) {
    Known known;
    OldFileListing& listed = known.Listed;
    try {
        CDbRec database;
        database.CreateInMemory();
        CLateProgress progress(LoadMessage(3202) + ' ' + GetFileName(path));
        CJetTransfer::Hooks hooks;
        hooks.Pulse = [&](std::int64_t done, std::int64_t total) { progress.At(done, total); };
        CJetTransfer transfer(database, CJetTransfer::Content::Listing, std::move(hooks));
        ReadJet(file, password, transfer);
        transfer.Complete();
        // Only now: whoever shows the progress may let others of the program run, with messages of their own.
        CNotingPrompts prompts;
        const CSeamScope seams({&prompts, nullptr, nullptr, nullptr});
        if (!database.LoadDefectNames()) {
            listed.OpenFailure = prompts.Number;
        } else if (!database.ReadAttrib(listed.Attributes)) {
            listed.ReadFailure = prompts.Number;
        } else {
            listed.Records = database.CountRecords(-1);
        }
    } catch (const CJetTransfer::CForeign&) {
        listed.OpenFailure = 2002;
    } catch (const CDbError&) {
        listed.OpenFailure = 2000;
        known.Lasts = false;
    } catch (const CJetError& error) {
        listed.OpenFailure = 2000;
        known.Lasts = error.Reason == CJetError::Why::Content;
        if (error.Reason == CJetError::Why::Machine) {
            known.Size = -1;  // the next time may go better
        }
    }
    return known;
}

}  // namespace

OldFileListing ListOldDatabase(std::string_view path, std::string_view password) try {
    const CScope scope;
    const CUnixFile file(HostFiles().HostPath(path), O_RDONLY | O_NONBLOCK);
    struct stat state {};
    if (!file.IsOpen() || !file.State(state)) {
        OldFileListing missing;
        missing.OpenFailure = 2000;
        return missing;
    }
    if (password != CDbPassword) {
        return Read(file, path, password).Listed;  // what is remembered is for the program's own
    }
    auto& files = Memory().Files();
    const std::string key(path);
    const auto found = files.find(key);
    if (found != files.end() && found->second.IsOf(state)) {
        return found->second.Listed;
    }
    Known known = Read(file, path, password);
    if (known.Size >= 0) {
        known.Size = state.st_size;
        known.Seconds = state.st_mtim.tv_sec;
        known.Nanoseconds = state.st_mtim.tv_nsec;
    }
    files[key] = known;
    Memory().Changed();
    return known.Listed;
} catch (const CLateProgress::CStopped&) {
    OldFileListing stopped;
    stopped.Stopped = true;
    return stopped;
}

void BeginOldListing() {
    Memory().Enter();
}

void EndOldListing() {
    Memory().Leave();
}
