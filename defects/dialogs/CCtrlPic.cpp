#include "defects/dialogs/CCtrlPic.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <utility>

#include "defects/canvasmarks.h"
#include "defects/dialogs/CNewDefectNameDlg.h"
#include "defects/dialogs/paintmarks.h"
#include "defects/dialogs/pictures.h"
#include "shell/CHostFiles.h"
#include "shell/dialogs/qttext.h"
#include "shell/seams.h"

namespace {

constexpr int MessageNotThere = 3313;
constexpr int MessageNotShown = 3314;
constexpr int TextMargin = 12;
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
    if (bytes) {
        m_image = DecodePicture(*bytes);
    }
    if (HasPicture()) {
        m_path = wanted;
    } else if (!wanted.empty()) {
        m_missing =
            MessageText(HostFiles().Exists(wanted) ? MessageNotShown : MessageNotThere) + '\n' + ToQt(wanted);
    }
    return HasPicture();
}

void CCtrlPic::ClearPicture() {
    m_image = QImage();
    ClearLayers();
    m_path.clear();
    m_missing.clear();
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
    QImage baked = m_ground.size() == size() ? m_ground : Stretched(size());
    baked.setDevicePixelRatio(1.0);
    const CanvasMarks marks = MarksOf(m_annotations);
    QPainter painter(&baked);
    for (const auto* part : {&marks.Below, &marks.Above, &marks.Top}) {
        PaintMarks(painter, *part, size());
    }
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
        painter.setPen(Qt::white);
        painter.drawText(rect().adjusted(TextMargin, TextMargin, -TextMargin, -TextMargin),
                         Qt::AlignCenter | Qt::TextWrapAnywhere, m_missing);
        return;
    }
    m_annotations.RenewScale();
    CanvasMarks marks = MarksOf(m_annotations);
    PrepareGround();
    const bool parted = !marks.Above.empty();
    if (parted) {
        m_below.Update(m_ground, 0, marks.Below, size());
        PrepareAbove(marks.Above);
    } else {
        m_below.Clear();
        m_above = QImage();
        m_aboveMarks.clear();
    }
    if (parted && m_annotations.HasCapture()) {
        painter.drawImage(0, 0, m_below.Image());
        PaintMarks(painter, marks.InHand, size());
        painter.drawImage(0, 0, m_above);
    } else {
        const std::size_t inGround = parted ? marks.Below.size() : 0;
        std::ranges::move(marks.Above, std::back_inserter(marks.Below));
        m_standing.Update(parted ? m_below.Image() : m_ground, inGround, std::move(marks.Below), size());
        painter.drawImage(0, 0, m_standing.Image());
        PaintMarks(painter, marks.InHand, size());
    }
    PaintMarks(painter, marks.Top, size());
}

void CCtrlPic::PrepareGround() {
    const double ratio = devicePixelRatioF();
    const QSize pixels(static_cast<int>(std::ceil(width() * ratio)),
                       static_cast<int>(std::ceil(height() * ratio)));
    if (m_ground.size() != pixels || m_ground.devicePixelRatio() != ratio) {
        ClearLayers();
        m_ground = Stretched(pixels);
        m_ground.setDevicePixelRatio(ratio);
    }
}

void CCtrlPic::PrepareAbove(const std::vector<CanvasMark>& marks) {
    if (!m_above.isNull() && m_aboveMarks == marks) {
        return;
    }
    m_above = QImage(m_ground.size(), QImage::Format_ARGB32_Premultiplied);
    m_above.setDevicePixelRatio(m_ground.devicePixelRatio());
    m_above.fill(Qt::transparent);
    QPainter painter(&m_above);
    PaintMarks(painter, marks, size());
    m_aboveMarks = marks;
}

void CCtrlPic::ClearLayers() {
    m_ground = QImage();
    m_standing.Clear();
    m_below.Clear();
    m_above = QImage();
    m_aboveMarks.clear();
}

QImage CCtrlPic::Stretched(QSize pixels) const {
    return m_image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
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
    } else {
        Changed(m_annotations.Move(PointOf(*event)));
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
