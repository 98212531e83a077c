// Rules on the files of videos and pictures. Paths are resolved on the store's thread; what is in the files
// is looked at on another one, and told as it comes.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "check/CMediaQueue.h"
#include "check/checktasks.h"

class CMediaRules {
public:
    // Without `open` files are only missed, and not looked into. The snapshot is complete and outlives this.
    CMediaRules(const CCheckSnapshot& snapshot, bool open, std::shared_ptr<CMediaMemory> memory);

    // Resolve the paths.
    void AddTasks(CheckTasks& tasks);
    std::size_t Pending() const { return m_queue.Pending(); }
    // What has been found out meanwhile; waits at most so long for the first.
    void Take(std::chrono::milliseconds wait, CFindings& findings);

private:
    struct File {
        enum class Kind { Video, Picture, Original };
        Kind What = Kind::Video;
        const _TESTING_DATA* Section = nullptr;
        const _REC_DATA* Record = nullptr;  // null for a video
        const char* Column = nullptr;
        std::string Path;
    };

    void PutSection(const SectionRecords& entry);
    void PutPicture(const SectionRecords& entry, const _REC_DATA& record, const std::string& path,
                    const char* column);
    void Put(File file);
    void Judge(const File& file, const MediaResult& result, CFindings& findings);
    void JudgeDuration(const File& file, double duration, CFindings& findings) const;
    void JudgePicture(const File& file, const PictureProbe& picture, CFindings& findings);

    const CCheckSnapshot& m_snapshot;
    bool m_open;
    std::vector<File> m_files;
    std::unordered_map<std::string, std::size_t> m_known;                        // lower-cased paths
    std::unordered_map<std::string, std::vector<const _REC_DATA*>> m_recordsOf;  // by video, lower-cased
    std::unordered_map<std::uint64_t, std::vector<std::size_t>> m_byDigest;
    CMediaQueue m_queue;  // last: its thread ends first
};
