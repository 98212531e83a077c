#include "workbench/coding/sectionstrip.h"

#include <algorithm>
#include <cmath>

#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"
#include "store/CDbCriterion.h"

namespace {

constexpr int MessageLetters = 3484;  // of structural and functional defects, manholes, nothing wrong
constexpr double MostContradictions = 0.2;

// The words of the message.
std::string LetterOf(const _REC_DATA& record) {
    const std::string letters = LoadMessage(MessageLetters);
    std::size_t wanted = record.IsPipeNormal() ? 3 : record.IsJCJ() ? 2 : record.IsGN() ? 1 : 0;
    std::size_t at = 0;
    for (; wanted > 0 && at != std::string::npos; --wanted) {
        at = letters.find(' ', at);
        at += at == std::string::npos ? 0 : 1;
    }
    return at == std::string::npos ? std::string() : letters.substr(at, letters.find(' ', at) - at);
}

StripFlag::Form FormOf(const _REC_DATA& record) {
    if (record.IsJCJ()) {
        return StripFlag::Form::Diamond;
    }
    return record.IsGN() || record.IsPipeNormal() ? StripFlag::Form::Round : StripFlag::Form::Square;
}

std::string Metres(float metres) {
    return FormatFixed(static_cast<double>(metres), 2);
}

StripFlag FlagOf(const _REC_DATA& record, const CDbCriterion& criterion) {
    StripFlag flag;
    flag.Id = record.ID;
    flag.From = static_cast<double>(record.DistanceStart);
    flag.To = static_cast<double>(std::max(record.DistanceStart, record.DistanceEnd));
    flag.Letter = LetterOf(record);
    flag.Shape = FormOf(record);
    flag.Grade = record.IsPipeNormal() ? 0 : record.DefectLevel;
    std::string name;
    for (std::size_t i = 0; i < criterion.DefectCodes.size(); ++i) {
        if (EqualNoCase(criterion.DefectCodes[i], record.DefectCode)) {
            name = criterion.DefectNames[i];
        }
    }
    flag.Text = record.DefectCode + FormatInt(record.DefectLevel) + " " + name + "  " +
                Metres(record.DistanceStart) +
                (record.DistanceEnd > record.DistanceStart ? "~" + Metres(record.DistanceEnd) : "") + " m";
    return flag;
}

double Positive(double value) {
    return std::isfinite(value) && value > 0.0 ? value : 0.0;
}

}  // namespace

PipeStrip MakeSectionStrip(const _TESTING_DATA& section, const CRecDataArray& records,
                           const std::vector<_REC_DATA>& openRuns, const CDbCriterion& criterion) {
    PipeStrip strip;
    strip.StartWell = section.StartWell;
    strip.EndWell = section.EndWell;
    strip.Direction = section.TestingDirection == "顺流"   ? PipeStrip::Flow::ToEnd
                      : section.TestingDirection == "逆流" ? PipeStrip::Flow::ToStart
                                                           : PipeStrip::Flow::Unknown;
    strip.InspectedFrom = Positive(static_cast<double>(section.DistanceStart));
    strip.InspectedTo = Positive(static_cast<double>(section.DistanceEnd));
    if (strip.InspectedTo <= strip.InspectedFrom) {
        // Imported sections end at 0 m until their properties were confirmed; what was inspected stands apart.
        strip.InspectedTo = strip.InspectedFrom + Positive(ParseDouble(section.DetectionLength));
    }
    strip.Length = std::max(Positive(ParseDouble(section.PipeLength)), strip.InspectedTo);
    for (const _REC_DATA& record : records) {
        if (!std::isfinite(record.DistanceStart) || !std::isfinite(record.DistanceEnd)) {
            continue;
        }
        strip.Flags.push_back(FlagOf(record, criterion));
        strip.Flags.back().OpenRun = std::any_of(openRuns.begin(), openRuns.end(),
                                                 [&](const _REC_DATA& run) { return run.ID == record.ID; });
        // A length that was never entered hides no defect.
        if (strip.InspectedTo <= strip.InspectedFrom) {
        // Imported sections end at 0 m until their properties were confirmed; what was inspected stands apart.
        strip.InspectedTo = strip.InspectedFrom + Positive(ParseDouble(section.DetectionLength));
    }
    strip.Length = std::max(strip.Length, strip.Flags.back().To);
    }
    std::stable_sort(strip.Flags.begin(), strip.Flags.end(),
                     [](const StripFlag& a, const StripFlag& b) { return a.From < b.From; });
    return strip;
}

CVideoTrack::CVideoTrack(const CRecDataArray& records, std::string_view video) {
    std::vector<std::pair<double, double>> points;
    for (const _REC_DATA& record : records) {
        const double time = record.GetPicTime1();
        if (!record.IsJCJ() && time >= 0.0 && std::isfinite(record.DistanceStart) &&
            EqualNoCase(record.Video, video)) {
            points.emplace_back(time, static_cast<double>(record.DistanceStart));
        }
    }
    std::sort(points.begin(), points.end());
    // The longest row that never goes back, by the least distance at which one of each length ends.
    std::vector<std::size_t> ends;
    std::vector<std::size_t> before(points.size(), points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto place =
            std::upper_bound(ends.begin(), ends.end(), points[i].second,
                             [&](double metres, std::size_t end) { return metres < points[end].second; });
        if (place != ends.begin()) {
            before[i] = *(place - 1);
        }
        if (place == ends.end()) {
            ends.push_back(i);
        } else {
            *place = i;
        }
    }
    for (std::size_t i = ends.empty() ? points.size() : ends.back(); i < points.size(); i = before[i]) {
        m_points.push_back(points[i]);
    }
    std::reverse(m_points.begin(), m_points.end());
    const auto contradictions = static_cast<double>(points.size() - m_points.size());
    if (m_points.size() < 2 || contradictions > MostContradictions * static_cast<double>(points.size()) ||
        !(m_points.back().second > m_points.front().second)) {
        m_points.clear();
    }
}

std::optional<double> CVideoTrack::DistanceAt(double seconds) const {
    if (!IsKnown() || !(seconds >= m_points.front().first && seconds <= m_points.back().first)) {
        return std::nullopt;
    }
    const auto next = std::upper_bound(m_points.begin(), m_points.end(), std::pair(seconds, 1e300));
    if (next == m_points.end()) {
        return m_points.back().second;
    }
    const auto& [time, metres] = *(next - 1);
    const double part = (seconds - time) / (next->first - time);
    return metres + part * (next->second - metres);
}

std::optional<double> CVideoTrack::SecondsAt(double metres) const {
    if (!IsKnown() || !(metres >= m_points.front().second && metres <= m_points.back().second)) {
        return std::nullopt;
    }
    const auto next =
        std::lower_bound(m_points.begin(), m_points.end(), metres,
                         [](const auto& point, double wanted) { return point.second < wanted; });
    if (next == m_points.begin() || next->second <= metres) {
        return next->first;
    }
    const auto& [time, behind] = *(next - 1);
    return time + (metres - behind) / (next->second - behind) * (next->first - time);
}
