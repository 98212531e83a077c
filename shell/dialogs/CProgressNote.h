// Shows the progress of operations that any opening of a file may bring along, such as a conversion. Whoever
// reports decides whether it takes long enough to be shown; the note goes when all is done.
#pragma once

#include <QProgressDialog>
#include <memory>

#include "shell/CProgress.h"

class CProgressNote : public CProgress {
public:
    void At(std::int64_t done, std::int64_t total, const std::string& text) override;
    bool Stopped() const override { return m_dialog && m_dialog->wasCanceled(); }

private:
    std::unique_ptr<QProgressDialog> m_dialog;  // while something runs
};
