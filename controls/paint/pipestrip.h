// A pipe as a strip: its wells, flow and scale, what was found in it as flags, the stretch that was
// inspected, and where the video is. The same routine draws it in a window and into files. Nothing here knows
// what a flag stands for but its letter, form and grade.
//
// All distances are metres along the pipe from its start well, all places on the strip are pixels from its
// left.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class QPainter;

inline constexpr int PipeStripHeight = 56;

struct StripFlag {
    // With the letter, what the colour-blind tell kinds by.
    enum class Form { Square, Round, Diamond };

    std::int32_t Id = 0;
    double From = 0.0;
    double To = 0.0;     // of a run; else the same
    std::string Letter;  // of its kind
    Form Shape = Form::Square;
    int Grade = 0;         // 1 to 4 have colours of their own, darker the graver; 0 is drawn without one
    bool OpenRun = false;  // its end is still to come
    std::string Text;      // what it is, in one line
};

struct PipeStrip {
    enum class Flow { Unknown, ToEnd, ToStart };

    double Length = 0.0;  // 0: nothing but the wells is drawn
    double InspectedFrom = 0.0;
    double InspectedTo = 0.0;
    std::string StartWell;
    std::string EndWell;
    Flow Direction = Flow::Unknown;
    std::vector<StripFlag> Flags;  // by From
    std::vector<double> Halts;     // where the video stood and nothing was found
};

// What of it is seen.
struct StripView {
    int Width = 0;
    double From = 0.0;
    double To = 0.0;  // not above From: the whole pipe
    std::optional<double> PlayHead;
    std::int32_t Selected = -1;  // flag, by its Id
    int Open = -1;               // cluster whose flags stand side by side; -1: none
};

// Flags that would cover each other.
struct StripCluster {
    std::vector<std::size_t> Flags;  // indices
    double X = 0.0;                  // of the first, in whose middle the pile stands
    int Grade = 0;                   // the gravest
};

class CStripLayout {
public:
    CStripLayout(const PipeStrip& strip, const StripView& view);

    double Left() const { return m_left; }  // of the pipe
    double Right() const { return m_right; }
    double From() const { return m_from; }  // the stretch that is seen
    double To() const { return m_to; }
    double XOf(double metres) const;
    double MetresAt(double x) const;  // kept within the pipe

    const std::vector<StripCluster>& Clusters() const { return m_clusters; }
    // Where the flags of the open cluster stand, in their order.
    std::vector<double> OpenPlaces(const StripCluster& cluster) const;
    // Of the place: a cluster, and the flag in it if it is open or alone. -1 for none.
    struct Hit {
        int Cluster = -1;
        int Flag = -1;
    };
    Hit At(double x, double y, const StripView& view) const;
    // Metres between the marks of the scale.
    double ScaleStep() const;

private:
    double m_length;
    double m_left;
    double m_right;
    double m_from;
    double m_to;
    std::vector<StripCluster> m_clusters;
};

// On a white ground of the view's width and PipeStripHeight.
void DrawPipeStrip(QPainter& painter, const PipeStrip& strip, const StripView& view);
// As an SVG document. Text needs an application of the toolkit; where there is none, one without a display
// lives as long as this runs.
std::string PipeStripSvg(const PipeStrip& strip, int width);
