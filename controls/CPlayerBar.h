// The bar under a video: where it is, and the buttons. Narrow bars leave out first the volume, then the
// speed.
#pragma once

#include <QWidget>
#include <functional>
#include <vector>

class CSeekBar;
class CVideoPlayback;
class QLabel;
class QMenu;
class QSlider;
class QToolButton;

class CPlayerBar : public QWidget {
public:
    // The playback must outlive it.
    CPlayerBar(CVideoPlayback& playback, QWidget* parent);

    void Refresh();  // from the state of the playback
    void ShowFullScreen(bool fullScreen);
    bool IsMenuOpen() const;

    QSize minimumSizeHint() const override;

    std::function<void()> OnFullScreen;
    // Both from -100 to 100.
    std::function<void(int brightness, int contrast)> OnTone;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QToolButton* AddButton(const char* icon, int tip, std::function<void()> handler);
    void MakeSpeedMenu();
    void MakeVolume();
    void MakeToneMenu();
    void RefreshButtons();
    static int ButtonsWidth();  // of those that always stay

    CVideoPlayback& m_playback;
    CSeekBar* m_seekBar;
    QToolButton* m_stop;
    QToolButton* m_back;
    QToolButton* m_play;
    QToolButton* m_forward;
    QLabel* m_time;
    QToolButton* m_speed;
    QMenu* m_speeds = nullptr;
    QToolButton* m_tone;
    QMenu* m_tones = nullptr;
    QToolButton* m_mute;
    QSlider* m_volume;
    QToolButton* m_full;
    // What the buttons show, so that a frame that plays doesn't draw them anew: -1 is nothing yet.
    int m_playShown = -1;
    int m_muteShown = -1;
    double m_speedShown = -1.0;
    bool m_showsDuration = true;
};
