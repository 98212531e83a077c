// The player that a window embeds: picture, bar and keys.
//
// Its keys are a table (Keys). Beside them Esc leaves full screen, then OnEscape; Enter presses the button
// that has the focus, else OnEnter; a double click on the picture is full screen too.
//
// A video that was loaded stands on its first frame until Play. All of it is for the thread of windows, and
// nothing waits for the video.
#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "controls/CVideoPlayback.h"

class CPlayerBar;
class CVideoArea;
class QKeyEvent;

class CWMPPlayer4 : public QWidget {
public:
    class CControls {
    public:
        explicit CControls(CVideoPlayback& playback) : m_playback(playback) {}

        void Play() { m_playback.Play(); }
        // The frame of CurrentPosition is the one shown then.
        void Pause() { m_playback.Pause(); }
        // To the first frame; the file stays loaded.
        void Stop() { m_playback.Stop(); }
        // Seconds from the file's first moment. What was put counts at once, kept between 0 and the duration;
        // put before the file is loaded, it is gone to then.
        double CurrentPosition() const { return m_playback.Position(); }
        void SetCurrentPosition(double seconds) { m_playback.SetPosition(seconds); }

    private:
        CVideoPlayback& m_playback;
    };

    explicit CWMPPlayer4(QWidget* parent = nullptr);
    ~CWMPPlayer4() override;
    CWMPPlayer4(const CWMPPlayer4&) = delete;
    CWMPPlayer4& operator=(const CWMPPlayer4&) = delete;

    // The path text exactly as it was put. Putting the same once more loads it anew; empty unloads.
    std::string URL() const { return m_playback.URL(); }
    void SetURL(std::string_view pathText);
    CControls& Controls() { return m_controls; }
    double Duration() const { return m_playback.Duration(); }  // seconds; 0 while it isn't known
    void SetFullScreen(bool fullScreen);
    bool IsFullScreen() const { return m_fullScreen; }

    bool IsPlaying() const { return m_playback.IsPlaying(); }
    // The file is still being loaded, or the picture of the position put isn't there yet.
    bool IsBusy() const { return m_playback.IsBusy(); }
    struct Key {
        Qt::Key Code;
        Qt::KeyboardModifiers Modifiers;
        int Text;  // message that tells what it does
        void (*Do)(CWMPPlayer4& player);
    };
    static std::span<const Key> Keys();
    // Does what the key stands for; false if for nothing. For windows whose lists have the focus.
    bool TakeKey(const QKeyEvent& event);
    // What the picture area says as long as there is no video.
    void SetEmptyText(std::string_view text);

    // All may not destroy the player.
    std::function<void()> OnEscape;             // Esc in full screen, which is left already
    std::function<void(bool control)> OnEnter;  // `control`: with Ctrl

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Refresh();
    QString CurrentMessage() const;
    void Skip(double seconds);
    bool TakeEnter(Qt::KeyboardModifiers modifiers);
    void ShowBar();

    CVideoPlayback m_playback;
    CControls m_controls{m_playback};
    QWidget* m_panel;  // moves into a window of its own for full screen
    CVideoArea* m_area;
    CPlayerBar* m_bar;
    QTimer m_hideBar;
    QTimer m_slow;  // tells of loading only if it takes long
    std::string m_emptyText;
    bool m_fullScreen = false;
};
