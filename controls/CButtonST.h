// The flat button of toolbars: picture and text on the window's own ground, which is tinted under the
// mouse and when pressed. It takes its size from picture, text and font, so any language fits, and its
// colours from the palette.
//
// A click leaves the keyboard with whoever has it, so that an operator goes on in the list; the button is
// reached with Tab, and Enter and Space press it then.
#pragma once

#include <QIcon>
#include <QPushButton>
#include <string_view>

class QShortcut;

class CButtonST : public QPushButton {
public:
    enum class Layout { PictureOverText, PictureBesideText };

    explicit CButtonST(Layout layout, QWidget* parent = nullptr);

    // The picture at a path text such as "ui\big\set.bmp", drawn at `size` by `size` pixels of a screen of
    // 100 %. If it isn't there the button shows its text alone.
    void SetBitmap(std::string_view pathText, int size);
    // The keys of the shortcut, if there is one, are put behind the tip.
    void SetTip(const QString& tip);
    // Works in the whole window, as long as the button is shown and enabled. Setting a text doesn't end it,
    // unlike that of QAbstractButton.
    void SetShortcut(const QKeySequence& keys);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool HasPicture() const { return !m_picture.isNull(); }
    QSize TextSize() const;
    QSize ContentSize() const;
    int Gap() const;  // between picture and text
    void PaintGround(QPainter& painter) const;
    void PaintContent(QPainter& painter) const;
    void UpdateTip();

    Layout m_layout;
    QIcon m_picture;
    int m_pictureSize = 0;
    QString m_tip;
    QShortcut* m_shortcut = nullptr;  // a child
};
