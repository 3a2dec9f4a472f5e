#include <QtTest>

#include "DeskPlaces.h"

/// Where windows are put, whatever a file says.
class tst_DeskPlaces : public QObject {
    Q_OBJECT

private slots:
    void inside_data();
    void inside();
    void alwaysWithinReach();
    void onScreen_data();
    void onScreen();
};

void tst_DeskPlaces::inside_data()
{
    QTest::addColumn<QRect>("place");
    QTest::addColumn<QRect>("expected");
    const auto same = [](const char *name, const QRect &place) {
        QTest::newRow(name) << place << place;
    };
    same("inside", {10, 20, 300, 200});
    same("partly outside", {-200, -5, 300, 200});
    same("beyond the other edges", {900, 700, 300, 200});
    same("larger than the area", {0, 0, 1500, 900});
    QTest::newRow("left of all") << QRect(-5000, 0, 300, 200) << QRect(-220, 0, 300, 200);
    QTest::newRow("right of all") << QRect(5000, 0, 300, 200) << QRect(920, 0, 300, 200);
    QTest::newRow("above all") << QRect(0, -5000, 300, 200) << QRect(0, -10, 300, 200);
    QTest::newRow("below all") << QRect(0, 5000, 300, 200) << QRect(0, 760, 300, 200);
    QTest::newRow("far too large") << QRect(0, 0, 30000, 20000) << QRect(0, 0, 1000, 800);
    QTest::newRow("a point") << QRect(0, 0, 1, 1) << QRect(0, 0, 80, 20);
}

void tst_DeskPlaces::inside()
{
    QFETCH(QRect, place);
    QTEST(DeskPlaces::inside(place, QSize(1000, 800), 20), "expected");
}

/// Also in an area that has hardly any room.
void tst_DeskPlaces::alwaysWithinReach()
{
    for (const int x : {-32767, -100, 0, 100, 32767}) {
        for (const int length : {1, 50, 400, 32767}) {
            for (const int area : {0, 1, 30, 500, 4000}) {
                const QRect place =
                    DeskPlaces::inside(QRect(x, x, length, length), QSize(area, area), 20);
                QVERIFY(place.isValid());
                QVERIFY(place.right() >= 0 && place.top() >= -10);
                QVERIFY(area < 200 || (place.left() < area && place.top() < area));
                QVERIFY(place.width() <= std::max(2 * area, 80));
            }
        }
    }
}

void tst_DeskPlaces::onScreen_data()
{
    QTest::addColumn<QRect>("place");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("on it") << QRect(1000, 50, 900, 700) << QRect(1000, 50, 900, 700);
    QTest::newRow("larger") << QRect(-32767, -32767, 32767, 32767) << QRect(1000, 0, 1920, 1080);
    QTest::newRow("another screen's") << QRect(0, 2000, 900, 700) << QRect(1000, 380, 900, 700);
    QTest::newRow("beyond") << QRect(32767, -5, 900, 700) << QRect(2020, 0, 900, 700);
}

void tst_DeskPlaces::onScreen()
{
    QFETCH(QRect, place);
    QTEST(DeskPlaces::onScreen(place, QRect(1000, 0, 1920, 1080)), "expected");
}

QTEST_GUILESS_MAIN(tst_DeskPlaces)
#include "tst_deskplaces.moc"
