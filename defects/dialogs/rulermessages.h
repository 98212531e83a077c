// What the time ruler tells its window.
#pragma once

inline constexpr int WM_RULER_CLICK = 0x40AF;  // wParam: the second
// wParam: screen position of the mark's top, x in the low and y in the high word, or -1 when the mouse has
// left all marks; lParam: the second.
inline constexpr int WM_RULER_HOVER = 0x40B0;
