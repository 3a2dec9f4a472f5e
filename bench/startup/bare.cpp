// The least a page needs: what start-up time, memory and processor use are measured against.
// Arguments: the address, and the width and height of the view in pixels.
#include <QApplication>
#include <QWebEngineView>
#include <cstdlib>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QWebEngineView view;
    view.resize(argc > 3 ? QSize(std::atoi(argv[2]), std::atoi(argv[3])) : QSize(1100, 760));
    view.load(QUrl(QString::fromLocal8Bit(argc > 1 ? argv[1] : "about:blank")));
    view.show();
    return QCoreApplication::exec();
}
