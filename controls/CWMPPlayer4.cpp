#include "controls/CWMPPlayer4.h"

#include <QAbstractButton>
#include <QApplication>
#include <QBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <array>
#include <chrono>

#include "controls/CPlayerBar.h"
#include "controls/CVideoArea.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"

namespace {

constexpr std::chrono::seconds BarRest{3};
constexpr std::chrono::milliseconds SlowLoad{400};
constexpr double LongSkip = 5.0;
constexpr double ShortSkip = 1.0;

}  // namespace

CWMPPlayer4::CWMPPlayer4(QWidget* parent) : QWidget(parent), m_emptyText(LoadMessage(3100)) {
    m_panel = new QWidget(this);
    m_area = new CVideoArea(m_panel);
    m_area->setObjectName("picture");
    m_area->setAccessibleName(MessageText(3124));
    m_bar = new CPlayerBar(m_playback, m_panel);
    auto* inner = new QVBoxLayout(m_panel);
    inner->setContentsMargins(0, 0, 0, 0);
    inner->setSpacing(0);
    inner->addWidget(m_area, 1);
    inner->addWidget(m_bar);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(m_panel);
    setFocusProxy(m_area);

    m_area->OnDraw = [this](QImage& image) { return m_playback.Render(image); };
    m_bar->OnTone = [this](int brightness, int contrast) { m_area->SetTone(brightness, contrast); };
    m_area->OnDoubleClick = [this] { SetFullScreen(!m_fullScreen); };
    m_area->OnMouseMove = [this] { ShowBar(); };
    m_bar->OnFullScreen = [this] { SetFullScreen(!m_fullScreen); };
    m_playback.OnPicture = [this] {
        m_area->Hold(m_playback.IsBusy());
        m_area->Draw();
    };
    m_playback.OnArrived = [this] {
        m_area->Hold(false);
        m_area->Present();
    };
    m_playback.OnChange = [this] { Refresh(); };
    m_panel->installEventFilter(this);
    for (QWidget* child : m_panel->findChildren<QWidget*>()) {
        child->installEventFilter(this);
    }
    m_hideBar.setSingleShot(true);
    m_hideBar.setInterval(BarRest);
    m_hideBar.callOnTimeout([this] {
        if (m_fullScreen && m_playback.IsPlaying() && !m_bar->underMouse() && !m_bar->IsMenuOpen()) {
            m_bar->hide();
            m_area->setCursor(Qt::BlankCursor);
        }
    });
    m_slow.setSingleShot(true);
    m_slow.setInterval(SlowLoad);
    m_slow.callOnTimeout([this] { Refresh(); });
    Refresh();
}

CWMPPlayer4::~CWMPPlayer4() {
    // The playback goes before the widgets.
    m_playback.OnChange = m_playback.OnArrived = m_playback.OnPicture = nullptr;
    m_area->OnDraw = nullptr;
    delete m_panel;
}

void CWMPPlayer4::SetURL(std::string_view pathText) {
    m_slow.start();
    m_playback.SetURL(pathText);
}

void CWMPPlayer4::SetEmptyText(std::string_view text) {
    m_emptyText = text;
    Refresh();
}

QString CWMPPlayer4::CurrentMessage() const {
    switch (m_playback.GetState()) {
        case CVideoPlayback::State::NoVideo:
            return ToQt(m_emptyText);
        case CVideoPlayback::State::Loading:
            return m_slow.isActive() ? QString(" ") : MessageText(3108);
        case CVideoPlayback::State::Refused:
            return MessageText(m_playback.Fault()) + "\n" + ToQt(m_playback.URL());
        case CVideoPlayback::State::Ready:
            break;
    }
    return {};
}

void CWMPPlayer4::Refresh() {
    m_area->SetMessage(CurrentMessage());
    m_bar->Refresh();
    if (m_fullScreen && !m_playback.IsPlaying()) {
        ShowBar();
    }
}

void CWMPPlayer4::ShowBar() {
    m_area->unsetCursor();
    m_bar->show();
    if (m_fullScreen) {
        m_hideBar.start();
    }
}

void CWMPPlayer4::SetFullScreen(bool fullScreen) {
    if (fullScreen == m_fullScreen) {
        return;
    }
    m_fullScreen = fullScreen;
    const bool hadFocus = m_panel->isAncestorOf(QApplication::focusWidget()) || m_area->hasFocus();
    if (fullScreen) {
        layout()->removeWidget(m_panel);
        m_panel->setParent(this, Qt::Window);
        m_panel->setWindowTitle(window()->windowTitle());
        m_panel->showFullScreen();
        m_panel->activateWindow();
        m_area->setFocus();
    } else {
        m_panel->setParent(this, Qt::Widget);
        layout()->addWidget(m_panel);
        m_panel->show();
        if (hadFocus) {
            m_area->setFocus();
        }
    }
    m_bar->ShowFullScreen(fullScreen);
    ShowBar();
}

void CWMPPlayer4::Skip(double seconds) {
    m_playback.SetPosition(m_playback.Position() + seconds);
}

std::span<const CWMPPlayer4::Key> CWMPPlayer4::Keys() {
    using Self = CWMPPlayer4;
    static constexpr Qt::KeyboardModifiers None = Qt::NoModifier;
    static constexpr Qt::KeyboardModifiers Shift = Qt::ShiftModifier;
    static const std::array<Key, 16> Table{{
        {Qt::Key_Space, None, 3126,
         [](Self& s) { s.m_playback.IsPlaying() ? s.m_playback.Pause() : s.m_playback.Play(); }},
        {Qt::Key_Left, None, 3127, [](Self& s) { s.Skip(-LongSkip); }},
        {Qt::Key_Right, None, 3128, [](Self& s) { s.Skip(LongSkip); }},
        {Qt::Key_Left, Shift, 3129, [](Self& s) { s.Skip(-ShortSkip); }},
        {Qt::Key_Right, Shift, 3130, [](Self& s) { s.Skip(ShortSkip); }},
        {Qt::Key_Comma, None, 3131, [](Self& s) { s.m_playback.StepBack(); }},
        {Qt::Key_Period, None, 3132, [](Self& s) { s.m_playback.StepForward(); }},
        {Qt::Key_Home, None, 3133, [](Self& s) { s.m_playback.SetPosition(0.0); }},
        {Qt::Key_End, None, 3134, [](Self& s) { s.m_playback.SetPosition(s.m_playback.Duration()); }},
        // Plus is a shifted key on most keyboards, and the key itself does as well.
        {Qt::Key_Plus, None, 3135, [](Self& s) { s.m_playback.ChangeSpeed(1); }},
        {Qt::Key_Plus, Shift, 0, [](Self& s) { s.m_playback.ChangeSpeed(1); }},
        {Qt::Key_Equal, None, 0, [](Self& s) { s.m_playback.ChangeSpeed(1); }},
        {Qt::Key_Equal, Shift, 0, [](Self& s) { s.m_playback.ChangeSpeed(1); }},
        {Qt::Key_Minus, None, 3136, [](Self& s) { s.m_playback.ChangeSpeed(-1); }},
        {Qt::Key_M, None, 3137, [](Self& s) { s.m_playback.SetMute(!s.m_playback.IsMute()); }},
        {Qt::Key_F, None, 3138, [](Self& s) { s.SetFullScreen(!s.m_fullScreen); }},
    }};
    return Table;
}

bool CWMPPlayer4::TakeKey(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    for (const Key& key : Keys()) {
        if (event.key() == key.Code && modifiers == key.Modifiers) {
            if (key.Code != Qt::Key_Space || !event.isAutoRepeat()) {
                key.Do(*this);
            }
            return true;
        }
    }
    switch (event.key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return TakeEnter(modifiers);
        case Qt::Key_Escape:
            if (modifiers == Qt::NoModifier && m_fullScreen) {
                SetFullScreen(false);
                if (OnEscape) {
                    OnEscape();
                }
                return true;
            }
            return false;
        default:
            return false;
    }
}

bool CWMPPlayer4::TakeEnter(Qt::KeyboardModifiers modifiers) {
    const bool control = modifiers == Qt::ControlModifier;
    if (modifiers != Qt::NoModifier && !control) {
        return false;
    }
    auto* const button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
    if (button != nullptr && !control) {
        button->click();
        return true;
    }
    if (OnEnter) {
        OnEnter(control);
    }
    return static_cast<bool>(OnEnter);
}

bool CWMPPlayer4::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
            if (qobject_cast<QMenu*>(watched) != nullptr) {
                break;
            }
            return TakeKey(*static_cast<QKeyEvent*>(event));
        case QEvent::KeyRelease:
            // A button would take the end of what it has not seen begin.
            return static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space;
        case QEvent::Close:
            // The window manager's way out of full screen.
            if (watched == m_panel && m_fullScreen) {
                event->ignore();
                SetFullScreen(false);
                return true;
            }
            break;
        default:
            break;
    }
    return QWidget::eventFilter(watched, event);
}

void CWMPPlayer4::keyPressEvent(QKeyEvent* event) {
    if (!TakeKey(*event)) {
        QWidget::keyPressEvent(event);
    }
}
