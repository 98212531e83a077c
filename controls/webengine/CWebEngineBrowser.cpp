#include "controls/webengine/CWebEngineBrowser.h"

#include <unistd.h>

#include <QBoxLayout>
#include <QBuffer>
#include <QLoggingCategory>
#include <QPainter>
#include <QPdfDocument>
#include <QPointer>
#include <QQuickWindow>
#include <QWebEngineDownloadRequest>
#include <QWebEngineProfile>
#include <QWebEngineUrlScheme>
#include <QWebEngineView>

#include "controls/webengine/CSchemeHandler.h"
#include "controls/webengine/CWebPage.h"

namespace {

constexpr int Loading = 1;

// Once in a process, before the engine comes up with the first profile.
void PrepareEngine() {
    if (!QWebEngineUrlScheme::schemeByName(OwnScheme).name().isEmpty()) {
        return;
    }
    // A page of what it found out about the graphics is of no use to anybody.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext*=false"));
    // The engine's sandbox refuses to run for root, and only for root.
    if (geteuid() == 0) {
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    }
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu --disable-background-networking");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QWebEngineUrlScheme scheme(OwnScheme);
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    scheme.setFlags(QWebEngineUrlScheme::SecureScheme);
    QWebEngineUrlScheme::registerScheme(scheme);
}

}  // namespace

CWebEngineBrowser::CWebEngineBrowser(WebOptions options, QWidget* parent)
    : QWidget(parent),
      m_options(std::move(options)),
      m_view(new QWebEngineView(this)),
      m_profile(new QWebEngineProfile),  // without a name: nothing of it reaches the disk
      m_page(nullptr) {
    m_profile->installUrlSchemeHandler(OwnScheme, new CSchemeHandler(m_options, m_profile));
    m_profile->setUrlRequestInterceptor(new CRequestGate(m_options, m_profile));
    connect(m_profile, &QWebEngineProfile::downloadRequested, this,
            [](QWebEngineDownloadRequest* download) { download->cancel(); });
    m_page = new CWebPage(m_options, m_profile, nullptr);
    m_view->setPage(m_page);
    m_view->setContextMenuPolicy(Qt::NoContextMenu);
    m_view->setAcceptDrops(false);
    connect(m_page, &QWebEnginePage::loadStarted, this, [this] { SetReadyState(Loading); });
    connect(m_page, &QWebEnginePage::loadFinished, this, [this](bool) { SetReadyState(Complete); });
    connect(m_page, &QWebEnginePage::renderProcessTerminated, this, [this] { SetReadyState(0); });
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    setFocusProxy(m_view);
}

CWebEngineBrowser::~CWebEngineBrowser() {
    OnReadyState = nullptr;
    delete m_view;
    delete m_page;
    delete m_profile;  // last: pages need it
}

void CWebEngineBrowser::SetReadyState(int state) {
    m_readyState = state;
    if (OnReadyState) {
        OnReadyState();
    }
}

void CWebEngineBrowser::Navigate2(const QString& address) {
    const QUrl url(address);
    m_page->Allow(url);
    SetReadyState(Loading);
    m_page->load(url);
}

bool CWebEngineBrowser::RunScript(const QString& script) {
    if (m_readyState != Complete) {
        return false;
    }
    // What the last expression gives would be carried over to us: a map is a million objects.
    m_page->runJavaScript(script + QStringLiteral("\n;0"));
    return true;
}

bool CWebEngineBrowser::ReadScriptVariable(const QString& expression,
                                           std::function<void(const QVariant&)> take) {
    if (m_readyState != Complete) {
        return false;
    }
    const QPointer<CWebEngineBrowser> self(this);
    m_page->runJavaScript(expression, [self, take = std::move(take)](const QVariant& value) {
        if (self) {
            take(value);
        }
    });
    return true;
}

void CWebEngineBrowser::PrintToPdf(const QPageLayout& layout, std::function<void(const QByteArray&)> take) {
    const QPointer<CWebEngineBrowser> self(this);
    m_page->printToPdf(
        [self, take = std::move(take)](const QByteArray& pdf) {
            if (self) {
                take(pdf);
            }
        },
        layout);
}

QImage CWebEngineBrowser::RenderPdf(const QByteArray& pdf, int dotsPerInch) {
    QBuffer bytes;
    bytes.setData(pdf);
    bytes.open(QIODevice::ReadOnly);
    QPdfDocument document;
    document.load(&bytes);
    if (document.pageCount() < 1) {
        return {};
    }
    constexpr double PointsPerInch = 72;
    const QSizeF points = document.pagePointSize(0);
    const QImage drawn = document.render(0, (points * dotsPerInch / PointsPerInch).toSize());
    QImage page(drawn.size(), QImage::Format_RGB32);
    page.fill(Qt::white);  // the document says nothing of the paper
    QPainter(&page).drawImage(0, 0, drawn);
    constexpr double InchesPerMetre = 1 / 0.0254;
    page.setDotsPerMeterX(qRound(dotsPerInch * InchesPerMetre));
    page.setDotsPerMeterY(qRound(dotsPerInch * InchesPerMetre));
    return page;
}

extern "C" Q_DECL_EXPORT CWebBrowser2* MakeDrovaneWebBrowser(const WebOptions& options, QWidget* parent) {
    PrepareEngine();
    return new CWebEngineBrowser(options, parent);
}
