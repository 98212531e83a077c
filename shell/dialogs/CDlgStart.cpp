#include "shell/dialogs/CDlgStart.h"

#include <QImageReader>
#include <QPainter>
#include <QScreen>
#include <utility>

#include "shell/CHostFiles.h"
#include "shell/dialogs/qttext.h"
#include "shell/seams.h"

namespace {

constexpr int TimerClose = 1;
constexpr int CloseMilliseconds = 2000;

// A plain bitmap whatever its extension says, so the content decides. Screens with fine pixels get the twin
// of twice the size.
QPixmap LoadPicture(double pixelRatio) {
    for (const auto& [name, scale] : {std::pair("ui\\start@2x.dt", 2.0), std::pair("ui\\start.dt", 1.0)}) {
        if (scale > 1.0 && pixelRatio <= 1.0) {
            continue;
        }
        QImageReader reader(ToQt(HostFiles().HostPath(name)));
        reader.setDecideFormatFromContent(true);
        QPixmap picture = QPixmap::fromImage(reader.read());
        if (!picture.isNull()) {
            picture.setDevicePixelRatio(scale);
            return picture;
        }
    }
    return {};
}

}  // namespace

CDlgStart::CDlgStart(QWidget* parent) : CSizeDlg(parent), m_picture(LoadPicture(devicePixelRatioF())) {
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setModal(false);
    // The operator's keys belong to the window behind it.
    setAttribute(Qt::WA_ShowWithoutActivating);
}

void CDlgStart::setVisible(bool visible) {
    CSizeDlg::setVisible(visible && !m_picture.isNull());
}

void CDlgStart::OnInitDialog() {
    const QSize size = m_picture.deviceIndependentSize().toSize();
    const QRect room = screen()->availableGeometry();
    setFixedSize(size);
    move(room.center() - QPoint(size.width() / 2, size.height() / 2));
    SetTimer(TimerClose, CloseMilliseconds);
}

void CDlgStart::OnTimer(int id) {
    if (id == TimerClose) {
        OnCancel();
    }
}

void CDlgStart::OnCancel() {
    KillTimer(TimerClose);
    CSizeDlg::OnCancel();
}

void CDlgStart::paintEvent(QPaintEvent*) {
    QPainter(this).drawPixmap(rect(), m_picture);
}
