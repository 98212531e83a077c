// Looks into files one after the other on a thread of its own. It gets paths of this machine and touches
// nothing else; who put a file in takes what was found out. Ends at once but for the file in hand.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "workbench/capture/mediaprobe.h"

struct MediaJob {
    enum class Kind {
        Exists,  // only whether there is one
        Picture,
        Video,
    };
    Kind What = Kind::Exists;
    std::string HostPath;
    std::size_t Owner = 0;  // the caller's number
};

struct MediaResult {
    std::size_t Owner = 0;
    MediaState State = MediaState::Missing;
    PictureProbe Picture;
    double Duration = 0.0;
};

// What was found out stays true as long as a file has its size and time; kept from check to check.
class CMediaMemory {
public:
    struct Key {
        std::string HostPath;
        std::int64_t Bytes = 0;
        std::int64_t Time = 0;  // nanoseconds
        auto operator<=>(const Key&) const = default;
    };
    bool Find(const Key& key, MediaResult& result) const;
    void Keep(Key key, const MediaResult& result);

private:
    mutable std::mutex m_mutex;
    std::map<Key, MediaResult> m_known;
};

class CMediaQueue {
public:
    explicit CMediaQueue(std::shared_ptr<CMediaMemory> memory);
    ~CMediaQueue();
    CMediaQueue(const CMediaQueue&) = delete;
    CMediaQueue& operator=(const CMediaQueue&) = delete;

    void Put(MediaJob job);
    // What is done; waits at most so long for the first.
    std::vector<MediaResult> Take(std::chrono::milliseconds wait);
    // That were put in and not taken out.
    std::size_t Pending() const { return m_pending; }

private:
    void Run(const std::stop_token& stop);

    std::shared_ptr<CMediaMemory> m_memory;
    std::mutex m_mutex;
    std::condition_variable_any m_work;
    std::condition_variable m_done;
    std::deque<MediaJob> m_jobs;
    std::vector<MediaResult> m_results;
    std::size_t m_pending = 0;  // the caller's
    std::jthread m_thread;      // last: it uses all of these
};
