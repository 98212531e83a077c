#include "defects/dialogs/CCtrlPic.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>

#include "shell/CHostFiles.h"
#include "shell/seams.h"

namespace {

constexpr std::size_t LargestFile = 256U << 20;

QImage Decode(const std::string& bytes) {
    QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QBuffer buffer(&data);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    return reader.read();
}

}  // namespace

CCtrlPic::CCtrlPic(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

bool CCtrlPic::ShowPicture(std::string_view path) {
    ClearPicture();
    const auto bytes = HostFiles().ReadFile(path, LargestFile);
    if (!bytes) {
        return false;
    }
    m_image = Decode(*bytes);
    if (m_image.height() > 0) {
        m_path = path;
    }
    return HasPicture();
}

void CCtrlPic::ClearPicture() {
    m_image = QImage();
    m_path.clear();
    update();
}

void CCtrlPic::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (HasPicture()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(rect(), m_image);
    } else {
        painter.fillRect(rect(), Qt::black);
    }
}
