// The tools of the annotation canvas, and the scale that outlasts one canvas.
#pragma once

#include <cstdint>

enum class ToolMode : std::int32_t {
    None,       // the mouse does nothing
    Reference,  // two lines, the first of which counts 0.05 m
    Circle,
    Text,
    Arrow,
    Calibration,  // two points that lie 50 mm apart
    Measuring,    // pairs of points
};

// Shared by all canvases for the life of the process and never stored. The scale holds only for the size of
// the canvas and the picture at which it was made; nothing carries it over to others.
inline float MmPerPixel = 0.0F;  // millimetres per client pixel
inline bool Calibrated = false;  // whether the scale may be used
