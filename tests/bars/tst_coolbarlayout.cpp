#include "CoolBarLayout.h"

#include <QTest>
#include <numeric>

using CoolBarLayout::Wish;

class tst_coolbarlayout : public QObject {
    Q_OBJECT

private slots:
    void fit_data();
    void fit();
};

void tst_coolbarlayout::fit_data()
{
    QTest::addColumn<QList<double>>("wanted");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("available");
    QTest::addColumn<QList<int>>("widths");
    using W = QList<double>;
    using P = QList<int>;
    QTest::newRow("no bands") << W{} << 20 << 500 << P{};
    QTest::newRow("one takes all") << W{50} << 20 << 500 << P{500};
    QTest::newRow("last stretches") << W{100, 50} << 20 << 500 << P{100, 400};
    QTest::newRow("last shrinks") << W{100, 450} << 20 << 500 << P{100, 400};
    QTest::newRow("zero") << W{0, 0, 0} << 20 << 500 << P{20, 20, 460};
    QTest::newRow("negative") << W{-3000, 100} << 20 << 500 << P{20, 480};
    QTest::newRow("huge first") << W{1e7, 100, 100} << 20 << 500 << P{460, 20, 20};
    QTest::newRow("huge middle") << W{100, 1e300, 100} << 20 << 500 << P{100, 380, 20};
    QTest::newRow("all huge") << W{1e7, 1e7, 1e7} << 20 << 500 << P{460, 20, 20};
    QTest::newRow("minimums do not fit") << W{1e7, 1e7, 1e7} << 20 << 30 << P{10, 10, 10};
    QTest::newRow("rounding goes to the last") << W{0, 0, 0} << 20 << 32 << P{10, 10, 12};
    QTest::newRow("no room") << W{100, 100} << 20 << 0 << P{0, 0};
    QTest::newRow("less than no room") << W{100, 100} << 20 << -5 << P{0, 0};
}

void tst_coolbarlayout::fit()
{
    QFETCH(QList<double>, wanted);
    QFETCH(int, minimum);
    QFETCH(int, available);
    QFETCH(QList<int>, widths);
    QList<Wish> wishes;
    for (const double width : wanted)
        wishes.append({width, minimum});
    QCOMPARE(CoolBarLayout::fit(wishes, available), widths);
}

QTEST_APPLESS_MAIN(tst_coolbarlayout)
#include "tst_coolbarlayout.moc"
