// The face of the program in live mode. It owns the receiving end of the live channel for as long as it is
// there, and comes to the front when another live instance is started.
#pragma once

#include "shell/dialogs/CSizeDlg.h"

class CLiveChannel;

class CDrovaneDlg : public CSizeDlg {
public:
    // The channel outlives the window.
    explicit CDrovaneDlg(CLiveChannel& channel, QWidget* parent = nullptr);
    ~CDrovaneDlg() override;

protected:
    void OnInitDialog() override;

private:
    CLiveChannel& m_channel;
};
