#include "defects/dialogs/paintannotations.h"

#include <QFont>
#include <QPainter>
#include <QTextLayout>

#include "defects/CAnnotations.h"
#include "shell/dialogs/qttext.h"

namespace {

constexpr QRgb Red = 0xFFFF0000;
constexpr QRgb Green = 0xFF00FF00;
constexpr QRgb Blue = 0xFF0000FF;
constexpr int DotRadius = 3;
constexpr int LabelFontHeight = 20;  // 15 points at the 96 dots per inch of a client pixel
constexpr int TextFontHeight = 18;
constexpr int ReferenceMargin = 99;

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

class CAnnotationPainter {
public:
    CAnnotationPainter(QPainter& painter, const CAnnotations& annotations, QSize canvas)
        : m_painter(painter),
          m_base(painter.transform()),
          m_annotations(annotations),
          m_canvas(canvas),
          m_colour(static_cast<int>(annotations.Colour & 0xFF),
                   static_cast<int>(annotations.Colour >> 8 & 0xFF),
                   static_cast<int>(annotations.Colour >> 16 & 0xFF)) {}

    bool Paint(AnnotationLayer layer) {
        m_painter.setRenderHint(QPainter::Antialiasing);
        if (layer == AnnotationLayer::Top) {
            return PaintReferenceTexts();
        }
        // The reference lines are one object: the length of the one changes the text of the other.
        const Kind kinds[] = {
            {ToolMode::Reference, 1, &CAnnotationPainter::PaintReferenceLines},
            {ToolMode::Circle, m_annotations.Circles().size(), &CAnnotationPainter::PaintCircles},
            {ToolMode::Arrow, m_annotations.Arrows().size(), &CAnnotationPainter::PaintArrows},
            {ToolMode::Calibration, m_annotations.CalibrationPoints().size(),
             &CAnnotationPainter::PaintCalibration},
            {ToolMode::Measuring, m_annotations.MeasuringPoints().size(),
             &CAnnotationPainter::PaintMeasuring},
            {ToolMode::Text, m_annotations.TextBoxes().size(), &CAnnotationPainter::PaintTextBoxes},
        };
        bool painted = false;
        bool above = false;
        for (const Kind& kind : kinds) {
            const bool drawn = m_annotations.HasCapture() && m_annotations.Tool() == kind.Tool;
            const std::size_t still = drawn && kind.Count > 0 ? kind.Count - 1 : kind.Count;
            Range range{0, above == (layer == AnnotationLayer::Above) ? still : 0};
            if (layer == AnnotationLayer::InHand) {
                range = {still, kind.Count};
            }
            if (range.From < range.To) {
                (this->*kind.Paint)(range);
                painted = true;
            }
            above = above || drawn;
        }
        return painted;
    }

private:
    struct Range {
        std::size_t From;
        std::size_t To;  // behind the last
    };
    struct Kind {
        ToolMode Tool;
        std::size_t Count;
        void (CAnnotationPainter::*Paint)(Range range);
    };

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

    void PaintReference(const CanvasRect& rect, QRgb colour, int width) {
        if (Diagonal(rect) > 0) {
            Use(QColor(colour), width);
            m_painter.drawLine(rect.Left, rect.Top, rect.Right, rect.Bottom);
        }
    }

    void PaintReferenceLines(Range /*range*/) {
        PaintReference(m_annotations.ReferenceA(), Red, 2);
        PaintReference(m_annotations.ReferenceB(), Blue, 1);
    }

    void PaintCircles(Range range) {
        Use(m_colour, 2);
        for (std::size_t i = range.From; i < range.To; ++i) {
            m_painter.drawEllipse(Area(Normalised(m_annotations.Circles()[i])));
        }
    }

    void PaintArrows(Range range) {
        Use(m_colour, 2);
        for (std::size_t i = range.From; i < range.To; ++i) {
            const ArrowShape& arrow = m_annotations.Arrows()[i];
            m_painter.drawLine(At(arrow.Tail), At(arrow.Tip));
            for (const ArrowShape::Barb& barb : arrow.Barbs) {
                if (const auto end = BarbEnd(barb)) {
                    m_painter.drawLine(At(arrow.Tip), At(*end));
                }
            }
        }
    }

    void PaintDots(const std::vector<CanvasPoint>& points, QRgb outline) {
        Use(QColor(outline), 1);
        m_painter.setBrush(QColor(Green));
        for (const CanvasPoint& point : points) {
            m_painter.drawEllipse(At(point), DotRadius, DotRadius);
        }
    }

    void PaintMeasure(CanvasPoint a, CanvasPoint b, const std::string& label) {
        Use(QColor(Green), 1);
        m_painter.drawLine(At(a), At(b));
        m_painter.setFont(CanvasFont(LabelFontHeight));
        m_painter.drawText(Area(LabelRect(a, b, m_canvas.width(), m_canvas.height())),
                           Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip, ToQt(label));
    }

    void PaintCalibration(Range /*range*/) {
        const auto& points = m_annotations.CalibrationPoints();
        PaintDots(points, Red);
        if (points.size() == 2) {
            PaintMeasure(points[0], points[1], ScaleText(ScaleBetween(points[0], points[1])));
        }
    }

    void PaintMeasuring(Range /*range*/) {
        const auto& points = m_annotations.MeasuringPoints();
        PaintDots(points, Green);
        for (std::size_t i = 1; i < points.size(); i += 2) {
            const double length = Distance(points[i - 1], points[i]);
            PaintMeasure(points[i - 1], points[i], LengthText(MmPerPixel, length));
        }
    }

    void PaintTextBoxes(Range range) {
        for (std::size_t i = range.From; i < range.To; ++i) {
            const TextBox& box = m_annotations.TextBoxes()[i];
            const QRect area = Area(Normalised(box.Rect));
            if (box.Text.empty()) {
                Use(m_colour, 1, Qt::DotLine);
                m_painter.drawRect(area);
            } else {
                Use(m_colour, 1);
                PaintWrapped(area, ToQt(box.Text));
            }
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
        layout.draw(&m_painter, area.topLeft());
    }

    void PaintReferenceText(const CanvasRect& rect, QRgb colour, const std::string& text) {
        if (!text.empty()) {
            Use(QColor(colour), 1);
            m_painter.setFont(CanvasFont(TextFontHeight));
            m_painter.drawText(Area(Inflated(Normalised(rect), ReferenceMargin)),
                               Qt::AlignCenter | Qt::TextSingleLine, ToQt(text));
        }
    }

    bool PaintReferenceTexts() {
        const CanvasRect& a = m_annotations.ReferenceA();
        const CanvasRect& b = m_annotations.ReferenceB();
        const ReferenceTexts texts = ReferenceTextsOf(a, b);
        PaintReferenceText(a, Red, texts.A);
        PaintReferenceText(b, Blue, texts.B);
        return !texts.A.empty() || !texts.B.empty();
    }

    QPainter& m_painter;
    QTransform m_base;
    const CAnnotations& m_annotations;
    QSize m_canvas;
    QColor m_colour;
};

}  // namespace

bool PaintAnnotations(QPainter& painter, const CAnnotations& annotations, AnnotationLayer layer,
                      QSize canvas) {
    painter.save();
    const bool painted = CAnnotationPainter(painter, annotations, canvas).Paint(layer);
    painter.restore();
    return painted;
}
