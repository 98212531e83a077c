// How the controls of a resizable window follow its size.
#pragma once

// One control's row. A set flag means that this edge keeps its distance to the same edge of the window.
struct FITSIZE {
    int Id = 0;
    bool Left = false;
    bool Top = false;
    bool Right = false;
    bool Bottom = false;
    bool Repaint = false;
};

// Pixels in the window's client area; right and bottom are the first that don't belong to it.
struct ControlRect {
    int Left = 0;
    int Top = 0;
    int Right = 0;
    int Bottom = 0;

    bool operator==(const ControlRect&) const = default;
};

// `dx` and `dy` are by how much the client area has grown.
ControlRect FitControl(const FITSIZE& row, ControlRect rect, int dx, int dy);
