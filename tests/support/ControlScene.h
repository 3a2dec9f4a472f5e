#pragma once

#include "QtWebBrowser.h"
#include "RecordedEvents.h"
#include "TestServer.h"
#include "WebPage.h"

#include <QTest>
#include <memory>
#include <optional>

/// One engine control in a window of its own, its events, and a server.
struct ControlScene {
    ControlScene()
    {
        window.resize(600, 400);
        browser = new QtWebBrowser(&window);
        browser->setEvents(&events);
        browser->widget()->setGeometry(window.rect());
        window.show();
    }

    /// Opens `url` and waits for its end.
    void open(const QString &url)
    {
        browser->navigate(url);
        waitFor(url);
    }
    /// Waits until the page at `url` is there as a whole.
    void waitFor(const QString &url)
    {
        QTRY_COMPARE(browser->locationUrl(), url);
        QTRY_VERIFY(!browser->isBusy());
    }
    /// What `code` gives in the page.
    QString script(const QString &code)
    {
        // The answer may come when nobody waits for it any longer.
        const auto answer = std::make_shared<std::optional<QString>>();
        browser->page()->runJavaScript(
            code, [answer](const QVariant &value) { *answer = value.toString(); });
        [&] { QTRY_VERIFY(answer->has_value()); }();
        return answer->value_or(QString());
    }

    TestServer server;
    RecordedEvents events;
    QWidget window;
    QtWebBrowser *browser = nullptr;
};
