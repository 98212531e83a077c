#include "bulk/dialogs/CThumbnails.h"

#include <QImageReader>
#include <QPainter>
#include <algorithm>

#include "shell/CHostFiles.h"
#include "shell/dialogs/qttext.h"
#include "shell/seams.h"

namespace {

constexpr int MostKept = 600;
constexpr std::size_t MostWanted = 60;  // what was scrolled past isn't read

QImage Read(const QString& path, QSize size) {
    QImageReader reader(path);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    if (const QSize whole = reader.size(); whole.isValid()) {
        reader.setScaledSize(whole.scaled(size, Qt::KeepAspectRatio).expandedTo({1, 1}));
    }
    return reader.read();
}

}  // namespace

CThumbnails::CThumbnails(QSize size, QObject* parent) : QObject(parent), m_size(size), m_empty(size) {
    m_empty.fill(Qt::transparent);
    m_pictures.setMaxCost(MostKept);
    m_thread.setMaxThreadCount(1);
}

CThumbnails::~CThumbnails() {
    m_thread.waitForDone();
}

QPixmap CThumbnails::Get(const std::string& path) {
    if (path.empty()) {
        return m_empty;
    }
    if (const QPixmap* picture = m_pictures.object(ToQt(path))) {
        return *picture;
    }
    std::erase(m_wanted, path);
    m_wanted.push_back(path);
    if (m_wanted.size() > MostWanted) {
        m_wanted.erase(m_wanted.begin());
    }
    StartNext();
    return m_empty;
}

void CThumbnails::Forget() {
    ++m_generation;
    m_pictures.clear();
    m_wanted.clear();
}

void CThumbnails::StartNext() {
    if (m_busy || m_wanted.empty()) {
        return;
    }
    m_busy = true;
    const std::string path = std::move(m_wanted.back());
    m_wanted.pop_back();
    const QString file = ToQt(HostFiles().HostPath(path));
    m_thread.start([this, path, file, generation = m_generation, size = m_size] {
        const QImage image = Read(file, size);
        QMetaObject::invokeMethod(
            this, [this, path, generation, image] { Come(path, generation, image); }, Qt::QueuedConnection);
    });
}

void CThumbnails::Come(const std::string& path, int generation, const QImage& image) {
    m_busy = false;
    if (generation == m_generation) {
        auto* picture = new QPixmap(m_empty);
        if (!image.isNull()) {
            QPainter painter(picture);
            painter.drawImage((m_size.width() - image.width()) / 2, (m_size.height() - image.height()) / 2,
                              image);
        }
        m_pictures.insert(ToQt(path), picture);
        if (OnCame) {
            OnCame();
        }
    }
    StartNext();
}
