#include <QApplication>
#include <QScreen>
#include <QtTest>

#include "FakeWebBrowser.h"
#include "ProgramWithoutEngine.h"
#include "SourceWindow.h"

/// The program on a screen that has less room than its windows like best, as small ones with large
/// letters have.
class tst_SmallScreen : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void firstSizeFits_data();
    void firstSizeFits();

private:
    static QRect room() { return QGuiApplication::primaryScreen()->availableGeometry(); }
};

void tst_SmallScreen::initTestCase()
{
    QVERIFY2(room().width() < 900 && room().height() < 700, "the screen is a small one");
}

void tst_SmallScreen::firstSizeFits_data()
{
    QTest::addColumn<bool>("isFrame");
    QTest::newRow("frame") << true;
    QTest::newRow("source") << false;
}

void tst_SmallScreen::firstSizeFits()
{
    QFETCH(bool, isFrame);
    ProgramWithoutEngine program;
    program.start();
    QWidget *window = program.frame.get();
    if (!isFrame)
        window = SourceWindow::openOn(QStringLiteral("<p>"), QStringLiteral("http://one/"));
    QVERIFY(QTest::qWaitForWindowExposed(window));
    const auto fits = [window] { return room().contains(window->frameGeometry()); };
    QTRY_VERIFY2(fits(), qPrintable(QDebug::toString(window->frameGeometry())));
    QVERIFY2(window->height() > room().height() * 3 / 4, "and takes what there is");
}

int main(int argc, char **argv)
{
    qputenv("QT_SCALE_FACTOR", "1.5");
    QApplication app(argc, argv);
    tst_SmallScreen test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_smallscreen.moc"
