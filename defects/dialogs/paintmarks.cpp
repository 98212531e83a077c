#include "defects/dialogs/paintmarks.h"

#include <QFont>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "shell/dialogs/qttext.h"

namespace {

constexpr QRgb Red = 0xFFFF0000;
constexpr QRgb Green = 0xFF00FF00;
constexpr QRgb Blue = 0xFF0000FF;
constexpr int DotRadius = 3;
constexpr int LabelFontHeight = 20;  // 15 points at the 96 dots per inch of a client pixel
constexpr int TextFontHeight = 18;
constexpr int ReferenceMargin = 99;
constexpr int BarbReach = 11;
// How far a text may reach over its box: a first line that is higher, a letter that is wider.
constexpr int TextMargin = 2 * TextFontHeight;
// Half the widest pen, its square ends and the pixels that antialiasing touches.
constexpr int PenMargin = 4;
constexpr double PieceLength = 48.0;

// The colours of what is drawn are given, so it is weight that keeps texts legible on dark and on bright
// pictures. Heights are in client pixels: a font in points would have another size in the file than on a
// screen with small pixels.
QFont CanvasFont(int height) {
    QFont font;
    font.setFamilies({"微软雅黑", "Microsoft YaHei", "Noto Sans CJK SC"});
    font.setPixelSize(height);
    font.setWeight(QFont::Bold);
    font.setStyleStrategy(QFont::NoSubpixelAntialias);
    return font;
}

QPoint At(CanvasPoint p) {
    return {p.X, p.Y};
}

QRect Area(const CanvasRect& rect) {
    return {rect.Left, rect.Top, rect.Right - rect.Left, rect.Bottom - rect.Top};
}

QRect NormalisedArea(const CanvasMark& mark) {
    return Area(Normalised({mark.From.X, mark.From.Y, mark.To.X, mark.To.Y}));
}

class CMarkPainter {
public:
    CMarkPainter(QPainter& painter, QSize canvas)
        : m_painter(painter), m_base(painter.transform()), m_canvas(canvas) {}

    void Paint(const CanvasMark& mark) {
        const QColor colour(static_cast<int>(mark.Colour & 0xFF), static_cast<int>(mark.Colour >> 8 & 0xFF),
                            static_cast<int>(mark.Colour >> 16 & 0xFF));
        switch (mark.Kind) {
            case MarkKind::ReferenceLineA:
                Use(QColor(Red), 2);
                m_painter.drawLine(At(mark.From), At(mark.To));
                break;
            case MarkKind::ReferenceLineB:
                Use(QColor(Blue), 1);
                m_painter.drawLine(At(mark.From), At(mark.To));
                break;
            case MarkKind::Circle:
                Use(colour, 2);
                m_painter.drawEllipse(NormalisedArea(mark));
                break;
            case MarkKind::Arrow:
                Use(colour, 2);
                PaintArrow(MakeArrow(mark.From, mark.To));
                break;
            case MarkKind::CalibrationDot:
                PaintDot(mark.From, QColor(Red));
                break;
            case MarkKind::MeasuringDot:
                PaintDot(mark.From, QColor(Green));
                break;
            case MarkKind::CalibrationLine:
            case MarkKind::MeasuringLine:
                PaintMeasure(mark);
                break;
            case MarkKind::Text:
                PaintTextBox(mark, colour);
                break;
            case MarkKind::ReferenceTextA:
                PaintReferenceText(mark, QColor(Red));
                break;
            case MarkKind::ReferenceTextB:
                PaintReferenceText(mark, QColor(Blue));
                break;
        }
    }

private:
    // A line between two points runs through the middles of their pixels if it is an odd number of pixels
    // wide, and along their edges otherwise: so it is sharp. Square ends are drawn ten times as fast as round
    // ones.
    void Use(const QColor& colour, int width, Qt::PenStyle style = Qt::SolidLine) {
        const Qt::PenCapStyle ends = style == Qt::SolidLine ? Qt::SquareCap : Qt::FlatCap;
        m_painter.setPen(QPen(colour, width, style, ends, Qt::MiterJoin));
        m_painter.setBrush(Qt::NoBrush);
        const double shift = width % 2 == 1 ? 0.5 : 0.0;
        m_painter.setTransform(QTransform::fromTranslate(shift, shift) * m_base);
    }

    void PaintArrow(const ArrowShape& arrow) {
        m_painter.drawLine(At(arrow.Tail), At(arrow.Tip));
        for (const ArrowShape::Barb& barb : arrow.Barbs) {
            if (const auto end = BarbEnd(barb)) {
                m_painter.drawLine(At(arrow.Tip), At(*end));
            }
        }
    }

    void PaintDot(CanvasPoint point, const QColor& outline) {
        Use(outline, 1);
        m_painter.setBrush(QColor(Green));
        m_painter.drawEllipse(At(point), DotRadius, DotRadius);
    }

    void PaintMeasure(const CanvasMark& mark) {
        Use(QColor(Green), 1);
        m_painter.drawLine(At(mark.From), At(mark.To));
        m_painter.setFont(CanvasFont(LabelFontHeight));
        m_painter.drawText(Area(LabelRect(mark.From, mark.To, m_canvas.width(), m_canvas.height())),
                           Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip, ToQt(mark.Text));
    }

    void PaintTextBox(const CanvasMark& mark, const QColor& colour) {
        const QRect area = NormalisedArea(mark);
        if (mark.Text.empty()) {
            Use(colour, 1, Qt::DotLine);
            m_painter.drawRect(area);
        } else {
            Use(colour, 1);
            PaintWrapped(area, ToQt(mark.Text));
        }
    }

    // Lines that would be cut at the lower border are left out, but never the first: what was entered must
    // not vanish without a trace.
    void PaintWrapped(const QRect& area, const QString& text) {
        const QFont font = CanvasFont(TextFontHeight);
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        QTextLayout layout(text, font);
        layout.setTextOption(option);
        layout.beginLayout();
        double y = 0.0;
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(area.width());
            if (y > 0 && y + line.height() > area.height()) {
                break;
            }
            line.setPosition({0.0, y});
            y += line.height();
        }
        layout.endLayout();
        // Signs can be piled up to any height; a text keeps to its bounds.
        m_painter.setClipRect(area.adjusted(-TextMargin, -TextMargin, TextMargin, TextMargin));
        layout.draw(&m_painter, area.topLeft());
        m_painter.setClipping(false);
    }

    void PaintReferenceText(const CanvasMark& mark, const QColor& colour) {
        Use(colour, 1);
        m_painter.setFont(CanvasFont(TextFontHeight));
        m_painter.drawText(
            Area(Inflated(Normalised({mark.From.X, mark.From.Y, mark.To.X, mark.To.Y}), ReferenceMargin)),
            Qt::AlignCenter | Qt::TextSingleLine, ToQt(mark.Text));
    }

    QPainter& m_painter;
    QTransform m_base;
    QSize m_canvas;
};

// Labels are digits and a few letters, none of them wider than it is high.
QRect LabelBounds(const CanvasMark& mark, QSize canvas) {
    QRect label = Area(LabelRect(mark.From, mark.To, canvas.width(), canvas.height()));
    label.setWidth(std::max(label.width(), static_cast<int>(mark.Text.size()) * LabelFontHeight));
    return label.adjusted(-LabelFontHeight, -LabelFontHeight, LabelFontHeight, LabelFontHeight);
}

bool IsMeasure(const CanvasMark& mark) {
    return mark.Kind == MarkKind::CalibrationLine || mark.Kind == MarkKind::MeasuringLine;
}

int MarginOf(const CanvasMark& mark) {
    switch (mark.Kind) {
        case MarkKind::Arrow:
            return PenMargin + BarbReach;
        case MarkKind::CalibrationDot:
        case MarkKind::MeasuringDot:
            return PenMargin + DotRadius;
        case MarkKind::Text:
            return PenMargin + TextMargin;
        default:
            return PenMargin;
    }
}

QRect Grown(const QRect& rect, int by) {
    return rect.adjusted(-by, -by, by, by);
}

// A coordinate may be anything; finer pieces than these are of no use on any screen.
int PiecesOf(double length) {
    return 1 + static_cast<int>(std::min(length / PieceLength, 250.0));
}

}  // namespace

void PaintMarks(QPainter& painter, std::span<const CanvasMark> marks, QSize canvas) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    CMarkPainter marksPainter(painter, canvas);
    for (const CanvasMark& mark : marks) {
        marksPainter.Paint(mark);
    }
    painter.restore();
}

QRect BoundsOf(const CanvasMark& mark, QSize canvas) {
    const QRect bounds = Grown(NormalisedArea(mark), MarginOf(mark));
    return IsMeasure(mark) ? bounds.united(LabelBounds(mark, canvas)) : bounds;
}

QRegion AreaOf(const CanvasMark& mark, QSize canvas) {
    if (mark.Kind == MarkKind::Text || mark.From == mark.To) {
        return BoundsOf(mark, canvas);
    }
    const int margin = MarginOf(mark);
    QRegion area;
    const auto addPiece = [&](QPointF from, QPointF to) {
        area += Grown(QRectF(from, to).normalized().toAlignedRect(), margin);
    };
    if (mark.Kind == MarkKind::Circle) {
        const QRectF box = NormalisedArea(mark);
        const int quarter = PiecesOf(std::max(box.width(), box.height()) / 2);
        // Within a quarter an arc lies in the rectangle of its ends.
        const auto point = [&](int i) {
            const double angle = std::numbers::pi / 2 * i / quarter;
            return box.center() +
                   QPointF(box.width() / 2 * std::cos(angle), box.height() / 2 * std::sin(angle));
        };
        for (int i = 0; i < 4 * quarter; ++i) {
            addPiece(point(i), point(i + 1));
        }
        return area;
    }
    const QPointF from = At(mark.From);
    const QPointF way = At(mark.To) - from;
    const int pieces = PiecesOf(std::max(std::abs(way.x()), std::abs(way.y())));
    for (int i = 0; i < pieces; ++i) {
        addPiece(from + way * i / pieces, from + way * (i + 1) / pieces);
    }
    return IsMeasure(mark) ? area + LabelBounds(mark, canvas) : area;
}
