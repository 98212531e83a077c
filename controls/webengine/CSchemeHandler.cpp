#include "controls/webengine/CSchemeHandler.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QUrl>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineUrlRequestJob>

void CSchemeHandler::requestStarted(QWebEngineUrlRequestJob* job) {
    const QUrl url = job->requestUrl();
    const WebReply reply = job->requestMethod() == "GET" && m_options.Serve
                               ? m_options.Serve(url.host(), url.path(QUrl::FullyEncoded))
                               : WebReply();
    if (reply.Type.isEmpty()) {
        job->fail(QWebEngineUrlRequestJob::UrlNotFound);
        return;
    }
    auto* bytes = new QBuffer(job);
    bytes->setData(reply.Bytes);
    job->reply(reply.Type, bytes);
}

CRequestGate::CRequestGate(const WebOptions& options, QObject* parent)
    : QWebEngineUrlRequestInterceptor(parent) {
    for (const QString& origin : options.Origins) {
        m_patterns.append(QRegularExpression::escape(origin).replace(QStringLiteral("\\{s\\}"),
                                                                     QStringLiteral("[a-z0-9]+")));
    }
}

void CRequestGate::interceptRequest(QWebEngineUrlRequestInfo& info) {
    const QUrl url = info.requestUrl();
    if (url.scheme() == OwnScheme) {
        return;
    }
    const QString origin =
        url.adjusted(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment)
            .toString();
    bool allowed = false;
    for (const QString& pattern : m_patterns) {
        allowed = allowed ||
                  QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(origin).hasMatch();
    }
    info.block(!allowed || info.resourceType() != QWebEngineUrlRequestInfo::ResourceTypeImage);
}
