// Shows one picture as large as its area allows, unstretched.
#pragma once

#include <QImage>
#include <QWidget>
#include <functional>
#include <string>

class CPictureBox : public QWidget {
public:
    explicit CPictureBox(QWidget* parent = nullptr);

    // Read whole, so that the file can be replaced while it is shown; read anew each time it is asked for.
    // Empty: none. What can't be shown says so in its place.
    void Show(const std::string& path);
    const std::string& Path() const { return m_path; }
    bool HasPicture() const { return !m_image.isNull(); }

    std::function<void()> OnEnlarge;  // a double click, or Enter

    QSize sizeHint() const override { return {240, 180}; }
    QSize minimumSizeHint() const override { return {120, 90}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QImage m_image;
    QImage m_scaled;
    std::string m_path;
    QString m_text;
};
