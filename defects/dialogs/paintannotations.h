// Draws annotations over the picture they belong to. What is shown and what is baked come from here, so that
// both agree to the pixel where the screen has pixels of the same size.
//
// What comes later covers what came before: reference lines, circles, arrows, calibration, measuring, texts,
// and the texts of the reference lines. A shape that is being drawn has its place among those of its kind, so
// what doesn't change meanwhile makes up two layers, one below and one above it, which the caller may keep.
#pragma once

#include <QSize>
#include <cstdint>

class CAnnotations;
class QPainter;

enum class AnnotationLayer : std::uint8_t {
    Below,   // all, if nothing is being drawn
    InHand,  // what is being drawn
    Above,
    Top,  // texts of the reference lines
};

// `canvas` is the size of the client area, whose pixels are the painter's units. False if there is nothing in
// the layer.
bool PaintAnnotations(QPainter& painter, const CAnnotations& annotations, AnnotationLayer layer,
                      QSize canvas);
