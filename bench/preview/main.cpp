// How long the preview of a document of 20 sheets takes, from the command to its first painting,
// against a bare view that makes the same document's PDF; in turn. Ends with 1 over the limit.
#include "AppFolder.h"
#include "EngineProfile.h"
#include "EngineStart.h"
#include "PageCommands.h"
#include "PageSetup.h"
#include "PrintPreview.h"
#include "WebBrowser.h"
#include "WebPage.h"
#include "WebView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QPdfDocument>
#include <QPdfView>
#include <QTemporaryDir>
#include <QWebEngineView>
#include <algorithm>
#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int sheets = 20;
constexpr int rounds = 15;
constexpr double ratioLimit = 1.10;
constexpr QSize size(1000, 700);

QByteArray document()
{
    const QByteArray words =
        QByteArray("The quick brown fox jumps over the lazy dog, and a second time. ").repeated(6);
    QByteArray html = "<!doctype html><meta charset=utf-8><title>Twenty sheets</title>";
    for (int sheet = 1; sheet <= sheets; ++sheet) {
        html += "<h1 style='break-before:page'>Sheet " + QByteArray::number(sheet) + "</h1>";
        for (int i = 0; i < 6; ++i)
            html += "<p>" + words + "</p>";
    }
    return html;
}

QUrl write(const QTemporaryDir &folder)
{
    QFile file(folder.filePath(u"twenty.html"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(document()) < 0)
        qFatal("no document");
    return QUrl::fromLocalFile(file.fileName());
}

/// Lets events run until `done`; ends the program when that takes too long.
void waitUntil(const char *what, const std::function<bool()> &done)
{
    constexpr int limitMs = 60'000;
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > limitMs)
            qFatal("waited in vain for %s", what);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

double milliseconds(const QElapsedTimer &clock)
{
    return double(clock.nsecsElapsed()) / 1e6;
}

double bareMs(QWebEngineView &view)
{
    bool there = false;
    double taken = 0;
    QElapsedTimer clock;
    clock.start();
    view.page()->printToPdf(
        [&](const QByteArray &pdf) {
            taken = milliseconds(clock);
            there = !pdf.isEmpty();
        },
        PageSetup::layout());
    waitUntil("the PDF", [&] { return there; });
    return taken;
}

PrintPreview *openPreview()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (auto *preview = qobject_cast<PrintPreview *>(window))
            return preview;
    }
    return nullptr;
}

double previewMs(WebPage &page)
{
    double taken = 0;
    QElapsedTimer clock;
    clock.start();
    PageCommands::run(&page, OleCmd::PrintPreview, nullptr, nullptr);
    const QPointer<PrintPreview> preview = openPreview();
    if (!preview)
        qFatal("no preview");
    QObject::connect(preview, &PrintPreview::renewed, preview, [&] {
        preview->findChild<QPdfView *>()->viewport()->repaint();
        taken = milliseconds(clock);
    });
    waitUntil("the preview", [&] { return taken > 0; });
    if (preview->document().pageCount() != sheets)
        qFatal("%d sheets", preview->document().pageCount());
    preview->close();
    waitUntil("the preview to close", [&] { return !preview; });
    return taken;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

void load(QWebEngineView &view, const QUrl &url)
{
    bool loaded = false;
    QObject::connect(&view, &QWebEngineView::loadFinished, &view, [&] { loaded = true; });
    view.resize(size);
    view.show();
    view.load(url);
    waitUntil("the page", [&] { return loaded; });
    QObject::disconnect(&view, &QWebEngineView::loadFinished, &view, nullptr);
}

int measure(const QUrl &url)
{
    QWebEngineView bare;
    load(bare, url);
    QWidget window;
    WebPage page(engineProfile());
    WebView view(&page, &window);
    view.resize(size);
    window.resize(size);
    window.show();
    load(view, url);

    bareMs(bare);
    previewMs(page);
    QList<double> engine, preview;
    for (int round = 0; round < rounds; ++round) {
        engine.append(bareMs(bare));
        preview.append(previewMs(page));
    }
    const double ratio = median(preview) / median(engine);
    const bool kept = ratio <= ratioLimit;
    std::printf("preview: medians of %d rounds; the engine's PDF of %d sheets %.1f ms, preview "
                "%.1f ms, ratio %.3f (limit %.2f)%s\n",
                rounds, sheets, median(engine), median(preview), ratio, ratioLimit,
                kept ? "" : " OVER");
    return kept ? 0 : 1;
}

}

int main(int argc, char **argv)
{
    const QTemporaryDir folder;
    for (const char *variable : {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"})
        qputenv(variable, QFile::encodeName(folder.filePath(QLatin1String(variable))));
    chooseRenderingBackend();
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    AppFolder::setPath(folder.path());
    startEngine();
    const int status = measure(write(folder));
    stopEngine();
    return status;
}
