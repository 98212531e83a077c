#include "controls/paint/pipestrip.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QSvgGenerator>
#include <QTextOption>
#include <algorithm>
#include <array>
#include <cmath>

#include "controls/paint/CPaintApplication.h"
#include "controls/paint/stripmeasures.h"

namespace {

constexpr QRgb Ink = 0xFF3A4753;
constexpr QRgb QuietInk = 0xFF6B7885;
constexpr QRgb PipeWall = 0xFF8A97A3;
constexpr QRgb NotInspected = 0xFFFFFFFF;
constexpr QRgb Inspected = 0xFFD8E3ED;
constexpr QRgb Accent = 0xFF1F6FB2;
constexpr QRgb HaltGrey = 0xFF9AA5AF;
// Each grade is also darker than the one before, so that they differ without colour too.
constexpr std::array<QRgb, 5> GradeColours = {0xFFFFFFFF, 0xFFF6E27F, 0xFFF2A33A, 0xFFD1541C, 0xFF7A1420};
constexpr int FirstDarkGrade = 3;

constexpr int SmallText = 10;  // pixels
constexpr int FlagText = 11;
constexpr double ChevronGap = 90.0;

QColor ColourOf(int grade) {
    return QColor::fromRgb(GradeColours[static_cast<std::size_t>(std::clamp(grade, 0, 4))]);
}

QString Text(const std::string& text) {
    return QString::fromStdString(text);
}

class CDrawing {
public:
    CDrawing(QPainter& painter, const PipeStrip& strip, const StripView& view)
        : m_painter(painter), m_strip(strip), m_view(view), m_layout(strip, view) {
        m_small = FontOf(painter.font(), SmallText, false);
        m_flag = FontOf(painter.font(), FlagText, true);
        m_painter.setRenderHint(QPainter::Antialiasing);
    }

    void Draw() {
        m_painter.fillRect(QRectF(0, 0, m_view.Width, PipeStripHeight), Qt::white);
        DrawWell(m_layout.Left(), m_strip.StartWell, true);
        DrawWell(m_layout.Right(), m_strip.EndWell, false);
        DrawPipe();
        if (m_strip.Length > 0.0) {
            DrawScale();
            DrawHalts();
            DrawRuns();
            DrawClusters();
            DrawPlayHead();
        }
    }

private:
    static QFont FontOf(QFont font, int pixels, bool bold) {
        font.setPixelSize(pixels);
        font.setBold(bold);
        return font;
    }

    // The few texts of flags and scale come again and again, and measuring is dearer than drawing.
    void WriteCentred(const QFont& font, QPointF middle, const QString& text) {
        auto& widths = m_widths[font.bold() ? 1 : 0];
        auto width = widths.find(text);
        if (width == widths.end()) {
            width = widths.insert(text, QFontMetricsF(font).horizontalAdvance(text));
        }
        m_painter.setFont(font);
        m_painter.drawText(middle + QPointF(-width.value() / 2, font.pixelSize() * 0.37), text);
    }

    // Inside the part that is seen.
    QRectF Stretch(double from, double to) const {
        const double left = m_layout.XOf(std::clamp(from, m_layout.From(), m_layout.To()));
        const double right = m_layout.XOf(std::clamp(to, m_layout.From(), m_layout.To()));
        return {left, StripPipeTop, right - left, StripPipeHeight};
    }

    void DrawWell(double x, const std::string& name, bool start) {
        const double left = start ? x - StripWellWidth : x;
        m_painter.setPen(QPen(QColor::fromRgb(Ink), 1));
        m_painter.setBrush(QColor::fromRgb(QuietInk));
        m_painter.drawRect(QRectF(left, StripPipeTop - 6.5, StripWellWidth, StripPipeHeight + 12));
        m_painter.setFont(m_flag);
        m_painter.setPen(QColor::fromRgb(Ink));
        const double room = (start ? x : m_view.Width - x) - StripWellWidth - 8;
        const QString text =
            QFontMetricsF(m_painter.font()).elidedText(Text(name), Qt::ElideRight, std::max(room, 0.0));
        const QRectF box(start ? 4 : x + StripWellWidth + 4, StripPipeTop - 6, room, StripPipeHeight + 12);
        const Qt::Alignment side = start ? Qt::AlignRight : Qt::AlignLeft;
        m_painter.drawText(box, text, QTextOption(side | Qt::AlignVCenter));
    }

    void DrawPipe() {
        const QRectF whole(m_layout.Left(), StripPipeTop, m_layout.Right() - m_layout.Left(),
                           StripPipeHeight);
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(QColor::fromRgb(NotInspected));
        m_painter.drawRect(whole);
        if (m_strip.InspectedTo > m_strip.InspectedFrom) {
            m_painter.setBrush(QColor::fromRgb(Inspected));
            m_painter.drawRect(Stretch(m_strip.InspectedFrom, m_strip.InspectedTo));
        }
        m_painter.setBrush(Qt::NoBrush);
        m_painter.setPen(QPen(QColor::fromRgb(PipeWall), 1.5));
        m_painter.drawLine(whole.topLeft(), whole.topRight());
        m_painter.drawLine(whole.bottomLeft(), whole.bottomRight());
        if (m_strip.Direction == PipeStrip::Flow::Unknown) {
            return;
        }
        const double way = m_strip.Direction == PipeStrip::Flow::ToEnd ? 3.0 : -3.0;
        const double middle = StripPipeTop + StripPipeHeight / 2.0;
        m_painter.setPen(QPen(QColor::fromRgb(PipeWall), 1.3));
        for (double x = whole.left() + ChevronGap / 2; x < whole.right() - 4; x += ChevronGap) {
            for (const double shift : {0.0, 5.0}) {
                m_painter.drawLine(QPointF(x + shift - way, middle - 3.5), QPointF(x + shift, middle));
                m_painter.drawLine(QPointF(x + shift, middle), QPointF(x + shift - way, middle + 3.5));
            }
        }
    }

    void DrawScale() {
        const double step = m_layout.ScaleStep();
        const int digits = step < 1.0 ? 1 : 0;
        const double top = StripPipeTop + StripPipeHeight;
        for (double metres = std::ceil(m_layout.From() / step) * step; metres <= m_layout.To() + step * 1e-6;
             metres += step) {
            const double x = m_layout.XOf(metres);
            m_painter.setPen(QColor::fromRgb(PipeWall));
            DrawStem(QPointF(x, top + 1), QPointF(x, top + 4));
            m_painter.setPen(QColor::fromRgb(QuietInk));
            const bool last = metres + step > m_layout.To() + step * 1e-6;
            const QString text = QString::number(metres, 'f', digits) + (last ? " m" : "");
            WriteCentred(m_small, QPointF(x, top + 10), text);
        }
    }

    void DrawHalts() {
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(QColor::fromRgb(HaltGrey));
        for (const double halt : m_strip.Halts) {
            if (halt >= m_layout.From() && halt <= m_layout.To()) {
                m_painter.drawEllipse(QPointF(m_layout.XOf(halt), StripPipeTop + StripPipeHeight / 2.0), 3.0,
                                      3.0);
            }
        }
    }

    void DrawRuns() {
        for (const StripFlag& flag : m_strip.Flags) {
            if (flag.OpenRun) {
                DrawOpenRun(flag);
            } else if (flag.To > flag.From && flag.To >= m_layout.From() && flag.From <= m_layout.To()) {
                QRectF bar = Stretch(flag.From, flag.To).adjusted(0, 3, 0, -3);
                m_painter.setPen(QPen(QColor::fromRgb(Ink), 0.8));
                m_painter.setBrush(ColourOf(flag.Grade));
                m_painter.drawRect(bar);
            }
        }
    }

    // It runs on as far as nobody knows.
    void DrawOpenRun(const StripFlag& flag) {
        if (flag.From > m_layout.To()) {
            return;
        }
        QRectF bar = Stretch(flag.From, m_strip.Length).adjusted(0, 3, 0, -3);
        QLinearGradient fade(bar.topLeft(), bar.topLeft() + QPointF(std::min(bar.width(), 70.0), 0));
        fade.setColorAt(0, ColourOf(flag.Grade));
        QColor gone = ColourOf(flag.Grade);
        gone.setAlpha(0);
        fade.setColorAt(1, gone);
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(fade);
        m_painter.drawRect(bar);
        m_painter.setPen(QPen(QColor::fromRgb(Ink), 1, Qt::DashLine));
        const double end = std::min(bar.left() + 70.0, bar.right());
        m_painter.drawLine(bar.topLeft(), QPointF(end, bar.top()));
        m_painter.drawLine(bar.bottomLeft(), QPointF(end, bar.bottom()));
    }

    static QPainterPath Outline(const QRectF& box, StripFlag::Form form) {
        QPainterPath path;
        switch (form) {
            case StripFlag::Form::Square:
                path.addRect(box);
                break;
            case StripFlag::Form::Round:
                path.addRoundedRect(box, box.height() / 2, box.height() / 2);
                break;
            case StripFlag::Form::Diamond:
                path.moveTo(box.left() - 3, box.center().y());
                path.lineTo(box.left() + 4, box.top());
                path.lineTo(box.right() - 4, box.top());
                path.lineTo(box.right() + 3, box.center().y());
                path.lineTo(box.right() - 4, box.bottom());
                path.lineTo(box.left() + 4, box.bottom());
                path.closeSubpath();
                break;
        }
        return path;
    }

    void DrawFlag(double x, const StripFlag& flag) {
        const QRectF box(x - StripFlagWidth / 2.0 + 1.5, StripFlagTop + 0.5, StripFlagWidth - 3,
                         StripFlagHeight);
        const bool selected = flag.Id == m_view.Selected;
        m_painter.setPen(QPen(QColor::fromRgb(selected ? Accent : Ink), selected ? 1.5 : 1));
        DrawStem(QPointF(x, box.bottom()), QPointF(m_layout.XOf(flag.From), StripPipeTop));
        m_painter.setPen(QPen(QColor::fromRgb(selected ? Accent : Ink), selected ? 2.5 : 1));
        m_painter.setBrush(ColourOf(flag.Grade));
        if (flag.Shape == StripFlag::Form::Square) {
            DrawBox(box);
        } else {
            m_painter.drawPath(Outline(box, flag.Shape));
        }
        WriteInto(box, Text(flag.Letter) + (flag.Grade > 0 ? QString::number(flag.Grade) : QString()),
                  flag.Grade);
    }

    // What stands upright needs no smoothing, which takes most of the time of a strip full of flags.
    void DrawBox(const QRectF& box) {
        m_painter.setRenderHint(QPainter::Antialiasing, false);
        m_painter.drawRect(box);
        m_painter.setRenderHint(QPainter::Antialiasing);
    }

    void DrawStem(const QPointF& from, const QPointF& to) {
        m_painter.setRenderHint(QPainter::Antialiasing, std::fabs(from.x() - to.x()) > 0.5);
        m_painter.drawLine(from, to);
        m_painter.setRenderHint(QPainter::Antialiasing);
    }

    void WriteInto(const QRectF& box, const QString& text, int grade) {
        m_painter.setPen(grade >= FirstDarkGrade ? QColor(Qt::white) : QColor::fromRgb(0xFF1E2730));
        WriteCentred(m_flag, box.center(), text);
    }

    // How many, on the colour of the gravest, with the edge of a second card behind.
    void DrawPile(const StripCluster& cluster, bool selected) {
        const QRectF box(cluster.X - StripFlagWidth / 2.0 + 1.5, StripFlagTop + 2.5, StripFlagWidth - 5,
                         StripFlagHeight - 2);
        const QPen pen(QColor::fromRgb(selected ? Accent : Ink), selected ? 2.5 : 1);
        m_painter.setPen(QPen(QColor::fromRgb(Ink), 1));
        for (const std::size_t flag : {cluster.Flags.front(), cluster.Flags.back()}) {
            DrawStem(QPointF(cluster.X, box.bottom()),
                     QPointF(m_layout.XOf(m_strip.Flags[flag].From), StripPipeTop));
        }
        m_painter.setPen(pen);
        m_painter.setBrush(ColourOf(cluster.Grade));
        DrawBox(box.translated(3, -2));
        DrawBox(box);
        WriteInto(box, QString::number(cluster.Flags.size()) + QChar(0xD7), cluster.Grade);
    }

    bool HasSelected(const StripCluster& cluster) const {
        return std::any_of(cluster.Flags.begin(), cluster.Flags.end(),
                           [this](std::size_t flag) { return m_strip.Flags[flag].Id == m_view.Selected; });
    }

    void DrawClusters() {
        const auto& clusters = m_layout.Clusters();
        for (std::size_t i = 0; i < clusters.size(); ++i) {
            if (clusters[i].Flags.size() == 1) {
                DrawFlag(clusters[i].X, m_strip.Flags[clusters[i].Flags[0]]);
            } else if (static_cast<int>(i) != m_view.Open) {
                DrawPile(clusters[i], HasSelected(clusters[i]));
            }
        }
        if (m_view.Open < 0 || m_view.Open >= static_cast<int>(clusters.size())) {
            return;
        }
        const StripCluster& open = clusters[static_cast<std::size_t>(m_view.Open)];
        const std::vector<double> places = m_layout.OpenPlaces(open);
        // On top of its neighbours.
        m_painter.setPen(QPen(QColor::fromRgb(PipeWall), 1));
        m_painter.setBrush(Qt::white);
        m_painter.drawRoundedRect(
            QRectF(places.front() - StripFlagWidth / 2.0 - 3, 0.5,
                   places.back() - places.front() + StripFlagWidth + 6, StripFlagHeight + 4),
            4, 4);
        for (std::size_t i = 0; i < places.size(); ++i) {
            DrawFlag(places[i], m_strip.Flags[open.Flags[i]]);
        }
    }

    void DrawPlayHead() {
        if (!m_view.PlayHead || *m_view.PlayHead < m_layout.From() || *m_view.PlayHead > m_layout.To()) {
            return;
        }
        const double x = m_layout.XOf(*m_view.PlayHead);
        const double bottom = StripPipeTop + StripPipeHeight + 3;
        m_painter.setPen(QPen(QColor::fromRgb(Accent), 2));
        m_painter.drawLine(QPointF(x, StripPipeTop - 3), QPointF(x, bottom));
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(QColor::fromRgb(Accent));
        m_painter.drawPolygon(QPolygonF({{x - 5, bottom + 6}, {x + 5, bottom + 6}, {x, bottom - 2}}));
    }

    QPainter& m_painter;
    const PipeStrip& m_strip;
    const StripView& m_view;
    const CStripLayout m_layout;
    QFont m_small;
    QFont m_flag;
    std::array<QHash<QString, double>, 2> m_widths;  // by bold
};

}  // namespace

void DrawPipeStrip(QPainter& painter, const PipeStrip& strip, const StripView& view) {
    painter.save();
    CDrawing(painter, strip, view).Draw();
    painter.restore();
}

std::string PipeStripSvg(const PipeStrip& strip, int width) {
    const CPaintApplication application;
    QBuffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(QSize(width, PipeStripHeight));
    generator.setViewBox(QRect(0, 0, width, PipeStripHeight));
    generator.setTitle(Text(strip.StartWell + " - " + strip.EndWell).toHtmlEscaped());
    QPainter painter(&generator);
    StripView view;
    view.Width = width;
    QFont font = painter.font();
    font.setFamilies({"Noto Sans CJK SC", "sans-serif"});
    painter.setFont(font);
    DrawPipeStrip(painter, strip, view);
    painter.end();
    return buffer.data().toStdString();
}
