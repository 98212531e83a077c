// Shows how a long operation on files goes, with its speed, and lets the operator stop it. It appears only
// when the operation takes longer than half a second.
#pragma once

#include <QElapsedTimer>
#include <QProgressDialog>

#include "shell/CProgress.h"

class CProgressDlg : public CProgress {
public:
    // `title` is shown above the bar.
    enum class Unit { Bytes, Items };
    CProgressDlg(QWidget* parent, const QString& title, Unit unit = Unit::Bytes);

    void At(std::int64_t done, std::int64_t total, const std::string& text) override;
    bool Stopped() const override { return m_dialog.wasCanceled(); }

private:
    QProgressDialog m_dialog;
    QString m_title;
    Unit m_unit;
    QElapsedTimer m_sinceStart;
    QElapsedTimer m_sinceUpdate;
};
