// The least that pages need: what the program is measured against.
//
// bare view ADDRESS [WIDTH HEIGHT]: one page in a view of that many pixels.
// bare download ADDRESS FOLDER: one page, and the files that it hands over.
// bare views BASE COUNT [maximized]: the pages BASE1, BASE2 and so on in windows of a frame,
// filling it if wanted.
#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>
#include <QWebEngineDownloadRequest>
#include <QWebEngineProfile>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize frameSize(1100, 760);

int runOne(const QStringList &arguments)
{
    QWebEngineView view;
    const bool sized = arguments.size() > 2;
    view.resize(sized ? QSize(arguments.at(1).toInt(), arguments.at(2).toInt()) : frameSize);
    view.load(QUrl(arguments.value(0)));
    view.show();
    return QCoreApplication::exec();
}

int runDownload(const QStringList &arguments)
{
    QWebEngineView view;
    view.resize(frameSize);
    QObject::connect(view.page()->profile(), &QWebEngineProfile::downloadRequested, &view,
                     [&arguments](QWebEngineDownloadRequest *request) {
                         request->setDownloadDirectory(arguments.value(1));
                         request->accept();
                     });
    view.load(QUrl(arguments.value(0)));
    view.show();
    return QCoreApplication::exec();
}

int runMany(const QStringList &arguments)
{
    const QString base = arguments.value(0);
    const int count = arguments.value(1).toInt();
    const bool maximized = arguments.value(2) == "maximized"_L1;
    QMainWindow frame;
    auto *area = new QMdiArea;
    frame.setCentralWidget(area);
    frame.resize(frameSize);
    frame.show();
    auto *first = new QWebEngineView;
    QMdiSubWindow *window = area->addSubWindow(first);
    maximized ? window->showMaximized() : window->show();
    first->load(QUrl(u"about:blank"_s));
    // The engine is up by then, as it is when a user opens a profile.
    constexpr int settleMs = 1000;
    QTimer::singleShot(settleMs, area, [area, base, count, maximized] {
        for (int i = 1; i <= count; ++i) {
            auto *view = new QWebEngineView;
            area->addSubWindow(view)->show();
            view->load(QUrl(base + QString::number(i)));
        }
        if (!maximized)
            area->cascadeSubWindows();
    });
    return QCoreApplication::exec();
}

}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "download"_L1)
        return runDownload(arguments.mid(2));
    const bool many = arguments.value(1) == "views"_L1;
    return many ? runMany(arguments.mid(2)) : runOne(arguments.mid(2));
}
