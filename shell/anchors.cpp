#include "shell/anchors.h"

namespace {

// An edge that would leave the window stays at its border.
int Moved(int edge, int by) {
    const int moved = edge + by;
    return moved < 1 ? 0 : moved;
}

}  // namespace

ControlRect FitControl(const FITSIZE& row, ControlRect rect, int dx, int dy) {
    const int width = rect.Right - rect.Left;
    const int height = rect.Bottom - rect.Top;
    if (row.Right) {
        rect.Right = Moved(rect.Right, dx);
    }
    if (row.Bottom) {
        rect.Bottom = Moved(rect.Bottom, dy);
    }
    if (!row.Left) {
        rect.Left = Moved(rect.Left, dx);
        rect.Right = rect.Left + width;
    }
    if (!row.Top) {
        rect.Top = Moved(rect.Top, dy);
        rect.Bottom = rect.Top + height;
    }
    return rect;
}
