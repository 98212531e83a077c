// Which controls of the defect form can be used while a tool of its canvas is on. Whatever could leave the
// picture waits until the tool is off, so that nothing that was drawn is left unwritten.
#pragma once

#include <span>

#include "defects/tools.h"

struct EditControl {
    static constexpr int Ok = 1;
    static constexpr int Cancel = 2;
    static constexpr int Clear = 31;
    static constexpr int Reset = 32;
    static constexpr int Calibrate = 33;
    static constexpr int Measure = 34;
    static constexpr int PictureBox = 1008;
    static constexpr int AddPicture = 1033;
    static constexpr int DeletePicture = 1036;
    static constexpr int ShowFile = 1037;
    static constexpr int Reference = 1049;
    static constexpr int Circle = 1050;
    static constexpr int Arrow = 1051;
    static constexpr int Text = 1052;
    static constexpr int Colour = 1053;
};

struct EditState {
    ToolMode Tool = ToolMode::None;
    bool ChoosingColour = false;
    bool Scaled = false;  // the canvas has a scale: `Calibrated`
    int Pictures = 0;
    // A calibration or a measurement has ended since the pictures were counted: even the only picture can be
    // deleted then.
    bool AnyPicture = false;
};

// All that the state rules.
std::span<const int> RuledControls();
bool CanUse(int control, const EditState& state);

// The button that switches the tool; 0 if none does.
int ToolButton(ToolMode tool);
// The tool keeps the form open.
bool IsToolOn(ToolMode tool);
