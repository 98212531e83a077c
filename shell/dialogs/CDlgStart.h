// The splash: a picture without a frame that goes by itself. A picture that can't be read makes no splash and
// no message.
#pragma once

#include <QPixmap>

#include "shell/dialogs/CSizeDlg.h"

class CDlgStart : public CSizeDlg {
public:
    explicit CDlgStart(QWidget* parent = nullptr);

    // Stays hidden without a picture.
    void setVisible(bool visible) override;

protected:
    void OnInitDialog() override;
    void OnCancel() override;
    void OnTimer(int id) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap m_picture;
};
