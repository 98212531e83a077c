#include "defects/edittools.h"

#include <algorithm>
#include <array>

#include "defects/defectform.h"

namespace {

using Id = EditControl;

constexpr std::array Ruled{Id::Ok,         Id::Cancel,     DefectControl::Name, DefectControl::Grade,
                           Id::PictureBox, Id::AddPicture, Id::DeletePicture,   Id::ShowFile,
                           Id::Reference,  Id::Circle,     Id::Arrow,           Id::Text,
                           Id::Colour,     Id::Clear,      Id::Reset,           Id::Calibrate,
                           Id::Measure};

bool CanUseWhenIdle(int control, const EditState& state) {
    switch (control) {
        case Id::PictureBox:
        case Id::DeletePicture:
            return state.Pictures > 1 || state.AnyPicture;
        case Id::Measure:
            return state.Scaled;
        case Id::Clear:
            return false;
        default:
            return true;
    }
}

}  // namespace

std::span<const int> RuledControls() {
    return Ruled;
}

bool CanUse(int control, const EditState& state) {
    if (state.ChoosingColour) {
        return false;
    }
    if (!IsToolOn(state.Tool)) {
        return CanUseWhenIdle(control, state);
    }
    if (control == ToolButton(state.Tool) || control == Id::Clear) {
        return true;
    }
    switch (state.Tool) {
        case ToolMode::Calibration:
            return control == Id::Measure && state.Scaled;
        case ToolMode::Measuring:
            return false;
        default:
            return control == Id::Reset;  // which ends the tool
    }
}

int ToolButton(ToolMode tool) {
    switch (tool) {
        case ToolMode::Reference:
            return Id::Reference;
        case ToolMode::Circle:
            return Id::Circle;
        case ToolMode::Text:
            return Id::Text;
        case ToolMode::Arrow:
            return Id::Arrow;
        case ToolMode::Calibration:
            return Id::Calibrate;
        case ToolMode::Measuring:
            return Id::Measure;
        case ToolMode::None:
            break;
    }
    return 0;
}

bool IsToolOn(ToolMode tool) {
    return tool != ToolMode::None && tool != ToolMode::Reference;
}
