// Fills the level columns of the section list in the background: in slices of a few milliseconds, and never
// while a command or another window is at work.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>

#include "assessment/standards.h"

class CDbRec;
class CTestingList;

class CLevelFiller : public QObject {
public:
    // The list outlives this.
    explicit CLevelFiller(CTestingList& list);

    // Begins with the first section again. The database must stay open until Stop.
    void Start(CDbRec& database, ScoringRoute route, float K, float T);
    void Stop() { m_timer.stop(); }

    std::function<bool()> IsBusy;  // of the window: nothing is read then

private:
    void FillSlice();

    CTestingList& m_list;
    QTimer m_timer;
    CDbRec* m_database = nullptr;
    ScoringRoute m_route = ScoringRoute::None;
    float m_K = 0.0F;
    float m_T = 0.0F;
    int m_next = 0;
};
