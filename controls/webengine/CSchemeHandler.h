// Everything that a page gets: the program's own scheme, and a gate for all other requests.
#pragma once

#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineUrlSchemeHandler>

#include "controls/CWebBrowser2.h"

inline constexpr const char* OwnScheme = "drovane";

class CSchemeHandler : public QWebEngineUrlSchemeHandler {
public:
    CSchemeHandler(const WebOptions& options, QObject* parent)
        : QWebEngineUrlSchemeHandler(parent), m_options(options) {}
    void requestStarted(QWebEngineUrlRequestJob* job) override;

private:
    const WebOptions& m_options;
};

// Lets requests of pictures to the given origins through, and nothing else that leaves the program.
class CRequestGate : public QWebEngineUrlRequestInterceptor {
public:
    CRequestGate(const WebOptions& options, QObject* parent);
    void interceptRequest(QWebEngineUrlRequestInfo& info) override;

private:
    QStringList m_patterns;  // regular expressions of origins
};
