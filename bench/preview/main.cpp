// How long the preview of a document of 20 sheets takes, from the command to its first painting,
// against a bare view that makes the same document's PDF; in turn. Ends with 1 over the limit.
#include "AppFolder.h"
#include "EngineProfile.h"
#include "EngineStart.h"
#include "PageCommands.h"
#include "PageSetup.h"
#include "Places.h"
#include "PrintPreview.h"
#include "Report.h"
#include "Taken.h"
#include "WaitUntil.h"
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
    Report report;
    report.note(
        u"medians of %1 rounds; the engine's PDF of %2 sheets %3 ms, preview %4 ms"_s.arg(rounds)
            .arg(sheets)
            .arg(median(engine), 0, 'f', 1)
            .arg(median(preview), 0, 'f', 1));
    report.atMost(u"preview against the engine's PDF"_s, median(preview) / median(engine),
                  ratioLimit, u"times"_s);
    return report.failed() ? 1 : 0;
}

}

int main(int argc, char **argv)
{
    const FreshHome home;
    home.use();
    const QTemporaryDir folder;
    chooseRenderingBackend();
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    AppFolder::setPath(folder.path());
    startEngine();
    const int status = measure(write(folder));
    stopEngine();
    return status;
}
