// Small pictures for lists, read beside the thread of windows: what is asked for last comes first, since it
// is what is seen.
#pragma once

#include <QCache>
#include <QObject>
#include <QPixmap>
#include <QSize>
#include <QThreadPool>
#include <functional>
#include <string>
#include <vector>

class CThumbnails : public QObject {
public:
    CThumbnails(QSize size, QObject* parent);
    ~CThumbnails() override;

    // Within the size and on its middle; empty until it has come, or if there is none.
    QPixmap Get(const std::string& path);
    // Pictures may be others now.
    void Forget();

    std::function<void()> OnCame;

private:
    void StartNext();
    void Come(const std::string& path, int generation, const QImage& image);

    QSize m_size;
    QPixmap m_empty;
    QCache<QString, QPixmap> m_pictures;
    std::vector<std::string> m_wanted;
    QThreadPool m_thread;
    bool m_busy = false;
    int m_generation = 0;
};
