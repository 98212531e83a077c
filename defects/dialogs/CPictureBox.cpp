#include "defects/dialogs/CPictureBox.h"

#include <QKeyEvent>
#include <QPainter>

#include "defects/dialogs/pictures.h"
#include "shell/CHostFiles.h"
#include "shell/dialogs/qttext.h"
#include "shell/dialogs/theme.h"
#include "shell/language.h"
#include "shell/seams.h"

namespace {

constexpr std::size_t LargestFile = 256U << 20;
constexpr int MessageNoPicture = 3956;
constexpr int MessageEnlarge = 3958;
constexpr int MessageNotThere = 3895;
constexpr int Margin = 8;
constexpr QRgb Ground = 0xFFE9EDF1;

}  // namespace

CPictureBox::CPictureBox(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::TabFocus);
    setToolTip(MessageText(MessageEnlarge));
    Show({});
}

void CPictureBox::Show(const std::string& path) {
    m_path = path;
    m_image = {};
    m_scaled = {};
    m_text = MessageText(MessageNoPicture);
    if (!path.empty()) {
        if (const auto bytes = HostFiles().ReadFile(path, LargestFile)) {
            m_image = DecodePicture(*bytes);
        }
        if (m_image.isNull()) {
            m_text = ToQt(FillText(LoadMessage(MessageNotThere), {path}));
        }
    }
    update();
}

void CPictureBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(Ground));
    if (m_image.isNull()) {
        painter.setPen(QColor(QuietTextColour));
        painter.drawText(rect().adjusted(Margin, Margin, -Margin, -Margin),
                         static_cast<int>(Qt::AlignCenter) | static_cast<int>(Qt::TextWrapAnywhere), m_text);
    } else {
        const QSize fits = m_image.size().scaled(size(), Qt::KeepAspectRatio).expandedTo({1, 1});
        const qreal ratio = devicePixelRatioF();
        if (const QSize pixels = (QSizeF(fits) * ratio).toSize(); m_scaled.size() != pixels) {
            m_scaled = m_image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        }
        painter.drawImage(QRect(QPoint((width() - fits.width()) / 2, (height() - fits.height()) / 2), fits),
                          m_scaled);
    }
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

void CPictureBox::mouseDoubleClickEvent(QMouseEvent*) {
    if (OnEnlarge && HasPicture()) {
        OnEnlarge();
    }
}

void CPictureBox::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && OnEnlarge && HasPicture()) {
        OnEnlarge();
        return;
    }
    QWidget::keyPressEvent(event);
}
