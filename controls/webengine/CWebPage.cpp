#include "controls/webengine/CWebPage.h"

#include <QWebEngineSettings>

#include "controls/webengine/CSchemeHandler.h"

CWebPage::CWebPage(const WebOptions& options, QWebEngineProfile* profile, QObject* parent)
    : QWebEnginePage(profile, parent), m_options(options) {
    for (const auto attribute :
         {QWebEngineSettings::PluginsEnabled, QWebEngineSettings::LocalStorageEnabled,
          QWebEngineSettings::JavascriptCanOpenWindows, QWebEngineSettings::JavascriptCanAccessClipboard,
          QWebEngineSettings::LocalContentCanAccessFileUrls,
          QWebEngineSettings::LocalContentCanAccessRemoteUrls, QWebEngineSettings::FullScreenSupportEnabled,
          QWebEngineSettings::ScreenCaptureEnabled, QWebEngineSettings::DnsPrefetchEnabled,
          QWebEngineSettings::NavigateOnDropEnabled}) {
        settings()->setAttribute(attribute, false);
    }
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
            [this](const QUrl& origin, Feature feature) {
                setFeaturePermission(origin, feature, PermissionDeniedByUser);
            });
}

bool CWebPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
    if (type == NavigationTypeLinkClicked && url.scheme() == OwnScheme && url.host() == "open" &&
        m_options.Open) {
        m_options.Open(url.path());
        return false;
    }
    return isMainFrame && url == m_address && type != NavigationTypeLinkClicked;
}
