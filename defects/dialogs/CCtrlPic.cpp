#include "defects/dialogs/CCtrlPic.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>
#include <filesystem>

#include "defects/dialogs/CNewDefectNameDlg.h"
#include "defects/dialogs/paintannotations.h"
#include "defects/dialogs/pictures.h"
#include "shell/CHostFiles.h"
#include "shell/dialogs/qttext.h"
#include "shell/seams.h"

namespace {

constexpr std::size_t LargestFile = 256U << 20;

// Whoever may do everything may replace even what nobody is to write to.
bool IsWriteProtected(std::string_view path) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::file_status status = fs::status(HostFiles().HostPath(path), error);
    constexpr fs::perms write = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    return fs::exists(status) && (status.permissions() & write) == fs::perms::none;
}

// The pixel that the pointer is in.
CanvasPoint PointOf(const QMouseEvent& event) {
    return {static_cast<int>(std::floor(event.position().x())),
            static_cast<int>(std::floor(event.position().y()))};
}

}  // namespace

CCtrlPic::CCtrlPic(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(MessageText(3152));
}

bool CCtrlPic::ShowPicture(std::string_view path) {
    const std::string wanted(path);  // may be our own
    ClearPicture();
    const auto bytes = HostFiles().ReadFile(wanted, LargestFile);
    if (!bytes) {
        return false;
    }
    m_image = DecodePicture(*bytes);
    if (HasPicture()) {
        m_path = wanted;
    }
    return HasPicture();
}

void CCtrlPic::ClearPicture() {
    m_image = QImage();
    m_scaled = QImage();
    m_above = QImage();
    m_path.clear();
    Changed();
}

void CCtrlPic::SetTool(ToolMode tool) {
    m_annotations.SetTool(tool);
    if (tool == ToolMode::None) {
        unsetCursor();
    } else {
        setCursor(Qt::CrossCursor);
    }
    Changed();
}

void CCtrlPic::SetColour(std::uint32_t colour) {
    m_annotations.Colour = colour;
    Changed();
}

bool CCtrlPic::UndoLast(ToolMode of) {
    const bool undone = m_annotations.UndoLast(of);
    Changed(undone);
    return undone;
}

void CCtrlPic::ClearCalibration() {
    m_annotations.ClearCalibration();
    Changed();
}

void CCtrlPic::ClearObjects() {
    m_annotations.ClearObjects();
    Changed();
}

void CCtrlPic::ResetRubber() {
    m_annotations.ResetRubber();
    Changed();
}

void CCtrlPic::BakeToFile() {
    Changed(m_annotations.LoseCapture());
    m_annotations.RenewScale();
    if (!HasPicture() || size().isEmpty() || IsWriteProtected(m_path)) {
        return;
    }
    QImage baked = Scaled(size());
    QPainter painter(&baked);
    PaintAnnotations(painter, m_annotations, AnnotationLayer::Below, size());
    PaintAnnotations(painter, m_annotations, AnnotationLayer::Top, size());
    painter.end();
    const std::string bytes = EncodePicture(baked, m_path);
    if (!bytes.empty()) {
        (void)HostFiles().WriteFile(m_path, bytes);
    }
}

bool CCtrlPic::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && m_annotations.HasCapture()) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void CCtrlPic::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!HasPicture()) {
        painter.fillRect(rect(), Qt::black);
        return;
    }
    m_annotations.RenewScale();
    PrepareLayers();
    painter.drawImage(0, 0, m_below);
    PaintAnnotations(painter, m_annotations, AnnotationLayer::InHand, size());
    if (!m_above.isNull()) {
        painter.drawImage(0, 0, m_above);
    }
    PaintAnnotations(painter, m_annotations, AnnotationLayer::Top, size());
}

void CCtrlPic::PrepareLayers() {
    const double ratio = devicePixelRatioF();
    const QSize pixels(static_cast<int>(std::ceil(width() * ratio)),
                       static_cast<int>(std::ceil(height() * ratio)));
    if (m_below.size() == pixels && m_below.devicePixelRatio() == ratio && m_layerScale == MmPerPixel) {
        return;
    }
    m_layerScale = MmPerPixel;
    m_below = Scaled(pixels);
    m_below.setDevicePixelRatio(ratio);
    QPainter below(&m_below);
    PaintAnnotations(below, m_annotations, AnnotationLayer::Below, size());
    m_above = QImage();
    if (m_annotations.HasCapture()) {
        QImage above(pixels, QImage::Format_ARGB32_Premultiplied);
        above.setDevicePixelRatio(ratio);
        above.fill(Qt::transparent);
        QPainter painter(&above);
        if (PaintAnnotations(painter, m_annotations, AnnotationLayer::Above, size())) {
            painter.end();
            m_above = above;
        }
    }
}

const QImage& CCtrlPic::Scaled(QSize pixels) {
    if (m_scaled.size() != pixels) {
        m_scaled = m_image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    return m_scaled;
}

void CCtrlPic::hideEvent(QHideEvent* event) {
    Changed(m_annotations.LoseCapture());
    QWidget::hideEvent(event);
}

void CCtrlPic::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && m_annotations.DropShape()) {
        Changed();
    } else if (!m_annotations.HasCapture()) {
        QWidget::keyPressEvent(event);
    }
}

void CCtrlPic::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || GetTool() == ToolMode::None) {
        QWidget::mousePressEvent(event);
        return;
    }
    setFocus(Qt::MouseFocusReason);
    Changed(m_annotations.Press(PointOf(*event)));
}

void CCtrlPic::mouseMoveEvent(QMouseEvent* event) {
    // Without the button the release has gone elsewhere.
    if ((event->buttons() & Qt::LeftButton) == 0) {
        Changed(m_annotations.LoseCapture());
    } else if (m_annotations.Move(PointOf(*event))) {
        update();  // the layers stand
    }
}

void CCtrlPic::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    Changed(m_annotations.Release(PointOf(*event)));
    if (m_annotations.AwaitsText()) {
        AskText();
    }
}

void CCtrlPic::Changed(bool changed) {
    if (changed) {
        m_below = QImage();
        update();
    }
}

void CCtrlPic::AskText() {
    CNewDefectNameDlg dialog(m_defaultText, window());
    if (dialog.DoModal() == CSizeDlg::IdOk) {
        m_annotations.GiveText(dialog.Text());
    } else {
        m_annotations.RefuseText();
    }
    Changed();
}
