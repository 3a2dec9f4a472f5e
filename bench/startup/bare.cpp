// The least a page needs: what start-up time and memory are measured against.
#include <QApplication>
#include <QWebEngineView>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QWebEngineView view;
    view.resize(1100, 760);
    view.load(QUrl(QString::fromLocal8Bit(argc > 1 ? argv[1] : "about:blank")));
    view.show();
    return QCoreApplication::exec();
}
