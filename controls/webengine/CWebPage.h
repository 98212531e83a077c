// A page that stays where it is: no other address, no further window, no download, no box, no permission.
#pragma once

#include <QWebEnginePage>

#include "controls/CWebBrowser2.h"

class CWebPage : public QWebEnginePage {
public:
    CWebPage(const WebOptions& options, QWebEngineProfile* profile, QObject* parent);
    void Allow(const QUrl& address) { m_address = address; }

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    QWebEnginePage* createWindow(WebWindowType) override { return nullptr; }
    void javaScriptAlert(const QUrl&, const QString&) override {}
    bool javaScriptConfirm(const QUrl&, const QString&) override { return false; }
    bool javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) override { return false; }
    QStringList chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) override { return {}; }
    // What a page complains of is of no use to the operator.
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int,
                                  const QString&) override {}

private:
    const WebOptions& m_options;
    QUrl m_address;
};
