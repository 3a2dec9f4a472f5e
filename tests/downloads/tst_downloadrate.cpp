#include "DownloadRate.h"

#include <QTest>

namespace {
constexpr qint64 second = 1000;
}

class TestDownloadRate : public QObject {
    Q_OBJECT

private slots:
    void unknownAtFirst()
    {
        DownloadRate rate;
        QCOMPARE(rate.perSecond(), 0);
        rate.note(500, 0);
        QCOMPARE(rate.perSecond(), 0);
        QCOMPARE(rate.secondsLeft(1000), -1);
    }

    void steady()
    {
        DownloadRate rate;
        for (int i = 0; i <= 20; ++i)
            rate.note(i * 1000, i * second);
        QCOMPARE(rate.perSecond(), 1000);
        QCOMPARE(rate.secondsLeft(30'000), 10);
        QCOMPARE(rate.secondsLeft(20'001), 1);
        QCOMPARE(rate.secondsLeft(20'000), 0);
    }

    void followsAChange()
    {
        DownloadRate rate;
        for (int i = 0; i <= 20; ++i)
            rate.note(i * 1000, i * second);
        rate.note(20'000, 23 * second);
        QVERIFY(rate.perSecond() < 500);
        rate.note(20'000, 60 * second);
        QCOMPARE(rate.secondsLeft(30'000), -1);
    }

    void burstsCountAsOne()
    {
        DownloadRate rate;
        rate.note(0, 0);
        for (int i = 1; i < 100; ++i)
            rate.note(i, i);
        QCOMPARE(rate.perSecond(), 0);
        rate.note(200, 200);
        QVERIFY(rate.perSecond() > 900);
        QVERIFY(rate.perSecond() < 1100);
    }

    void lessThanThereWasBeginsAnew()
    {
        DownloadRate rate;
        rate.note(0, 0);
        rate.note(5000, second);
        rate.note(100, 2 * second);
        QCOMPARE(rate.perSecond(), 0);
        rate.note(300, 3 * second);
        QCOMPARE(rate.perSecond(), 200);
    }
};

QTEST_GUILESS_MAIN(TestDownloadRate)
#include "tst_downloadrate.moc"
