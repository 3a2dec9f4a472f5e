#pragma once

#include <QNetworkProxy>
#include <QPushButton>
#include <QWebEngineScript>
#include <optional>

#include "EngineOptions.h"
#include "EngineProfile.h"
#include "QtWebBrowser.h"
#include "Session.h"
#include "WebPage.h"

/// The whole program with an engine that is made anew for each test, as its options say, and the
/// dialog of internet options.
class EngineSession {
protected:
    void begin()
    {
        // A machine that has the platform's control panel must not start it.
        qputenv("PATH", "/nowhere");
        m_session = std::make_unique<Session>();
        QVERIFY(m_session->folder.isValid() && m_session->server.isListening());
    }
    void finish()
    {
        stop();
        m_session.reset();
    }

    /// Starts the program with options, on the server's home page.
    void start(const EngineOptions &options = {})
    {
        if (options != EngineOptions())
            QVERIFY(options.write());
        m_session->start();
        QTRY_VERIFY(m_session->shows(url(QStringLiteral("/home"))));
    }
    /// Ends program and engine; the folders stay.
    void stop()
    {
        m_session->end();
        dropEngineProfile();
        QNetworkProxyFactory::setUseSystemConfiguration(true);
    }

    static QWidget *form() { return Forms::named("frmInternetOptions").value(0); }
    template <typename Control> static Control *find(const char *name)
    {
        return form()->findChild<Control *>(QLatin1String(name));
    }
    static void press(const char *name)
    {
        QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton);
    }
    void openGeneral() const { m_session->choose("mnuToolsInternetOptions"); }
    void openAdvanced() const { m_session->choose("mnuToolsAdvancedInternetOptions"); }
    static void save()
    {
        press("cmdSave");
        QTRY_VERIFY(!form());
    }

    QString url(const QString &path) const { return m_session->server.url(path); }
    void go(const QString &address) const
    {
        m_session->frame->navigateActive(address);
        QTRY_VERIFY2(m_session->shows(address), qPrintable(address));
    }
    /// What `code` gives in a world of the program's own, with scripts switched off too.
    QString script(const QString &code) const
    {
        auto *browser = qobject_cast<QtWebBrowser *>(m_session->active()->browser());
        // An answer may come when nobody waits for it any more.
        auto result = std::make_shared<std::optional<QString>>();
        browser->page()->runJavaScript(
            code, QWebEngineScript::ApplicationWorld,
            [result](const QVariant &value) { *result = value.toString(); });
        [&] { QTRY_VERIFY(*result); }();
        return result->value_or(QString());
    }
    /// A header of the first request for the page "/one".
    QByteArray header(const char *name) const
    {
        return m_session->server.requests("/one").value(0).headers.value(name);
    }

    std::unique_ptr<Session> m_session;
};
