#include "controls/icons.h"

#include <QImageReader>

#include "shell/CHostFiles.h"
#include "shell/seams.h"

QIcon LoadIcon(std::string_view pathText) {
    // An icon made of a file's name reads the file when it is first drawn, and isn't null before that.
    const QString file = QString::fromStdString(HostFiles().HostPath(pathText));
    return QImageReader(file).canRead() ? QIcon(file) : QIcon();
}
