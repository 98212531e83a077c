// The strip of a pipe to look at and to work with: flags are chosen by a click or walked with the arrow keys,
// a click on the pipe goes there, the wheel zooms where the mouse is, a double click shows the whole pipe
// again. Flags that would cover each other stand in a pile, which opens under the mouse and by Enter.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <span>

#include "controls/paint/pipestrip.h"

class CPipeStrip : public QWidget {
public:
    explicit CPipeStrip(QWidget* parent = nullptr);

    // What is seen stays if it is the same pipe, by its wells.
    void SetStrip(PipeStrip strip);
    const PipeStrip& Strip() const { return m_strip; }
    void Select(std::int32_t flag);  // -1: none
    void SetPlayHead(std::optional<double> metres);
    std::optional<double> PlayHead() const { return m_view.PlayHead; }
    // What stands there as long as there is no pipe.
    void SetEmptyText(const QString& text);
    // What the mouse over the pipe is told, with "%s" for the metres.
    void SetPlaceTip(const QString& text) { m_placeTip = text; }

    // The flag before (-1) or behind (1) the one selected, else the play head. -1 if there is none.
    std::int32_t Neighbour(int step) const;
    double SeenFrom() const;
    double SeenTo() const;

    struct Key {
        Qt::Key Code;
        int Text;  // message that tells what it does; 0 where another key stands for it
        void (*Do)(CPipeStrip& strip);
    };
    static std::span<const Key> Keys();

    std::function<void(std::int32_t flag)> OnFlag;
    std::function<void(double metres)> OnPlace;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    CStripLayout Layout() const { return {m_strip, m_view}; }
    void Zoom(double x, double factor);
    void Shift(double pixels);
    void ShowWhole();
    void OpenSelected();
    void Walk(int step);
    void OpenPile(int cluster);

    PipeStrip m_strip;
    StripView m_view;
    QString m_empty;
    QString m_placeTip;
};
