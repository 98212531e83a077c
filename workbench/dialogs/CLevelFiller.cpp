#include "workbench/dialogs/CLevelFiller.h"

#include <QElapsedTimer>

#include "assessment/explain/projectgrades.h"
#include "lists/CTestingList.h"
#include "shell/dialogs/bringtofront.h"
#include "store/CDbRec.h"

namespace {

constexpr int SliceMilliseconds = 8;
constexpr int WhileBusy = 200;  // milliseconds between looks

}  // namespace

CLevelFiller::CLevelFiller(CTestingList& list) : m_list(list) {
    connect(&m_timer, &QTimer::timeout, this, [this] { FillSlice(); });
}

void CLevelFiller::Start(CDbRec& database, ScoringRoute route, float K, float T) {
    m_database = &database;
    m_route = route;
    m_K = K;
    m_T = T;
    m_next = 0;
    m_timer.start(0);
}

void CLevelFiller::FillSlice() {
    if (IsBlocked(*m_list.window()) || (IsBusy && IsBusy())) {
        m_timer.setInterval(WhileBusy);
        return;
    }
    m_timer.setInterval(0);
    QElapsedTimer slice;
    slice.start();
    const CTestingDataArray& sections = m_list.Sections();
    while (slice.elapsed() < SliceMilliseconds) {
        if (m_next >= sections.GetSize()) {
            m_timer.stop();
            return;
        }
        const std::int32_t id = sections[m_next++].ID;
        if (const auto grade = ReadGrade(*m_database, m_route, sections, id, m_K, m_T)) {
            m_list.SetLevels(id, grade->Result.riLevelJG, grade->Result.riLevelGN);
        }
    }
}
