#include "controls/CVideoPlayback.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/seams.h"

namespace {

// Message number, or 0. Anything but a regular file could keep a reader waiting for ever.
int FindFault(const std::string& hostPath) {
    struct stat state {};
    if (stat(hostPath.c_str(), &state) != 0) {
        return 3101;
    }
    if (!S_ISREG(state.st_mode)) {
        return 3102;
    }
    if (state.st_size == 0) {
        return 3103;
    }
    return access(hostPath.c_str(), R_OK) == 0 ? 0 : 3104;
}

bool HasIndex(const std::string& format) {
    for (const char* name : {"avi", "mov", "matroska"}) {
        if (format.find(name) != std::string::npos) {
            return true;
        }
    }
    return false;
}

}  // namespace

CVideoPlayback::CVideoPlayback() {
    m_core.OnFileLoaded = [this] { ReadFacts(); };
    m_core.OnLoadFailed = [this] { Refuse(3105); };
    m_core.OnRestart = [this] {
        if (m_state != State::Loading) {
            m_seek.TakeRestart();
            return;
        }
        m_pictureCame = true;
        if (m_factsKnown) {
            m_core.GetNumber("time-pos",
                             [this](std::optional<double> time) { TakeFirstFrame(time.value_or(0.0)); });
        }
    };
    m_core.OnTime = [this](double seconds) { TakeTime(seconds); };
    m_core.OnDuration = [this](double seconds) {
        m_duration = std::max(seconds, 0.0);
        m_seek.SetDuration(m_duration);
        Change();
    };
    m_core.OnEnd = [this](bool atEnd) { TakeEnd(atEnd); };
    m_core.OnPicture = [this] {
        if (OnPicture) {
            OnPicture();
        }
    };
    m_seek.OnArrived = [this](const CFrameSeek::Arrival& arrival) { TakeArrival(arrival); };
}

void CVideoPlayback::Change() const {
    if (OnChange) {
        OnChange();
    }
}

void CVideoPlayback::SetURL(std::string_view pathText) {
    m_url = pathText;
    m_seek.End();
    m_file = {};
    m_factsKnown = m_pictureCame = m_wantsPlay = m_atEnd = false;
    m_position = m_duration = 0.0;
    m_queued.reset();
    m_fault = 0;
    if (m_url.empty()) {
        m_state = State::NoVideo;
        m_core.Unload();
    } else {
        m_state = State::Loading;
        std::error_code error;
        const std::string host = std::filesystem::absolute(HostFiles().HostPath(m_url), error).string();
        const int fault = m_core.IsRunning() ? FindFault(host) : 3107;
        if (fault != 0) {
            Refuse(fault);
            return;
        }
        m_core.Load(host);
    }
    Change();
}

void CVideoPlayback::Refuse(int message) {
    m_seek.End();
    m_state = State::Refused;
    m_fault = message;
    m_wantsPlay = false;
    m_position = m_duration = 0.0;
    m_core.Unload();
    Change();
}

void CVideoPlayback::ReadFacts() {
    m_core.GetNumber("container-fps",
                     [this](std::optional<double> rate) { m_file.FrameRate = rate.value_or(0.0); });
    m_core.GetText("file-format", [this](const std::string& format) { m_file.HasIndex = HasIndex(format); });
    m_core.GetNumber("duration", [this](std::optional<double> seconds) {
        m_duration = m_file.Duration = std::max(seconds.value_or(0.0), 0.0);
    });
    m_core.GetNumber("current-tracks/video/demux-rotation", [this](std::optional<double> degrees) {
        m_core.SetQuarterTurns(static_cast<int>(std::lround(degrees.value_or(0.0) / 90)));
    });
    // The last, for answers come in the order of the questions.
    m_core.GetText("vid", [this](const std::string& track) {
        if (track.empty() || track == "no") {
            Refuse(3106);
            return;
        }
        m_factsKnown = true;
        if (m_pictureCame) {
            m_core.OnRestart();
        }
        Change();
    });
}

void CVideoPlayback::TakeFirstFrame(double time) {
    if (m_state != State::Loading) {
        return;
    }
    m_file.FirstFrame = time;
    m_file.Duration = m_duration;
    m_state = State::Ready;
    m_seek.Begin(m_file);
    if (OnPicture) {
        OnPicture();  // once more, for now it is known which way up
    }
    if (m_queued) {
        const double queued = *m_queued;
        m_queued.reset();
        SetPosition(queued);
    } else {
        TakeArrival({});
    }
    Change();
}

double CVideoPlayback::Clamped(double seconds) const {
    const double position = seconds > 0 ? seconds : 0.0;  // also for "not a number"
    return m_duration > 0 ? std::min(position, m_duration) : std::min(position, 1e8);
}

void CVideoPlayback::SetPosition(double seconds) {
    if (m_state == State::Loading) {
        m_position = Clamped(seconds);
        m_queued = seconds;
    } else if (m_state == State::Ready) {
        m_position = Clamped(seconds);
        m_core.Set("pause", "yes");
        m_seek.GoTo(m_position);
    }
    Change();
}

void CVideoPlayback::Play() {
    if (m_state != State::Loading && m_state != State::Ready) {
        return;
    }
    m_wantsPlay = true;
    if (m_state == State::Ready && !m_seek.IsBusy()) {
        if (m_atEnd) {
            SetPosition(0.0);  // plays on arrival
        } else {
            m_core.Set("pause", "no");
        }
    }
    Change();
}

void CVideoPlayback::Pause() {
    const bool played = m_wantsPlay;
    m_wantsPlay = false;
    if (m_state == State::Ready) {
        m_core.Set("pause", "yes");
        // The library may have gone a frame further than the position told, or be on its way.
        if (played || m_seek.IsBusy()) {
            m_seek.StayAt(m_position);
        }
    }
    Change();
}

void CVideoPlayback::Stop() {
    m_wantsPlay = false;
    SetPosition(0.0);
}

void CVideoPlayback::StepBack() {
    if (m_state == State::Ready) {
        if (m_wantsPlay) {
            Pause();
        }
        m_seek.StepBack();
    }
}

void CVideoPlayback::StepForward() {
    if (m_state == State::Ready) {
        if (m_wantsPlay) {
            Pause();
        }
        m_seek.StepForward();
    }
}

void CVideoPlayback::TakePosition(double seconds) {
    m_position = std::max(seconds, 0.0);
    if (m_duration > 0 && m_position > m_duration) {
        m_duration = m_position;  // some heads tell less than is there
        m_seek.SetDuration(m_duration);
    }
}

void CVideoPlayback::TakeTime(double seconds) {
    if (m_state != State::Ready || !m_wantsPlay || m_seek.IsBusy()) {
        return;
    }
    TakePosition(seconds);
    m_seek.TakeTime(seconds);
    Change();
}

void CVideoPlayback::TakeEnd(bool atEnd) {
    m_atEnd = atEnd;
    m_seek.TakeEnd(atEnd);
    if (!atEnd) {
        return;
    }
    if (m_state == State::Loading && m_factsKnown && !m_pictureCame) {
        Refuse(3105);
    } else if (m_state == State::Ready && m_wantsPlay && !m_seek.IsBusy()) {
        Pause();
    }
}

void CVideoPlayback::TakeArrival(const CFrameSeek::Arrival& arrival) {
    if (arrival.IsLast) {
        if (arrival.CountsAsPosition && arrival.Time) {
            TakePosition(*arrival.Time);
        }
        if (m_wantsPlay) {
            m_core.Set("pause", "no");
        }
    }
    if (OnArrived) {
        OnArrived();
    }
    Change();
}

void CVideoPlayback::SetSpeed(double factor) {
    m_speed = std::clamp(factor, *std::begin(Speeds), *std::rbegin(Speeds));
    m_core.Set("speed", FormatNumber(m_speed, 3));
    Change();
}

void CVideoPlayback::ChangeSpeed(int steps) {
    const auto* at = std::lower_bound(std::begin(Speeds), std::end(Speeds), m_speed);
    const auto index = std::clamp<std::ptrdiff_t>(at - std::begin(Speeds) + steps, 0, std::ssize(Speeds) - 1);
    SetSpeed(Speeds[index]);
}

void CVideoPlayback::SetVolume(int percent) {
    m_volume = std::clamp(percent, 0, 100);
    m_core.Set("volume", FormatInt(m_volume));
    Change();
}

void CVideoPlayback::SetMute(bool mute) {
    m_mute = mute;
    m_core.Set("mute", mute ? "yes" : "no");
    Change();
}
