// The playing library: one handle with its renderer, without a widget. Nothing here waits for the library:
// all commands are queued to its threads, and what comes back is told in the thread of the constructor, from
// its event loop. Pictures are drawn by the processor into memory, which needs no graphics card.
#pragma once

#include <QObject>
#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "controls/CSeekPlayer.h"

class QImage;
struct mpv_event;
struct mpv_handle;
struct mpv_render_context;

class CMpvCore final : public CSeekPlayer {
public:
    using TextReply = std::function<void(const std::string& value)>;

    CMpvCore();
    ~CMpvCore();
    CMpvCore(const CMpvCore&) = delete;
    CMpvCore& operator=(const CMpvCore&) = delete;

    // False if the library can't be started; nothing else does anything then.
    bool IsRunning() const { return m_render != nullptr; }

    // A regular file, by its absolute host path. What is still to be told of the file before is dropped.
    void Load(const std::string& hostPath);
    void Unload();

    void Command(const std::vector<std::string>& words, Done done = nullptr) override;
    void Set(const char* property, const std::string& value) override;
    // Dropped without an answer if another file is loaded meanwhile.
    void GetNumber(const char* property, NumberReply reply) override;
    void GetText(const char* property, TextReply reply);  // empty if there is none

    // Draws the picture that is shown now, with black bars, into an image of format RGB32.
    bool Render(QImage& image);
    // Of the file loaded last, with the clock; its pictures are turned so when they are drawn.
    void SetQuarterTurns(int turns) { m_quarterTurns = ((turns % 4) + 4) % 4; }
    std::uint64_t NewPictures() const override { return m_newPictures; }

    // All of the file loaded last.
    std::function<void()> OnFileLoaded;
    std::function<void()> OnLoadFailed;
    std::function<void()> OnRestart;  // there is a picture, after loading or a seek
    std::function<void(double seconds)> OnTime;
    std::function<void(double seconds)> OnDuration;
    std::function<void(bool atEnd)> OnEnd;
    std::function<void()> OnPicture;  // to be drawn, soon: the library waits for it

private:
    struct Reply {
        std::uint64_t Load;
        Done Finished;
        NumberReply Number;
        TextReply Text;
    };

    static void Woken(void* self);
    static void PictureCame(void* self);
    std::uint64_t Expect(Reply reply);
    bool RenderUpright(QImage& image);
    void TakePicture();
    void ReadEvents();
    void Take(const mpv_event& event);
    void TakeProperty(const mpv_event& event);
    void TakeReply(const mpv_event& event);
    bool IsCurrent() const { return m_loadId != 0 && m_startedId == m_loadId; }

    QObject m_context;  // calls queued to it end with it
    mpv_handle* m_handle = nullptr;
    mpv_render_context* m_render = nullptr;
    std::atomic<bool> m_eventsQueued = false;
    std::atomic<bool> m_pictureQueued = false;

    int m_quarterTurns = 0;
    std::uint64_t m_newPictures = 0;
    std::uint64_t m_load = 0;      // counts loads and unloads
    std::int64_t m_loadId = 0;     // the library's own number of the file; 0: not yet known, or none
    std::int64_t m_startedId = 0;  // of the file that it is at
    std::uint64_t m_lastReply = 0;
    std::map<std::uint64_t, Reply> m_replies;
};
