// One video after another, without a widget: which file, where in it, playing or not, and what is wrong with
// it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "controls/CFrameSeek.h"
#include "controls/CMpvCore.h"

class CVideoPlayback {
public:
    enum class State { NoVideo, Loading, Ready, Refused };

    CVideoPlayback();
    CVideoPlayback(const CVideoPlayback&) = delete;
    CVideoPlayback& operator=(const CVideoPlayback&) = delete;

    // The path text as it was put. Empty unloads.
    const std::string& URL() const { return m_url; }
    void SetURL(std::string_view pathText);

    State GetState() const { return m_state; }
    int Fault() const { return m_fault; }  // message number; only if refused
    bool IsPlaying() const { return m_wantsPlay; }
    // Something is under way whose result isn't shown yet.
    bool IsBusy() const { return m_state == State::Loading || m_seek.IsBusy(); }
    double Duration() const { return m_duration; }  // seconds; 0 if it isn't known
    // Seconds. What was put counts at once, and stays until the video plays on or is stepped.
    double Position() const { return m_position; }

    void Play();
    void Pause();
    void Stop();  // pauses at the start
    void SetPosition(double seconds);
    void StepBack();
    void StepForward();

    // Those that the bar offers, in rising order.
    static constexpr double Speeds[] = {0.25, 0.5, 1.0, 1.5, 2.0, 4.0, 8.0};
    void SetSpeed(double factor);
    void ChangeSpeed(int steps);  // along Speeds, and not beyond
    void SetVolume(int percent);
    void SetMute(bool mute);
    double Speed() const { return m_speed; }
    int Volume() const { return m_volume; }
    bool IsMute() const { return m_mute; }

    bool Render(QImage& image) { return m_core.Render(image); }

    std::function<void()> OnChange;   // of anything above
    std::function<void()> OnPicture;  // to be drawn, even if it isn't shown
    std::function<void()> OnArrived;  // what was drawn is what is meant

private:
    void Refuse(int message);
    void ReadFacts();
    void TakeFirstFrame(double time);
    void TakePosition(double seconds);  // of the frame that is shown
    void TakeTime(double seconds);
    void TakeEnd(bool atEnd);
    void TakeArrival(const CFrameSeek::Arrival& arrival);
    void Change() const;
    double Clamped(double seconds) const;

    CMpvCore m_core;
    CFrameSeek m_seek{m_core};
    std::string m_url;
    State m_state = State::NoVideo;
    int m_fault = 0;
    CFrameSeek::File m_file;
    bool m_factsKnown = false;
    bool m_pictureCame = false;  // the first of the file
    bool m_wantsPlay = false;
    bool m_atEnd = false;
    double m_position = 0.0;
    double m_duration = 0.0;
    std::optional<double> m_queued;  // put before the file was loaded
    double m_speed = 1.0;
    int m_volume = 100;
    bool m_mute = false;
};
