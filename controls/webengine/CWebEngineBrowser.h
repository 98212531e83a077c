// The browser, by the toolkit's engine.
#pragma once

#include <QWidget>

#include "controls/CWebBrowser2.h"

class CWebPage;
class QWebEngineProfile;
class QWebEngineView;

class CWebEngineBrowser : public QWidget, public CWebBrowser2 {
public:
    CWebEngineBrowser(WebOptions options, QWidget* parent);
    ~CWebEngineBrowser() override;

    QWidget* Widget() override { return this; }
    void Navigate2(const QString& address) override;
    int ReadyState() const override { return m_readyState; }
    bool RunScript(const QString& script) override;
    bool ReadScriptVariable(const QString& expression, std::function<void(const QVariant&)> take) override;
    void PrintToPdf(const QPageLayout& layout, std::function<void(const QByteArray&)> take) override;
    QImage RenderPdf(const QByteArray& pdf, int dotsPerInch) override;

private:
    void SetReadyState(int state);

    WebOptions m_options;
    QWebEngineView* m_view;
    QWebEngineProfile* m_profile;
    CWebPage* m_page;
    int m_readyState = 0;
};
