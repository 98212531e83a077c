#include "live/CWaitingRecords.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "shell/CHostFiles.h"
#include "shell/CLiveChannel.h"
#include "shell/CUnixFile.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"

namespace {

constexpr std::size_t MostBytes = std::size_t{256} << 20;
constexpr int LinesToCompact = 1000;
constexpr std::string_view HexDigits = "0123456789abcdef";

std::string ToHex(std::string_view bytes) {
    std::string hex;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        hex += HexDigits[byte / 16U];
        hex += HexDigits[byte % 16U];
    }
    return hex;
}

std::optional<std::string> FromHex(std::string_view hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        const std::size_t high = HexDigits.find(hex[i]);
        const std::size_t low = HexDigits.find(hex[i + 1]);
        if (high == HexDigits.npos || low == HexDigits.npos) {
            return std::nullopt;
        }
        bytes += static_cast<char>(high * 16 + low);
    }
    return bytes;
}

// The next word, cut off; the rest stays.
std::string_view NextWord(std::string_view& line) {
    const std::size_t end = std::min(line.find(' '), line.size());
    const std::string_view word = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return word;
}

std::string AddLine(const WaitingRecord& record) {
    return "+ " + FormatInt(record.Id) + " " + FormatExact(record.Longitude) + " " +
           FormatExact(record.Latitude) + " " + ToHex(record.Block) + "\n";
}

std::string StoringLine(const WaitingRecord& record) {
    return "* " + FormatInt(record.Id) + " " + FormatInt(record.Section) + " " + record.Project + "\n";
}

}  // namespace

CWaitingRecords::CWaitingRecords(std::string path) : m_path(std::move(path)) {
    if (Lock()) {
        Read();
        (void)Compact();
    }
}

// Beside the list, which is replaced when it is rewritten.
bool CWaitingRecords::Lock() {
    (void)HostFiles().MakeFolder(GetParentFolder(m_path));
    auto lock = std::make_unique<CUnixFile>(
        open((HostFiles().HostPath(m_path) + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!lock->IsOpen() || flock(lock->Descriptor(), LOCK_EX | LOCK_NB) != 0) {
        return false;
    }
    m_lock = std::move(lock);
    return true;
}

CWaitingRecords::~CWaitingRecords() = default;

void CWaitingRecords::Read() {
    if (!HostFiles().Exists(m_path)) {
        return;
    }
    const std::optional<std::string> content = HostFiles().ReadFile(m_path, MostBytes);
    if (!content) {
        for (int number = 1;
             !HostFiles().MoveFile(m_path, m_path + "." + FormatInt(number)) && number < 100;) {
            ++number;
        }
        return;
    }
    std::string_view rest = *content;
    // A line without its end was never acknowledged.
    for (std::size_t end = rest.find('\n'); end != rest.npos; end = rest.find('\n')) {
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end + 1);
        const std::string_view kind = NextWord(line);
        WaitingRecord record;
        record.Id = ParseWholeInt(NextWord(line)).value_or(0);
        m_lastId = std::max(m_lastId, record.Id);
        const auto known = std::find_if(m_records.begin(), m_records.end(),
                                        [&](const WaitingRecord& one) { return one.Id == record.Id; });
        if (kind == "+") {
            record.Longitude = ParseDouble(NextWord(line));
            record.Latitude = ParseDouble(NextWord(line));
            const std::optional<std::string> block = FromHex(line);
            if (block && block->size() == CLiveChannel::RecordBytes && known == m_records.end()) {
                record.Block = *block;
                m_records.push_back(std::move(record));
            }
        } else if (kind == "*" && known != m_records.end()) {
            known->Section = static_cast<std::int32_t>(ParseWholeInt(NextWord(line)).value_or(-1));
            known->Project = line;
        } else if (kind == "-" && known != m_records.end()) {
            m_records.erase(known);
        }
    }
}

bool CWaitingRecords::Compact() {
    std::string content;
    m_lines = 0;
    for (const WaitingRecord& record : m_records) {
        content += AddLine(record);
        ++m_lines;
        if (!record.Project.empty()) {
            content += StoringLine(record);
            ++m_lines;
        }
    }
    return HostFiles().MakeFolder(GetParentFolder(m_path)) && HostFiles().WriteFile(m_path, content);
}

bool CWaitingRecords::Append(const std::string& line) {
    if (!m_lock) {
        return false;
    }
    const CUnixFile file(HostFiles().HostPath(m_path), O_WRONLY | O_CREAT | O_CLOEXEC);
    struct stat state {};
    if (!file.IsOpen() || !file.State(state) || !S_ISREG(state.st_mode) ||
        lseek(file.Descriptor(), 0, SEEK_END) < 0) {
        return false;
    }
    if (file.WriteAll(line) && fdatasync(file.Descriptor()) == 0) {
        ++m_lines;
        return true;
    }
    // Half a line would take the next one with it.
    return ftruncate(file.Descriptor(), state.st_size) == 0 && false;
}

std::optional<std::int64_t> CWaitingRecords::Add(std::string_view block, double longitude, double latitude) {
    WaitingRecord record{m_lastId + 1, longitude, latitude, std::string(block), {}, -1};
    if (!Append(AddLine(record))) {
        return std::nullopt;
    }
    m_lastId = record.Id;
    m_records.push_back(std::move(record));
    return m_lastId;
}

bool CWaitingRecords::Storing(std::int64_t id, std::string_view project, std::int32_t section) {
    const auto known = std::find_if(m_records.begin(), m_records.end(),
                                    [id](const WaitingRecord& one) { return one.Id == id; });
    if (known == m_records.end()) {
        return true;
    }
    WaitingRecord marked = *known;
    marked.Project = project;
    marked.Section = section;
    if (!Append(StoringLine(marked))) {
        return false;
    }
    *known = std::move(marked);
    return true;
}

void CWaitingRecords::Remove(std::int64_t id) {
    const std::size_t former = m_records.size();
    std::erase_if(m_records, [id](const WaitingRecord& one) { return one.Id == id; });
    if (m_records.size() == former) {
        return;
    }
    // What can't be written is found out at the next start: the row is in its project.
    (void)Append("- " + FormatInt(id) + "\n");
    if (m_lines > LinesToCompact && m_lines > 4 * static_cast<int>(m_records.size())) {
        (void)Compact();
    }
}

const WaitingRecord* CWaitingRecords::Find(std::int64_t id) const {
    const auto known = std::find_if(m_records.begin(), m_records.end(),
                                    [id](const WaitingRecord& one) { return one.Id == id; });
    return known == m_records.end() ? nullptr : &*known;
}
