#include "ScriptedPlace.h"

#include <QTest>

class tst_scriptedplace : public QObject {
    Q_OBJECT

private slots:
    void requests_data();
    void requests();
};

void tst_scriptedplace::requests_data()
{
    QTest::addColumn<QString>("request");
    QTest::addColumn<QRect>("place");
    const QRect before(10, 20, 400, 300);
    const auto row = [](const char *request, const QRect &place) {
        QTest::newRow(request) << QString::fromLatin1(request) << place;
    };
    row("moveTo,30,-40", QRect(30, -40, 400, 300));
    row("moveBy,30,-40", QRect(40, -20, 400, 300));
    row("resizeTo,222,111", QRect(10, 20, 222, 111));
    row("resizeBy,-50,60", QRect(10, 20, 350, 360));
    row("resizeTo,0,-5", QRect(10, 20, 100, 100));
    row("resizeBy,-2147483648,2147483647", QRect(10, 20, 100, 30000));
    row("moveBy,2147483647,-2147483648", QRect(30000, -30000, 400, 300));
    row("resizeTo,2147483648,1", before);
    row("resizeTo,200", before);
    row("resizeTo,200,100,5", before);
    row("close,1,2", before);
    row("", before);
}

void tst_scriptedplace::requests()
{
    QFETCH(const QString, request);
    QTEST(scriptedPlace(QRect(10, 20, 400, 300), request), "place");
}

QTEST_GUILESS_MAIN(tst_scriptedplace)
#include "tst_scriptedplace.moc"
