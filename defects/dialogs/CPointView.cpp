#include "defects/dialogs/CPointView.h"

void CPointView::UpdateMarkers(const std::vector<std::uint8_t>& flags) {
    m_flags = flags;
    update();
}
