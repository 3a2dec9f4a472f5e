#include <QtTest>

#include "EngineSwitches.h"

/// What the environment tells the engine as it starts.
class tst_EngineSwitches : public QObject {
    Q_OBJECT

private slots:
    void oursBesideTheUsers_data();
    void oursBesideTheUsers();
    void pagesAreToldOfColours();
    void environmentIsAsBefore_data();
    void environmentIsAsBefore();

private:
    static constexpr char variable[] = "QTWEBENGINE_CHROMIUM_FLAGS";
    static constexpr char features[] = "--disable-features=";
    static QList<QByteArray> switches() { return qgetenv(variable).split(' '); }
};

void tst_EngineSwitches::oursBesideTheUsers_data()
{
    QTest::addColumn<QByteArray>("theirs");
    QTest::addColumn<QByteArray>("disabled");
    QTest::newRow("none") << QByteArray() << QByteArray("ParallelDownloading");
    QTest::newRow("others") << QByteArray("--a --b=c") << QByteArray("ParallelDownloading");
    QTest::newRow("some disabled")
        << QByteArray("--a --disable-features=X,Y --b") << QByteArray("ParallelDownloading,X,Y");
    QTest::newRow("the last counts") << QByteArray("--disable-features=X --disable-features=Y")
                                     << QByteArray("ParallelDownloading,Y");
}

/// Of a switch that is given twice the engine takes the last.
void tst_EngineSwitches::oursBesideTheUsers()
{
    QFETCH(QByteArray, theirs);
    QFETCH(QByteArray, disabled);
    qputenv(variable, theirs);
    const EngineSwitches ours;
    QByteArray last;
    for (const QByteArray &each : switches()) {
        if (each.startsWith(features))
            last = each.sliced(qsizetype(sizeof features) - 1);
    }
    QCOMPARE(last, disabled);
    QVERIFY(switches().contains("--blink-settings=allowFileAccessFromFileURLs=false"));
    for (const QByteArray &each : theirs.split(' ')) {
        if (!each.startsWith(features))
            QVERIFY(each.isEmpty() || switches().contains(each));
    }
}

void tst_EngineSwitches::pagesAreToldOfColours()
{
    qunsetenv(variable);
    const QByteArray plain = "--blink-settings=allowFileAccessFromFileURLs=false";
    {
        const EngineSwitches dark(EngineSwitches::Pages::Dark);
        QVERIFY(switches().contains(plain + ",preferredColorScheme=0"));
    }
    const EngineSwitches light(EngineSwitches::Pages::Light);
    QVERIFY(switches().contains(plain + ",preferredColorScheme=1"));
}

void tst_EngineSwitches::environmentIsAsBefore_data()
{
    QTest::addColumn<bool>("isSet");
    QTest::newRow("set") << true;
    QTest::newRow("not set") << false;
}

void tst_EngineSwitches::environmentIsAsBefore()
{
    QFETCH(bool, isSet);
    qunsetenv(variable);
    if (isSet)
        qputenv(variable, "--a");
    {
        const EngineSwitches ours;
        QVERIFY(qgetenv(variable).contains("ParallelDownloading"));
    }
    QCOMPARE(qEnvironmentVariableIsSet(variable), isSet);
    QCOMPARE(qgetenv(variable), isSet ? QByteArray("--a") : QByteArray());
}

QTEST_GUILESS_MAIN(tst_EngineSwitches)
#include "tst_engineswitches.moc"
