// How the program looks: calm, flat, one accent colour.
#pragma once

#include <QColor>

class QApplication;

inline constexpr QRgb AccentColour = 0xFF1F6FB2;
inline constexpr QRgb RestingSelectionColour = 0xFF64798C;  // of a list that the keyboard isn't in
inline constexpr QRgb WindowColour = 0xFFF4F6F8;
inline constexpr QRgb LineColour = 0xFFD3D9DF;
inline constexpr QRgb WarningColour = 0xFFA84300;    // what keeps the operator from his work
inline constexpr QRgb QuietTextColour = 0xFF6B7885;  // hints, empty states

// Fonts, palette and style sheet of the whole process.
void ApplyTheme(QApplication& application);
