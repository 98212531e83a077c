#include <QCoreApplication>
#include <QLibrary>
#include <QOpenGLContext>

#include "controls/CWebBrowser2.h"

// Exported by the toolkit for its own modules. The engine asks for a context that all windows share, which
// the toolkit would make at the start of every program that might need it: 80 ms of graphics drivers. One
// that has not been created does as well, since pages are drawn by the processor.
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);
Q_GUI_EXPORT QOpenGLContext* qt_gl_global_share_context();

namespace {

using Maker = CWebBrowser2* (*)(const WebOptions&, QWidget*);

void PrepareSharing() {
    if (qt_gl_global_share_context() == nullptr) {
        qt_gl_set_global_share_context(new QOpenGLContext(QCoreApplication::instance()));
    }
}

}  // namespace

CWebBrowser2* MakeWebBrowser(const QString& library, WebOptions options, QWidget* parent, QString& reason) {
    PrepareSharing();
    QLibrary part(library);
    const auto make = reinterpret_cast<Maker>(part.resolve("MakeDrovaneWebBrowser"));
    if (make == nullptr) {
        reason = part.errorString();
        return nullptr;
    }
    return make(options, parent);
}
