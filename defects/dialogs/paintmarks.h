// Draws the marks of annotations over the picture they belong to. What is shown and what is baked come from
// here, so that both agree to the pixel where the screen has pixels of the same size.
#pragma once

#include <QRegion>
#include <QSize>
#include <span>

#include "defects/canvasmarks.h"

class QPainter;

// `canvas` is the size of the client area, whose pixels are the painter's units.
void PaintMarks(QPainter& painter, std::span<const CanvasMark> marks, QSize canvas);

// Where a mark that stands may have its pixels, in client pixels and rather too large than too small. Not for
// the texts of the reference lines, which are painted with every frame.
QRect BoundsOf(const CanvasMark& mark, QSize canvas);
// The same, following a line and an outline more closely.
QRegion AreaOf(const CanvasMark& mark, QSize canvas);
