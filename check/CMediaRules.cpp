#include "check/CMediaRules.h"

#include <algorithm>
#include <utility>

#include "check/drives.h"
#include "check/rules.h"
#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"

namespace {

constexpr double TimeTolerance = 1.0;  // seconds; durations come rounded
constexpr double BlackShare = 0.995;
constexpr double BlurLimit = 6.0;  // of PictureProbe::Sharpness

// One moment of a video shows all that is at its place.
bool AreOfOnePlace(const _REC_DATA& a, const _REC_DATA& b) {
    return a.TestingID == b.TestingID && a.DistanceStart == b.DistanceStart;
}

}  // namespace

CMediaRules::CMediaRules(const CCheckSnapshot& snapshot, bool open, std::shared_ptr<CMediaMemory> memory)
    : m_snapshot(snapshot), m_open(open), m_queue(std::move(memory)) {}

void CMediaRules::AddTasks(CheckTasks& tasks) {
    AddForEachSection(m_snapshot, tasks, [this](const SectionRecords& entry, CFindings&) {
        const CHostFiles::CLookOnce look(HostFiles());
        PutSection(entry);
    });
}

void CMediaRules::PutSection(const SectionRecords& entry) {
    const std::string video = entry.Section.FirstVideo();
    for (const _REC_DATA& record : entry.Records) {
        if (!record.Video.empty() && !record.Pictures.IsEmpty()) {
            m_recordsOf[LowerCase(record.Video)].push_back(&record);
        }
    }
    if (!video.empty() && MissingDrive(video) == 0 && !m_snapshot.IsSonar(entry.Section)) {
        Put({File::Kind::Video, &entry.Section, nullptr, "VideoFileList", video});
    }
    for (const _REC_DATA& record : entry.Records) {
        PutPicture(entry, record, record.GetPicture1(), "Picture1");
        PutPicture(entry, record, record.GetPicture2(), "Picture2");
    }
}

void CMediaRules::PutPicture(const SectionRecords& entry, const _REC_DATA& record, const std::string& path,
                             const char* column) {
    if (path.empty() || MissingDrive(path) != 0) {
        return;
    }
    Put({File::Kind::Picture, &entry.Section, &record, column, path});
    if (m_snapshot.Drawn.contains(LowerCase(path))) {
        Put({File::Kind::Original, &entry.Section, &record, column, MakeOriginalPath(path)});
    }
}

void CMediaRules::Put(File file) {
    if (!m_known.try_emplace(LowerCase(file.Path), m_files.size()).second) {
        return;
    }
    MediaJob job;
    job.HostPath = HostFiles().HostPath(file.Path);
    job.Owner = m_files.size();
    if (m_open && file.What != File::Kind::Original) {
        job.What = file.What == File::Kind::Video ? MediaJob::Kind::Video : MediaJob::Kind::Picture;
    }
    m_files.push_back(std::move(file));
    m_queue.Put(std::move(job));
}

void CMediaRules::Take(std::chrono::milliseconds wait, CFindings& findings) {
    for (const MediaResult& result : m_queue.Take(wait)) {
        Judge(m_files[result.Owner], result, findings);
    }
}

void CMediaRules::Judge(const File& file, const MediaResult& result, CFindings& findings) {
    const bool missing = result.State == MediaState::Missing;
    switch (file.What) {
        case File::Kind::Video:
            if (result.State != MediaState::Readable) {
                findings.Add(missing ? RuleVideoMissing : RuleVideoUnreadable, *file.Section, file.Path,
                             file.Column);
            } else if (result.Duration > 0.0) {
                JudgeDuration(file, result.Duration, findings);
            }
            break;
        case File::Kind::Picture:
            if (result.State != MediaState::Readable) {
                findings.Add(missing ? RulePictureMissing : RulePictureUnreadable, *file.Record, file.Path,
                             file.Column);
            } else if (m_open) {
                JudgePicture(file, result.Picture, findings);
            }
            break;
        case File::Kind::Original:
            if (missing) {
                findings.Add(RuleNoOriginal, *file.Record, file.Path, file.Column);
            }
            break;
    }
}

// One time beyond the end is wrong itself; if several are, it is the wrong video, or not all of it.
void CMediaRules::JudgeDuration(const File& file, double duration, CFindings& findings) const {
    const auto records = m_recordsOf.find(LowerCase(file.Path));
    if (records == m_recordsOf.end()) {
        return;
    }
    std::vector<const _REC_DATA*> beyond;
    double latest = 0.0;
    for (const _REC_DATA* record : records->second) {
        const double time = std::max(record->GetPicTime1(), record->GetPicTime2());
        if (time > duration + TimeTolerance) {
            beyond.push_back(record);
            latest = std::max(latest, time);
        }
    }
    const std::string value = FormatNumber(latest, 1) + " s > " + FormatNumber(duration, 1) + " s";
    if (beyond.size() == 1) {
        findings.Add(RulePictureTime, *beyond.front(), value, "Picture1");
    } else if (!beyond.empty()) {
        findings.Add(RuleVideoTooShort, *file.Section, value, file.Column);
    }
}

void CMediaRules::JudgePicture(const File& file, const PictureProbe& picture, CFindings& findings) {
    if (picture.DarkShare > BlackShare) {
        findings.Add(RulePictureBlack, *file.Record, GetFileName(file.Path), file.Column);
        return;  // all black ones are alike, and none is sharp
    }
    if (picture.Sharpness < BlurLimit) {
        findings.Add(RulePictureBlurred, *file.Record, GetFileName(file.Path), file.Column);
    }
    std::vector<std::size_t>& alike = m_byDigest[picture.Digest];
    const auto same = std::find_if(alike.begin(), alike.end(), [&](std::size_t other) {
        return !AreOfOnePlace(*m_files[other].Record, *file.Record) &&
               HostFiles().HaveSameContent(m_files[other].Path, file.Path);
    });
    if (same != alike.end()) {
        findings.Add(RulePictureTwice, *file.Record,
                     GetFileName(file.Path) + " = " + GetFileName(m_files[*same].Path), file.Column);
    }
    alike.push_back(static_cast<std::size_t>(&file - m_files.data()));
}
