// The least that many pages need: what opening a profile and holding many windows are measured
// against. Arguments: where the pages are, how many, and "maximized" for views that fill the frame.
#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString base = arguments.value(1);
    const int count = arguments.value(2).toInt();
    const bool maximized = arguments.value(3) == "maximized"_L1;
    QMainWindow frame;
    auto *area = new QMdiArea;
    frame.setCentralWidget(area);
    frame.resize(1100, 760);
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
