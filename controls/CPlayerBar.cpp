#include "controls/CPlayerBar.h"

#include <QActionGroup>
#include <QBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QResizeEvent>
#include <QSlider>
#include <QToolButton>
#include <QWidgetAction>
#include <cmath>
#include <string>

#include "controls/CSeekBar.h"
#include "controls/CVideoPlayback.h"
#include "controls/icons.h"
#include "controls/playtime.h"
#include "shell/dialogs/qttext.h"
#include "shell/dialogs/theme.h"
#include "shell/numbers.h"

namespace {

constexpr QSize IconSize(20, 20);
constexpr QSize ButtonSize(30, 28);
constexpr int VolumeWidth = 80;
constexpr int Margin = 6;
constexpr int Spacing = 2;

constexpr const char* Style = R"(
QToolButton { border: 1px solid transparent; border-radius: 4px; background: transparent;
    color: #3A4753; padding: 0 4px; }
QToolButton:hover { background: #E4EAF0; }
QToolButton:pressed { background: #D3DDE7; }
QToolButton:focus { border-color: #1F6FB2; }
QToolButton:disabled { color: #A3ADB6; }
QToolButton::menu-indicator { image: none; }
QSlider::groove:horizontal { height: 4px; border-radius: 2px; background: #D3D9DF; }
QSlider::sub-page:horizontal { border-radius: 2px; background: #7C8A97; }
QSlider::handle:horizontal { width: 12px; margin: -4px 0; border-radius: 6px; background: #3A4753; }
QSlider::handle:horizontal:focus { background: #1F6FB2; }
)";

std::string IconPath(const char* name) {
    return std::string("ui\\player\\") + name + ".svg";
}

QString SpeedText(double speed) {
    return ToQt(FormatNumber(speed, 2) + "×");
}

}  // namespace

CPlayerBar::CPlayerBar(CVideoPlayback& playback, QWidget* parent) : QWidget(parent), m_playback(playback) {
    setAutoFillBackground(true);
    setStyleSheet(Style);

    m_seekBar = new CSeekBar(this);
    m_seekBar->setAccessibleName(MessageText(3122));
    m_seekBar->OnSeek = [this](int position) { m_playback.SetPosition(position / 1000.0); };
    m_seekBar->OnTip = [](int position) { return ToQt(FormatPlayTime(position / 1000.0)); };

    m_play =
        AddButton("play", 3110, [this] { m_playback.IsPlaying() ? m_playback.Pause() : m_playback.Play(); });
    m_stop = AddButton("stop", 3112, [this] { m_playback.Stop(); });
    m_back = AddButton("back", 3113, [this] { m_playback.StepBack(); });
    m_forward = AddButton("forward", 3114, [this] { m_playback.StepForward(); });
    m_back->setAutoRepeat(true);
    m_forward->setAutoRepeat(true);
    m_time = new QLabel(this);
    m_time->setAccessibleName(MessageText(3123));
    m_time->setMinimumWidth(1);
    m_speed = AddButton(nullptr, 3115, nullptr);
    MakeSpeedMenu();
    m_tone = AddButton("tone", 3945, nullptr);
    MakeToneMenu();
    m_mute = AddButton("volume", 3116, [this] { m_playback.SetMute(!m_playback.IsMute()); });
    MakeVolume();
    m_full = AddButton("fullscreen", 3120, [this] {
        if (OnFullScreen) {
            OnFullScreen();
        }
    });

    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(Margin, 2, Margin, 4);
    rows->setSpacing(0);
    rows->setSizeConstraint(QLayout::SetNoConstraint);  // what is too wide gives way in resizeEvent
    rows->addWidget(m_seekBar);
    auto* row = new QHBoxLayout;
    row->setSpacing(Spacing);
    for (QWidget* button : {m_play, m_stop, m_back, m_forward}) {
        row->addWidget(button);
    }
    row->addSpacing(Margin);
    row->addWidget(m_time, 1);
    for (QWidget* control : std::initializer_list<QWidget*>{m_speed, m_tone, m_mute, m_volume, m_full}) {
        row->addWidget(control);
    }
    rows->addLayout(row);
    Refresh();
}

QToolButton* CPlayerBar::AddButton(const char* icon, int tip, std::function<void()> handler) {
    auto* button = new QToolButton(this);
    button->setFocusPolicy(Qt::TabFocus);  // a click leaves the keys where they are
    button->setIconSize(IconSize);
    button->setMinimumSize(ButtonSize);
    button->setFixedHeight(ButtonSize.height());
    button->setToolTip(MessageText(tip));
    button->setAccessibleName(MessageText(tip));
    if (icon != nullptr) {
        button->setObjectName(icon);
        button->setIcon(LoadIcon(IconPath(icon)));
    }
    if (handler) {
        connect(button, &QToolButton::clicked, this, [run = std::move(handler)] { run(); });
    }
    return button;
}

void CPlayerBar::MakeSpeedMenu() {
    m_speed->setObjectName("speed");
    m_speed->setPopupMode(QToolButton::InstantPopup);
    m_speed->setMinimumWidth(m_speed->fontMetrics().horizontalAdvance(SpeedText(0.25)) + 16);
    m_speeds = new QMenu(m_speed);
    auto* group = new QActionGroup(m_speeds);
    for (const double speed : CVideoPlayback::Speeds) {
        QAction* action = m_speeds->addAction(SpeedText(speed));
        action->setCheckable(true);
        action->setData(speed);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, speed] { m_playback.SetSpeed(speed); });
    }
    m_speed->setMenu(m_speeds);
}

void CPlayerBar::MakeVolume() {
    m_volume = new QSlider(Qt::Horizontal, this);
    m_volume->setObjectName("volumeslider");
    m_volume->setRange(0, 100);
    m_volume->setFixedWidth(VolumeWidth);
    m_volume->setFocusPolicy(Qt::TabFocus);
    m_volume->setToolTip(MessageText(3118));
    m_volume->setAccessibleName(MessageText(3118));
    connect(m_volume, &QSlider::valueChanged, this, [this](int percent) {
        if (percent != m_playback.Volume()) {
            m_playback.SetVolume(percent);
            m_playback.SetMute(percent == 0);
        }
    });
}

void CPlayerBar::MakeToneMenu() {
    m_tone->setPopupMode(QToolButton::InstantPopup);
    m_tones = new QMenu(m_tone);
    auto* panel = new QWidget(m_tones);
    auto* grid = new QGridLayout(panel);
    std::vector<QSlider*> sliders;
    for (const int message : {3946, 3947}) {
        auto* slider = new QSlider(Qt::Horizontal, panel);
        slider->setRange(-100, 100);
        slider->setFixedWidth(2 * VolumeWidth);
        slider->setAccessibleName(MessageText(message));
        grid->addWidget(new QLabel(MessageText(message), panel), grid->rowCount(), 0);
        grid->addWidget(slider, grid->rowCount() - 1, 1);
        sliders.push_back(slider);
    }
    for (QSlider* slider : sliders) {
        connect(slider, &QSlider::valueChanged, this, [this, sliders] {
            const bool neutral = sliders[0]->value() == 0 && sliders[1]->value() == 0;
            m_tone->setText(neutral ? QString() : "•");
            m_tone->setToolButtonStyle(neutral ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon);
            if (OnTone) {
                OnTone(sliders[0]->value(), sliders[1]->value());
            }
        });
    }
    auto* reset = new QPushButton(MessageText(3948), panel);
    connect(reset, &QPushButton::clicked, this, [sliders] {
        for (QSlider* slider : sliders) {
            slider->setValue(0);
        }
    });
    grid->addWidget(reset, grid->rowCount(), 0, 1, 2);
    auto* action = new QWidgetAction(m_tones);
    action->setDefaultWidget(panel);
    m_tones->addAction(action);
    m_tone->setMenu(m_tones);
}

bool CPlayerBar::IsMenuOpen() const {
    return m_speeds->isVisible() || m_tones->isVisible();
}

void CPlayerBar::ShowFullScreen(bool fullScreen) {
    m_full->setIcon(LoadIcon(IconPath(fullScreen ? "leavefullscreen" : "fullscreen")));
    m_full->setToolTip(MessageText(fullScreen ? 3121 : 3120));
    m_full->setAccessibleName(m_full->toolTip());
}

void CPlayerBar::Refresh() {
    const bool ready = m_playback.GetState() == CVideoPlayback::State::Ready;
    m_seekBar->SetLength(ready ? static_cast<int>(std::min(m_playback.Duration(), 2e6) * 1000) : 0);
    m_seekBar->SetPosition(static_cast<int>(std::lround(std::min(m_playback.Position(), 2e6) * 1000)));
    std::string time = FormatPlayTime(m_playback.Position());
    if (m_showsDuration) {
        time += " / " + FormatPlayTime(m_playback.Duration());
    }
    m_time->setText(ToQt(time));
    m_time->setEnabled(ready);
    for (QWidget* button : {m_play, m_stop, m_back, m_forward}) {
        if (button->isEnabled() != ready) {
            button->setEnabled(ready);
        }
    }
    RefreshButtons();
}

void CPlayerBar::RefreshButtons() {
    if (const int playing = m_playback.IsPlaying() ? 1 : 0; playing != m_playShown) {
        m_playShown = playing;
        m_play->setIcon(LoadIcon(IconPath(playing != 0 ? "pause" : "play")));
        m_play->setToolTip(MessageText(playing != 0 ? 3111 : 3110));
        m_play->setAccessibleName(m_play->toolTip());
    }
    if (const int mute = m_playback.IsMute() ? 1 : 0; mute != m_muteShown) {
        m_muteShown = mute;
        m_mute->setIcon(LoadIcon(IconPath(mute != 0 ? "mute" : "volume")));
        m_mute->setToolTip(MessageText(mute != 0 ? 3117 : 3116));
        m_mute->setAccessibleName(m_mute->toolTip());
    }
    m_volume->setValue(m_playback.Volume());
    if (m_playback.Speed() != m_speedShown) {
        m_speedShown = m_playback.Speed();
        m_speed->setText(SpeedText(m_speedShown));
        for (QAction* action : m_speeds->actions()) {
            action->setChecked(action->data().toDouble() == m_speedShown);
        }
    }
}

int CPlayerBar::ButtonsWidth() {
    return 6 * (ButtonSize.width() + Spacing) + 3 * Margin;
}

QSize CPlayerBar::minimumSizeHint() const {
    return {ButtonsWidth() + m_time->fontMetrics().horizontalAdvance("00:00.000"), sizeHint().height()};
}

void CPlayerBar::resizeEvent(QResizeEvent* event) {
    const int time = m_time->fontMetrics().horizontalAdvance("00:00.000 / 00:00.000") + Margin;
    const int room = event->size().width() - ButtonsWidth() - time;
    const int speed = m_speed->minimumWidth() + Spacing;
    m_showsDuration = room >= 0;
    m_speed->setVisible(room >= speed);
    const int tone = ButtonSize.width() + Spacing;
    m_tone->setVisible(room >= speed + tone);
    m_volume->setVisible(room >= speed + tone + VolumeWidth + Spacing);
    Refresh();
    layout()->activate();
}
