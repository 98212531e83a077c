// The records that came in and have no row yet, in a list file: what was acknowledged to its sender is never
// lost, whatever becomes of the program. A line is added and flushed for each step; docs/files.md tells the
// form.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class CUnixFile;

struct WaitingRecord {
    std::int64_t Id = 0;
    // Degrees, of the moment when it came in.
    double Longitude = 0;
    double Latitude = 0;
    std::string Block;
    // Where it was about to be stored when the program ended: path text and section. It may be there, or not.
    std::string Project;
    std::int32_t Section = -1;
};

class CWaitingRecords {
public:
    // Reads what a former run left at the path text. A file that can't be read is put aside under a further
    // name. While another program has the list, this one has no records and takes none.
    explicit CWaitingRecords(std::string path);
    ~CWaitingRecords();
    CWaitingRecords(const CWaitingRecords&) = delete;
    CWaitingRecords& operator=(const CWaitingRecords&) = delete;

    // Once it is on the disk; nothing if it can't be.
    std::optional<std::int64_t> Add(std::string_view block, double longitude, double latitude);
    // Right before its row is stored. False if that can't be written.
    bool Storing(std::int64_t id, std::string_view project, std::int32_t section);
    // Its row is stored, or nobody wants it.
    void Remove(std::int64_t id);

    const std::vector<WaitingRecord>& All() const { return m_records; }
    const WaitingRecord* Find(std::int64_t id) const;
    const std::string& Path() const { return m_path; }

private:
    bool Lock();
    void Read();
    bool Append(const std::string& line);
    // Without what is done with.
    bool Compact();

    std::string m_path;
    std::unique_ptr<CUnixFile> m_lock;  // null while another program has the list
    std::vector<WaitingRecord> m_records;
    std::int64_t m_lastId = 0;
    int m_lines = 0;  // in the file
};
