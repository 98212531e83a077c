#include "shell/dialogs/CSizeDlg.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QTimer>

#include "shell/dialogs/qttext.h"
#include "shell/language.h"

CSizeDlg::CSizeDlg(QWidget* parent) : QDialog(parent) {
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMinMaxButtonsHint, true);
}

QWidget* CSizeDlg::GetDlgItem(int id) const {
    const auto found = m_controls.find(id);
    return found == m_controls.end() ? nullptr : found->second;
}

int CSizeDlg::DoModal() {
    Initialize();
    // The event loop of a window that isn't shown would never end.
    const int ended = m_endedEarly ? result() : exec();
    return ended == IdOk ? IdOk : IdCancel;
}

bool CSizeDlg::OnControlMessage(int, std::intptr_t, std::intptr_t) {
    return false;
}

void CSizeDlg::setVisible(bool visible) {
    if (visible) {
        Initialize();
    }
    QDialog::setVisible(visible && !m_endedEarly);
}

void CSizeDlg::Initialize() {
    if (!m_initialized) {
        m_initialized = true;
        m_initializing = true;
        OnInitDialog();
        if (QWidget* first = GetDlgItem(FirstFocus)) {
            first->setFocus(Qt::TabFocusReason);  // selects the text
        }
        m_initializing = false;
    }
}

void CSizeDlg::EndDialog(int result) {
    if (m_initializing) {
        m_endedEarly = true;
        setResult(result);
    } else {
        done(result);
    }
}

void CSizeDlg::Register(int id, QWidget* control) {
    control->setObjectName(QString::number(id));
    m_controls[id] = control;
    if (id == IdOk) {
        OnCommand(id, [this] { OnOK(); });
    } else if (id == IdCancel) {
        OnCommand(id, [this] { OnCancel(); });
    }
}

void CSizeDlg::OnCommand(int id, std::function<void()> handler) {
    if (auto* button = Item<QAbstractButton>(id)) {
        button->disconnect(SIGNAL(clicked(bool)));
        connect(button, &QAbstractButton::clicked, this, [run = std::move(handler)] { run(); });
    }
}

void CSizeDlg::EnableControl(int id, bool enable) {
    if (QWidget* control = GetDlgItem(id)) {
        control->setEnabled(enable);
    }
}

void CSizeDlg::SetCaptions(std::initializer_list<std::pair<int, int>> idsAndNumbers) {
    if (!HasLanguageTable()) {
        return;
    }
    for (const auto& [id, number] : idsAndNumbers) {
        if (auto* button = Item<QAbstractButton>(id)) {
            button->setText(MessageText(number));
        } else if (auto* label = Item<QLabel>(id)) {
            label->setText(MessageText(number));
        }
    }
}

void CSizeDlg::SetCaption(int number) {
    if (HasLanguageTable()) {
        setWindowTitle(MessageText(number));
    }
}

void CSizeDlg::SetTip(int id, int number) {
    if (QWidget* control = GetDlgItem(id); control != nullptr && HasLanguageTable()) {
        control->setToolTip(MessageText(number));
    }
}

QBoxLayout* CSizeDlg::MakeOkCancelRow() {
    auto* ok = AddControl(IdOk, new QPushButton("确定", this));
    auto* cancel = AddControl(IdCancel, new QPushButton("取消", this));
    ok->setDefault(true);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(ok);
    row->addWidget(cancel);
    return row;
}

void CSizeDlg::AddAnchor(int id, bool left, bool top, bool right, bool bottom, bool repaint) {
    m_anchors.push_back({id, left, top, right, bottom, repaint});
}

void CSizeDlg::SetTimer(int id, int milliseconds) {
    QTimer*& timer = m_timers[id];
    if (timer == nullptr) {
        timer = new QTimer(this);
        timer->setTimerType(Qt::PreciseTimer);
        connect(timer, &QTimer::timeout, this, [this, id] { OnTimer(id); });
    }
    timer->start(milliseconds);
}

void CSizeDlg::KillTimer(int id) {
    if (const auto found = m_timers.find(id); found != m_timers.end()) {
        found->second->stop();
    }
}

bool CSizeDlg::IsTimerRunning(int id) const {
    const auto found = m_timers.find(id);
    return found != m_timers.end() && found->second->isActive();
}

void CSizeDlg::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (m_shown) {
        return;
    }
    m_shown = true;
    if (QLayout* placement = layout()) {
        placement->activate();
        placement->setEnabled(m_anchors.empty());
    }
    m_clientSize = size();
    // A window that opens maximised must be able to go back.
    setMinimumSize((windowState() & Qt::WindowMaximized) != 0 ? minimumSizeHint() : size());
}

void CSizeDlg::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    if (!m_shown || width() < 1 || height() < 1) {
        return;
    }
    MoveAnchored(width() - m_clientSize.width(), height() - m_clientSize.height());
    m_clientSize = size();
}

void CSizeDlg::MoveAnchored(int dx, int dy) {
    for (const FITSIZE& row : m_anchors) {
        QWidget* control = GetDlgItem(row.Id);
        // What lies in a panel follows the panel.
        if (control == nullptr || control->parentWidget() != this) {
            continue;
        }
        const QRect now = control->geometry();
        const ControlRect fitted =
            FitControl(row, {now.x(), now.y(), now.x() + now.width(), now.y() + now.height()}, dx, dy);
        control->setGeometry(fitted.Left, fitted.Top, fitted.Right - fitted.Left, fitted.Bottom - fitted.Top);
        if (row.Repaint) {
            control->update();
        }
    }
}

bool SendToDialog(const QWidget* control, int message, std::intptr_t wParam, std::intptr_t lParam) {
    for (QWidget* parent = control->parentWidget(); parent != nullptr; parent = parent->parentWidget()) {
        if (auto* dialog = dynamic_cast<CSizeDlg*>(parent)) {
            return dialog->OnControlMessage(message, wParam, lParam);
        }
    }
    return false;
}
