#pragma once

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QtTest>
#include <memory>

#include "AddressBox.h"
#include "AllCommands.h"
#include "BrowserWindow.h"
#include "Forms.h"
#include "MainWindow.h"
#include "StartUp.h"
#include "TabStrip.h"
#include "TempAppFolder.h"
#include "TestServer.h"
#include "WebBrowser.h"

/// The whole program in a folder of its own, with a server to browse. The settings ask for no
/// splash and no exit question, and make the server's "/home" the home page, unless a test writes
/// others before it starts the program.
class Session {
public:
    Session()
    {
        folder.writeSettings("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\nHome-URL="
                             + server.url(QStringLiteral("/home")).toUtf8() + "\r\n");
        server.page("/home", "<title>home page</title><h1>Home</h1>");
        server.page("/one", "<title>the quick brown fox</title><a href='/two'>two</a>");
        server.page("/two", "<title>Two</title><p>Second page</p>");
        QApplication::clipboard()->setText(QStringLiteral("something"));
    }

    ~Session() { end(); }

    void start(const QString &commandLine = {})
    {
        frame = std::make_unique<MainWindow>();
        registerAllCommands(*frame);
        frame->setCommandLine(commandLine);
        startUp(*frame);
    }

    /// The windows go with the frame; the engine's pages at the next turn of the event loop.
    void end()
    {
        frame.reset();
        for (QWidget *form : Forms::all())
            delete form;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    BrowserWindow *active() const { return activeBrowser(*frame); }
    int windows() const { return int(browserForms().size()); }
    QString location() const { return active()->browser()->locationUrl(); }
    AddressBox &address() const
    {
        return *frame->findChild<AddressBox *>(QStringLiteral("brwURL1"));
    }
    TabStrip &tabs() const { return *frame->findChild<TabStrip *>(); }
    QAction *item(const char *name) const { return frame->menuItem(QString::fromLatin1(name)); }
    void choose(const char *name) const { item(name)->trigger(); }
    /// True once the active window shows the page at `url` and has finished loading it.
    bool shows(const QString &url) const
    {
        return active() && location() == url && !active()->browser()->isBusy()
            && active()->browser()->hasDocument();
    }
    /// Types into the address bar's field, as a user does.
    void typeAddress(const QString &text) const
    {
        auto *edit = frame->findChild<QLineEdit *>();
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, text);
        QTest::keyClick(edit, Qt::Key_Return);
    }

    TempAppFolder folder;
    TestServer server;
    std::unique_ptr<MainWindow> frame;
};
