#pragma once

#include "BlockedList.h"
#include "FakeFrame.h"
#include "PopupCommands.h"
#include "QtWebBrowser.h"
#include "TempAppFolder.h"
#include "TestServer.h"
#include "WebPage.h"

#include <QTest>
#include <QWebEngineView>
#include <memory>
#include <optional>

/// A frame with popup control, a web server, and an application folder with a list of blocked
/// addresses, for pages that ask for windows.
class PopupScene {
public:
    /// Milliseconds for what a busy machine may be slow with.
    static constexpr int patience = 30000;

    PopupScene()
    {
        registerPopupCommands(frame);
        loadBlockedList();
    }
    ~PopupScene() { check(QStringLiteral("mnuToolsKillPopUps"), false); }
    PopupScene(const PopupScene &) = delete;
    PopupScene &operator=(const PopupScene &) = delete;

    bool isReady() const { return folder.isValid() && server.isListening(); }

    void check(const QString &item, bool on) const { frame.menuItem(item)->setChecked(on); }
    void kill(bool on = true) const { check(QStringLiteral("mnuToolsKillPopUps"), on); }
    void smart(bool on = true) const { check(QStringLiteral("mnuToolsSmartPopupKiller"), on); }
    void block(const QString &patterns) const
    {
        folder.write(QStringLiteral("AppData/PopupURLs.txt"), patterns.toUtf8());
        loadBlockedList();
    }

    /// A window of the user's on a page with this markup, arrived.
    BrowserWindow *openPage(const QByteArray &html, bool maximized = false)
    {
        server.page("/opener", "<title>opener</title><body>" + html);
        BrowserWindow *form = frame.open(server.url(QStringLiteral("/opener")), maximized);
        if (!maximized)
            form->resize(600, 400);
        waitUntilLoaded(form);
        return form;
    }
    static void waitUntilLoaded(const BrowserWindow *form)
    {
        [&] {
            QTRY_VERIFY_WITH_TIMEOUT(form->browser()->hasDocument() && !form->browser()->isBusy(),
                                     patience);
        }();
    }
    static QtWebBrowser *control(const BrowserWindow *form)
    {
        return qobject_cast<QtWebBrowser *>(form->browser());
    }
    static QVariant script(const BrowserWindow *form, const QString &code)
    {
        // An answer may come when nobody waits any more.
        const auto result = std::make_shared<std::optional<QVariant>>();
        control(form)->page()->runJavaScript(code,
                                             [result](const QVariant &value) { *result = value; });
        [&] { QTRY_VERIFY_WITH_TIMEOUT(*result, patience); }();
        return result->value_or(QVariant());
    }
    /// Presses the mouse on the element with that id, as the user does.
    static void click(const BrowserWindow *form, const QString &id,
                      Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {})
    {
        QWebEngineView *view = QWebEngineView::forPage(control(form)->page());
        QVERIFY(view && view->focusProxy());
        // The engine drops what is done to a page before that is painted.
        const auto paints = QStringLiteral("performance.getEntriesByType('paint').length");
        [&] { QTRY_VERIFY_WITH_TIMEOUT(script(form, paints).toInt() > 0, patience); }();
        const QVariantList place =
            script(form,
                   QStringLiteral("var r=document.getElementById('%1').getBoundingClientRect();"
                                  "[r.left+r.width/2, r.top+r.height/2]")
                       .arg(id))
                .toList();
        QCOMPARE(place.size(), 2);
        const QPoint point(place.at(0).toInt(), place.at(1).toInt());
        QTest::mouseClick(view->focusProxy(), button, keys, point);
    }
    /// The windows but the first.
    static QList<BrowserWindow *> popups() { return browserForms().mid(1); }
    /// The newest window's control once a second window is there.
    static BrowserWindow *waitForPopup()
    {
        [] { QTRY_COMPARE(popups().size(), 1); }();
        return popups().value(0);
    }

    TempAppFolder folder;
    TestServer server;
    FakeFrame frame;
};
