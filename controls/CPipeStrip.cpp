#include "controls/CPipeStrip.h"

#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <cmath>

#include "controls/paint/stripmeasures.h"
#include "shell/dialogs/qttext.h"
#include "shell/dialogs/theme.h"

namespace {

constexpr double ZoomStep = 1.25;
constexpr double MostZoom = 200.0;
constexpr double ShiftStep = 60.0;  // pixels
constexpr double WheelStep = 120.0;

}  // namespace

CPipeStrip::CPipeStrip(QWidget* parent) : QWidget(parent) {
    setFixedHeight(PipeStripHeight);
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

QSize CPipeStrip::sizeHint() const {
    return {600, PipeStripHeight};
}

void CPipeStrip::SetStrip(PipeStrip strip) {
    const bool same = strip.StartWell == m_strip.StartWell && strip.EndWell == m_strip.EndWell &&
                      strip.Length == m_strip.Length;
    m_strip = std::move(strip);
    m_view.Open = -1;
    if (!same) {
        m_view.From = m_view.To = 0.0;
    }
    update();
}

void CPipeStrip::Select(std::int32_t flag) {
    if (flag != m_view.Selected) {
        m_view.Selected = flag;
        m_view.Open = -1;
        update();
    }
}

void CPipeStrip::SetPlayHead(std::optional<double> metres) {
    const CStripLayout layout = Layout();
    const auto pixel = [&](const std::optional<double>& place) {
        return place ? std::lround(layout.XOf(*place)) : -1;
    };
    const bool moved = pixel(metres) != pixel(m_view.PlayHead);
    m_view.PlayHead = metres;
    if (moved) {
        update();
    }
}

void CPipeStrip::SetEmptyText(const QString& text) {
    m_empty = text;
    update();
}

std::int32_t CPipeStrip::Neighbour(int step) const {
    const auto& flags = m_strip.Flags;
    const auto selected = std::find_if(flags.begin(), flags.end(),
                                       [this](const StripFlag& flag) { return flag.Id == m_view.Selected; });
    if (selected != flags.end()) {
        const auto at = selected - flags.begin() + step;
        return at < 0 || at >= static_cast<std::ptrdiff_t>(flags.size())
                   ? -1
                   : flags[static_cast<std::size_t>(at)].Id;
    }
    const double place = m_view.PlayHead.value_or(step > 0 ? -1.0 : m_strip.Length + 1.0);
    std::int32_t found = -1;
    for (const StripFlag& flag : flags) {
        if (step > 0 && flag.From >= place) {
            return flag.Id;
        }
        if (step < 0 && flag.From <= place) {
            found = flag.Id;
        }
    }
    return found;
}

double CPipeStrip::SeenFrom() const {
    return Layout().From();
}

double CPipeStrip::SeenTo() const {
    return Layout().To();
}

void CPipeStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_strip.StartWell.empty() && m_strip.EndWell.empty() && m_strip.Flags.empty()) {
        painter.fillRect(rect(), Qt::white);
        painter.setPen(QColor::fromRgb(QuietTextColour));
        painter.drawText(rect(), Qt::AlignCenter, m_empty);
    } else {
        DrawPipeStrip(painter, m_strip, m_view);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QColor::fromRgb(hasFocus() ? AccentColour : LineColour));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void CPipeStrip::resizeEvent(QResizeEvent*) {
    m_view.Width = width();
    m_view.Open = -1;
}

void CPipeStrip::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !(m_strip.Length > 0.0)) {
        return;
    }
    const CStripLayout layout = Layout();
    const QPointF at = event->position();
    const CStripLayout::Hit hit = layout.At(at.x(), at.y(), m_view);
    if (hit.Flag >= 0) {
        if (OnFlag) {
            OnFlag(m_strip.Flags[static_cast<std::size_t>(hit.Flag)].Id);
        }
    } else if (hit.Cluster >= 0) {
        OpenPile(hit.Cluster);
    } else if (at.x() >= layout.Left() && at.x() <= layout.Right() && at.y() >= StripPipeTop - 4 && OnPlace) {
        OnPlace(layout.MetresAt(at.x()));
    }
}

void CPipeStrip::OpenPile(int cluster) {
    if (m_view.Open != cluster) {
        m_view.Open = cluster;
        update();
    }
}

void CPipeStrip::mouseMoveEvent(QMouseEvent* event) {
    const CStripLayout layout = Layout();
    const QPointF at = event->position();
    const CStripLayout::Hit hit = layout.At(at.x(), at.y(), m_view);
    QString tip;
    if (hit.Cluster >= 0) {
        if (layout.Clusters()[static_cast<std::size_t>(hit.Cluster)].Flags.size() > 1) {
            OpenPile(hit.Cluster);
        }
        if (hit.Flag >= 0) {
            tip = ToQt(m_strip.Flags[static_cast<std::size_t>(hit.Flag)].Text);
        }
    } else if (at.y() > StripFlagTop + StripFlagHeight + 6) {
        OpenPile(-1);
        if (m_strip.Length > 0.0 && at.x() >= layout.Left() && at.x() <= layout.Right()) {
            tip = QString(m_placeTip).replace("%s", QString::number(layout.MetresAt(at.x()), 'f', 2) + " m");
        }
    }
    setCursor(tip.isEmpty() ? Qt::ArrowCursor : Qt::PointingHandCursor);
    if (tip.isEmpty()) {
        QToolTip::hideText();
    } else {
        QToolTip::showText(event->globalPosition().toPoint() + QPoint(0, 8), tip, this);
    }
}

void CPipeStrip::mouseDoubleClickEvent(QMouseEvent* event) {
    if (Layout().At(event->position().x(), event->position().y(), m_view).Cluster < 0) {
        ShowWhole();
    }
}

void CPipeStrip::leaveEvent(QEvent*) {
    OpenPile(-1);
}

void CPipeStrip::ShowWhole() {
    m_view.From = m_view.To = 0.0;
    m_view.Open = -1;
    update();
}

void CPipeStrip::Zoom(double x, double factor) {
    if (!(m_strip.Length > 0.0)) {
        return;
    }
    const CStripLayout layout = Layout();
    const double place = layout.MetresAt(x);
    const double part = (place - layout.From()) / (layout.To() - layout.From());
    const double seen =
        std::clamp((layout.To() - layout.From()) / factor, m_strip.Length / MostZoom, m_strip.Length);
    m_view.Open = -1;
    if (seen >= m_strip.Length) {
        ShowWhole();
        return;
    }
    m_view.From = std::clamp(place - part * seen, 0.0, m_strip.Length - seen);
    m_view.To = m_view.From + seen;
    update();
}

void CPipeStrip::Shift(double pixels) {
    const CStripLayout layout = Layout();
    const double seen = layout.To() - layout.From();
    if (m_view.To <= m_view.From) {
        return;
    }
    const double metres = pixels / (layout.Right() - layout.Left()) * seen;
    m_view.From = std::clamp(layout.From() + metres, 0.0, std::max(m_strip.Length - seen, 0.0));
    m_view.To = m_view.From + seen;
    m_view.Open = -1;
    update();
}

void CPipeStrip::wheelEvent(QWheelEvent* event) {
    const QPoint turned = event->angleDelta();
    if ((event->modifiers() & Qt::ShiftModifier) != 0 || turned.y() == 0) {
        Shift(-(turned.x() + turned.y()) / WheelStep * ShiftStep);
    } else {
        Zoom(event->position().x(), std::pow(ZoomStep, turned.y() / WheelStep));
    }
    event->accept();
}

// The pile in which the selected flag stands, or the first one.
void CPipeStrip::OpenSelected() {
    const CStripLayout layout = Layout();
    int first = -1;
    for (std::size_t i = 0; i < layout.Clusters().size(); ++i) {
        const StripCluster& cluster = layout.Clusters()[i];
        if (cluster.Flags.size() < 2) {
            continue;
        }
        first = first < 0 ? static_cast<int>(i) : first;
        if (std::any_of(cluster.Flags.begin(), cluster.Flags.end(),
                        [this](std::size_t flag) { return m_strip.Flags[flag].Id == m_view.Selected; })) {
            first = static_cast<int>(i);
            break;
        }
    }
    OpenPile(m_view.Open == first ? -1 : first);
}

void CPipeStrip::Walk(int step) {
    const std::int32_t flag = Neighbour(step);
    if (flag >= 0 && OnFlag) {
        OnFlag(flag);
    }
}

std::span<const CPipeStrip::Key> CPipeStrip::Keys() {
    using Self = CPipeStrip;
    static const std::array<Key, 7> Table{{
        {Qt::Key_Left, 3902, [](Self& strip) { strip.Walk(-1); }},
        {Qt::Key_Right, 3902, [](Self& strip) { strip.Walk(1); }},
        {Qt::Key_Return, 3903, [](Self& strip) { strip.OpenSelected(); }},
        {Qt::Key_Enter, 0, [](Self& strip) { strip.OpenSelected(); }},
        {Qt::Key_Plus, 3904, [](Self& strip) { strip.Zoom(strip.width() / 2.0, ZoomStep); }},
        {Qt::Key_Equal, 0, [](Self& strip) { strip.Zoom(strip.width() / 2.0, ZoomStep); }},
        {Qt::Key_Minus, 3904, [](Self& strip) { strip.Zoom(strip.width() / 2.0, 1.0 / ZoomStep); }},
    }};
    return Table;
}

void CPipeStrip::keyPressEvent(QKeyEvent* event) {
    for (const Key& key : Keys()) {
        if (event->key() == key.Code && (event->modifiers() & Qt::ControlModifier) == 0) {
            key.Do(*this);
            return;
        }
    }
    QWidget::keyPressEvent(event);
}
