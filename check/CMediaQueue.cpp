#include "check/CMediaQueue.h"

#include <sys/stat.h>

#include <utility>

namespace {

MediaResult Probe(const MediaJob& job) {
    MediaResult result;
    switch (job.What) {
        case MediaJob::Kind::Picture:
            result.Picture = ProbePicture(job.HostPath);
            result.State = result.Picture.State;
            break;
        case MediaJob::Kind::Video: {
            const VideoProbe video = ProbeVideo(job.HostPath);
            result.State = video.State;
            result.Duration = video.Duration;
            break;
        }
        case MediaJob::Kind::Exists:
            result.State = MediaState::Readable;
            break;
    }
    return result;
}

MediaResult Look(const MediaJob& job, CMediaMemory& memory) {
    MediaResult result;
    struct stat state {};
    if (stat(job.HostPath.c_str(), &state) == 0) {
        const CMediaMemory::Key key{
            job.HostPath, state.st_size,
            static_cast<std::int64_t>(state.st_mtim.tv_sec) * 1'000'000'000 + state.st_mtim.tv_nsec};
        if (job.What == MediaJob::Kind::Exists || !memory.Find(key, result)) {
            result = Probe(job);
            if (job.What != MediaJob::Kind::Exists) {
                memory.Keep(key, result);
            }
        }
    }
    result.Owner = job.Owner;
    return result;
}

}  // namespace

bool CMediaMemory::Find(const Key& key, MediaResult& result) const {
    const std::scoped_lock lock(m_mutex);
    const auto found = m_known.find(key);
    if (found == m_known.end()) {
        return false;
    }
    result = found->second;
    return true;
}

void CMediaMemory::Keep(Key key, const MediaResult& result) {
    const std::scoped_lock lock(m_mutex);
    m_known.insert_or_assign(std::move(key), result);
}

CMediaQueue::CMediaQueue(std::shared_ptr<CMediaMemory> memory)
    : m_memory(std::move(memory)), m_thread([this](const std::stop_token& stop) { Run(stop); }) {}

CMediaQueue::~CMediaQueue() {
    m_thread.request_stop();
    m_work.notify_all();
}

void CMediaQueue::Put(MediaJob job) {
    {
        const std::scoped_lock lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    ++m_pending;
    m_work.notify_one();
}

std::vector<MediaResult> CMediaQueue::Take(std::chrono::milliseconds wait) {
    std::unique_lock lock(m_mutex);
    if (m_pending > 0 && m_results.empty() && wait.count() > 0) {
        (void)m_done.wait_for(lock, wait, [this] { return !m_results.empty(); });
    }
    std::vector<MediaResult> results = std::exchange(m_results, {});
    m_pending -= results.size();
    return results;
}

void CMediaQueue::Run(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
        MediaJob job;
        {
            std::unique_lock lock(m_mutex);
            if (!m_work.wait(lock, stop, [this] { return !m_jobs.empty(); })) {
                return;
            }
            job = std::move(m_jobs.front());
            m_jobs.pop_front();
        }
        MediaResult result = Look(job, *m_memory);
        {
            const std::scoped_lock lock(m_mutex);
            m_results.push_back(std::move(result));
        }
        m_done.notify_one();
    }
}
