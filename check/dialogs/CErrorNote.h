// A line that tells how many errors a check of the project finds, with a link to them. It never keeps anybody
// from anything.
#pragma once

#include <QLabel>
#include <QTimer>
#include <functional>

#include "check/CCheckRun.h"

class CErrorNote : public QLabel {
public:
    explicit CErrorNote(QWidget* parent);

    std::function<void()> OnLink;
    // The database stays open while the line lives. It works while it is enabled, in slices.
    void Start(CDbRec& database);

private:
    void Work();

    CDbRec* m_database = nullptr;
    std::unique_ptr<CCheckRun> m_run;
    QTimer m_timer;
};
