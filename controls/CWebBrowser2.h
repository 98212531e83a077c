// A page of the program's own in a window, such as the map. The engine is hundreds of megabytes of library
// and several processes, so it lies in a part of the program that is loaded when the first page is made.
//
// Nothing here waits: what a script gives comes to a callback, on the thread of windows, or never if the page
// goes before.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QPageLayout>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <optional>

class QWidget;

// What the program's own scheme answers. No type: there is no such thing.
struct WebReply {
    QByteArray Type;  // media type
    QByteArray Bytes;
};

struct WebOptions {
    // Serves drovane://host/path; called on the thread of windows.
    std::function<WebReply(const QString& host, const QString& path)> Serve;
    // "https://tiles.example.org:8080": where else requests may go; {s} in a host stands for letters.
    QStringList Origins;
    // A link of the scheme with the host "open" was clicked; nothing is ever navigated to.
    std::function<void(const QString& path)> Open;
};

class CWebBrowser2 {
public:
    static constexpr int Complete = 4;

    virtual ~CWebBrowser2() = default;
    // Owned by its parent, and this with it.
    virtual QWidget* Widget() = 0;

    virtual void Navigate2(const QString& address) = 0;
    // Complete once a page has been loaded, or couldn't be.
    virtual int ReadyState() const = 0;
    // Called whenever that changes.
    std::function<void()> OnReadyState;

    // False, with nothing run, unless the page is complete. How the script ends is told to nobody.
    virtual bool RunScript(const QString& script) = 0;
    // The value of an expression; invalid if it fails. False as above.
    virtual bool ReadScriptVariable(const QString& expression, std::function<void(const QVariant&)> take) = 0;

    // Empty on failure.
    virtual void PrintToPdf(const QPageLayout& layout, std::function<void(const QByteArray&)> take) = 0;
    // The first page of such a document.
    virtual QImage RenderPdf(const QByteArray& pdf, int dotsPerInch) = 0;
};

// `library` is the path of the part, without its ending. Null, with the reason, if it can't be loaded.
CWebBrowser2* MakeWebBrowser(const QString& library, WebOptions options, QWidget* parent, QString& reason);
