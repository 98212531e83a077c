#include <algorithm>
#include <cmath>

#include "controls/paint/pipestrip.h"
#include "controls/paint/stripmeasures.h"

namespace {

constexpr double LeastScaleGap = 60.0;  // pixels between marks
constexpr double LeastSeen = 0.5;       // metres

}  // namespace

CStripLayout::CStripLayout(const PipeStrip& strip, const StripView& view) : m_length(strip.Length) {
    const double margin = std::min<double>(StripMargin, view.Width / 5.0);
    m_left = margin;
    m_right = std::max(view.Width - margin, m_left + 1.0);
    const bool part = view.To > view.From;
    m_from = part ? std::clamp(view.From, 0.0, std::max(strip.Length - LeastSeen, 0.0)) : 0.0;
    m_to = part ? std::clamp(view.To, m_from + LeastSeen, std::max(strip.Length, m_from + LeastSeen))
                : strip.Length;
    // A pile stands where its first flag does and reaches no further than that flag would cover: so no two of
    // them overlap, and a long row of defects doesn't become one pile.
    for (std::size_t i = 0; i < strip.Flags.size(); ++i) {
        const StripFlag& flag = strip.Flags[i];
        if (!(flag.From >= m_from && flag.From <= m_to)) {
            continue;
        }
        const double x = XOf(flag.From);
        if (m_clusters.empty() || x - m_clusters.back().X >= StripFlagWidth) {
            m_clusters.emplace_back();
            m_clusters.back().X = x;
        }
        m_clusters.back().Flags.push_back(i);
        m_clusters.back().Grade = std::max(m_clusters.back().Grade, flag.Grade);
    }
}

double CStripLayout::XOf(double metres) const {
    const double seen = m_to - m_from;
    return seen > 0.0 ? m_left + (metres - m_from) / seen * (m_right - m_left) : m_left;
}

double CStripLayout::MetresAt(double x) const {
    const double part = std::clamp((x - m_left) / (m_right - m_left), 0.0, 1.0);
    return m_from + part * (m_to - m_from);
}

// Side by side around their middle, kept on the strip; so many that they don't fit move together.
std::vector<double> CStripLayout::OpenPlaces(const StripCluster& cluster) const {
    const auto count = static_cast<double>(cluster.Flags.size());
    const double width = m_right - m_left;
    const double step = std::min<double>(StripFlagWidth + 2.0, count > 1.0 ? width / (count - 1.0) : width);
    const double half = step * (count - 1.0) / 2.0;
    const double middle = std::clamp(cluster.X, m_left + half, std::max(m_right - half, m_left + half));
    std::vector<double> places;
    for (std::size_t i = 0; i < cluster.Flags.size(); ++i) {
        places.push_back(middle - half + step * static_cast<double>(i));
    }
    return places;
}

CStripLayout::Hit CStripLayout::At(double x, double y, const StripView& view) const {
    Hit hit;
    if (y > StripPipeTop) {
        return hit;
    }
    constexpr double Reach = StripFlagWidth / 2.0;
    if (view.Open >= 0 && view.Open < static_cast<int>(m_clusters.size())) {
        const StripCluster& open = m_clusters[static_cast<std::size_t>(view.Open)];
        const std::vector<double> places = OpenPlaces(open);
        // The last one drawn lies on top.
        for (std::size_t i = places.size(); i-- > 0;) {
            if (std::fabs(x - places[i]) <= Reach) {
                return {view.Open, static_cast<int>(open.Flags[i])};
            }
        }
    }
    double nearest = Reach;
    for (std::size_t i = 0; i < m_clusters.size(); ++i) {
        const double away = std::fabs(x - m_clusters[i].X);
        if (away <= nearest && static_cast<int>(i) != view.Open) {
            nearest = away;
            hit.Cluster = static_cast<int>(i);
            hit.Flag = m_clusters[i].Flags.size() == 1 ? static_cast<int>(m_clusters[i].Flags[0]) : -1;
        }
    }
    return hit;
}

double CStripLayout::ScaleStep() const {
    const double seen = m_to - m_from;
    if (!(seen > 0.0)) {
        return 0.0;
    }
    const double least = seen * LeastScaleGap / std::max(m_right - m_left, 1.0);
    double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0, 10.0}) {
        if (factor * power >= least) {
            return factor * power;
        }
    }
    return 10.0 * power;
}
