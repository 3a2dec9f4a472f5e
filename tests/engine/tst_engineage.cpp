#include "EngineAge.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_engineage : public QObject {
    Q_OBJECT

private slots:
    void released_data();
    void released();
    void yearIsTheLimit();
    void thisEngineHasADate();
};

void tst_engineage::released_data()
{
    QTest::addColumn<QString>("chromium");
    QTest::addColumn<QDate>("expected");
    QTest::newRow("in the table") << u"108.0.5359.179"_s << QDate(2022, 11, 1);
    QTest::newRow("by its number alone too early") << u"132.0.6834.111"_s << QDate(2025, 1, 1);
    QTest::newRow("between two") << u"131.0.6778.264"_s << QDate(2024, 11, 1);
    QTest::newRow("after the last") << u"145.0.1.2"_s << QDate(2026, 2, 1);
    QTest::newRow("major alone") << u"94"_s << QDate(2021, 9, 1);
    QTest::newRow("before the first") << u"83.0.4103.122"_s << QDate();
    QTest::newRow("nothing") << QString() << QDate();
    QTest::newRow("no version") << u"unknown"_s << QDate();
}

void tst_engineage::released()
{
    QFETCH(QString, chromium);
    QTEST(EngineAge::released(chromium), "expected");
}

void tst_engineage::yearIsTheLimit()
{
    const QDate day(2024, 11, 1);
    QVERIFY(!EngineAge::isOld(day, day));
    QVERIFY(!EngineAge::isOld(day, QDate(2025, 11, 1)));
    QVERIFY(EngineAge::isOld(day, QDate(2025, 11, 2)));
    QVERIFY(!EngineAge::isOld(QDate(), QDate(2025, 11, 2)));
}

void tst_engineage::thisEngineHasADate()
{
    QVERIFY(EngineAge::ofEngine().isValid());
    QCOMPARE(EngineAge::versions().size(), 2);
    QVERIFY(EngineAge::versions().last().contains(EngineAge::ofEngine().toString(u"yyyy-MM"_s)));
}

QTEST_GUILESS_MAIN(tst_engineage)
#include "tst_engineage.moc"
