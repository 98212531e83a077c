// Shows one picture stretched over its area, lets the operator draw and measure on it, and writes the result
// over the picture's file.
//
// Client pixels are device-independent. A baked file has exactly as many pixels as the control is wide and
// high in them, whatever the scaling of the screen.
#pragma once

#include <QImage>
#include <QWidget>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "defects/CAnnotations.h"
#include "defects/dialogs/CMarkLayer.h"

class CCtrlPic : public QWidget {
public:
    explicit CCtrlPic(QWidget* parent = nullptr);

    // The picture is read whole and decoded from memory, by its content and not by its ending: the file
    // doesn't stay open, so that it can be replaced while it is shown. False, with no picture, if there is
    // none; its path stands in the middle then. What is drawn stays.
    bool ShowPicture(std::string_view path);
    void ClearPicture();
    bool HasPicture() const { return !m_image.isNull(); }
    const std::string& Path() const { return m_path; }  // empty without a picture

    // What the mouse does; with a tool a press takes the keyboard too, for Esc drops the shape in hand. While
    // a shape is being drawn no shortcut of the window works.
    void SetTool(ToolMode tool);
    ToolMode GetTool() const { return m_annotations.Tool(); }
    const CAnnotations& Annotations() const { return m_annotations; }
    void SetColour(std::uint32_t colour);  // 0x00BBGGRR
    std::uint32_t GetColour() const { return m_annotations.Colour; }
    // Offered for the next text box.
    void SetDefaultText(std::string_view text) { m_defaultText = text; }

    // The last object of the tool's kind; false if there is none.
    bool UndoLast(ToolMode of);
    void ClearCalibration();
    void ClearObjects();
    void ResetRubber();

    // Writes what is seen over the picture's file. If that can't be done nothing is said, and the file stays
    // as it was. The objects stay, too: the picture in memory is still the one without them.
    void BakeToFile();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void Changed(bool changed = true);
    void AskText();
    void PrepareGround();
    void PrepareAbove(const std::vector<CanvasMark>& marks);
    void ClearLayers();
    QImage Stretched(QSize pixels) const;

    QImage m_image;
    // In the pixels of the device, and made anew when their number changes. What is painted on them follows
    // from the annotations at each frame, so that nothing has to tell them of a change.
    QImage m_ground;        // the picture stretched
    CMarkLayer m_standing;  // with all that stands
    // What lies below the shape in hand and what lies above it. Null if the tool's shapes lie above all
    // others.
    CMarkLayer m_below;
    QImage m_above;
    std::vector<CanvasMark> m_aboveMarks;
    std::string m_path;
    QString m_missing;  // what is said in place of a picture
    std::string m_defaultText;
    CAnnotations m_annotations;
};
