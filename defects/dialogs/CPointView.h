// The time ruler: which seconds of the video have a defect.
#pragma once

#include <QWidget>
#include <cstdint>
#include <vector>

class CPointView : public QWidget {
public:
    explicit CPointView(QWidget* parent = nullptr) : QWidget(parent) {}

    // One entry a whole second, 1 where there is a mark.
    void UpdateMarkers(const std::vector<std::uint8_t>& flags);
    void ClearMarkers() { UpdateMarkers({}); }
    const std::vector<std::uint8_t>& Flags() const { return m_flags; }
    // Pixels left free at each end.
    void SetMargin(int margin) { m_margin = margin; }
    int Margin() const { return m_margin; }

private:
    std::vector<std::uint8_t> m_flags;
    int m_margin = 0;
};
