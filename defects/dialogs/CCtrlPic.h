// Shows one picture stretched over its area.
#pragma once

#include <QImage>
#include <QWidget>
#include <string>
#include <string_view>

class CCtrlPic : public QWidget {
public:
    explicit CCtrlPic(QWidget* parent = nullptr);

    // The picture is read whole and decoded from memory, by its content and not by its ending: the file
    // doesn't stay open, so that it can be replaced while it is shown. False, with no picture, if there is
    // none.
    bool ShowPicture(std::string_view path);
    void ClearPicture();
    bool HasPicture() const { return !m_image.isNull(); }
    const std::string& Path() const { return m_path; }  // empty without a picture

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_image;
    std::string m_path;
};
