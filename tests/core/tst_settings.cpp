#include "ProgramInfo.h"
#include "Settings.h"
#include "TempAppFolder.h"

#include <QTest>
#include <memory>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(const Settings::Switch *)
Q_DECLARE_METATYPE(std::optional<bool>)
Q_DECLARE_METATYPE(std::optional<double>)

/// The settings by their declarations: what is written, and what any text is read as.
class tst_settings : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_folder.reset(); }
    void switchesAreWrittenInTheirForm_data() { switchRows(); }
    void switchesAreWrittenInTheirForm();
    void missingSwitches_data() { switchRows(); }
    void missingSwitches();
    void formTellsWhoWrites();
    void storedSwitches_data();
    void storedSwitches();
    void storedNumbers_data();
    void storedNumbers();
    void numbersAreWrittenInDigits();
    void settingsOfBands();
    void texts();
    void entriesAreWrittenTogether();

private:
    static void switchRows();
    void store(const Settings::Switch &setting, const QString &text) const
    {
        QVERIFY(m_folder->setSetting(QString::fromLatin1(setting.section),
                                     QString::fromLatin1(setting.key), text));
    }
    QString stored(const char *section, const char *key) const
    {
        return m_folder->setting(QString::fromLatin1(section), QString::fromLatin1(key), u"none"_s);
    }

    std::unique_ptr<TempAppFolder> m_folder;
};

void tst_settings::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
}

void tst_settings::switchRows()
{
    QTest::addColumn<const Settings::Switch *>("setting");
    QSet<QByteArray> seen;
    for (const Settings::Switch *setting : Settings::switches) {
        QTest::newRow(setting->key) << setting;
        QVERIFY2(!seen.contains(setting->key), setting->key);
        seen.insert(setting->key);
    }
}

void tst_settings::switchesAreWrittenInTheirForm()
{
    QFETCH(const Settings::Switch *, setting);
    const bool inWords = setting->form == Settings::TrueFalse;
    QVERIFY(setting->write(true));
    QCOMPARE(stored(setting->section, setting->key), inWords ? u"True"_s : u"1"_s);
    QCOMPARE(setting->read(), std::optional(true));
    QVERIFY(setting->write(false));
    QCOMPARE(stored(setting->section, setting->key), inWords ? u"False"_s : u"0"_s);
    QCOMPARE(setting->read(), std::optional(false));
    QCOMPARE(setting->isOne(), false);
}

void tst_settings::missingSwitches()
{
    QFETCH(const Settings::Switch *, setting);
    QCOMPARE(setting->read(), setting->missing);
    if (setting->form == Settings::OneZero) {
        QCOMPARE(setting->isOne(), setting->missing.value_or(false));
        QVERIFY2(setting->readNumber(), "a check box has a number to show");
    }
}

void tst_settings::formTellsWhoWrites()
{
    for (const Settings::Switch *setting : Settings::switches) {
        QVERIFY2((setting->checkBox != nullptr) == (setting->form == Settings::OneZero),
                 setting->key);
        QVERIFY2(setting->menuItem || setting->checkBox, setting->key);
    }
}

void tst_settings::storedSwitches_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<std::optional<bool>>("on");
    QTest::addColumn<std::optional<double>>("number");
    using Flag = std::optional<bool>;
    using Number = std::optional<double>;
    QTest::newRow("1") << u"1"_s << Flag(true) << Number(1);
    QTest::newRow("0") << u"0"_s << Flag(false) << Number(0);
    QTest::newRow("1.0") << u"1.0"_s << Flag(true) << Number(1);
    QTest::newRow("-3") << u"-3"_s << Flag(true) << Number(-3);
    QTest::newRow("70000") << u"70000"_s << Flag(true) << Number(70000);
    QTest::newRow("True") << u"True"_s << Flag(true) << Number();
    QTest::newRow("FALSE") << u"FALSE"_s << Flag(false) << Number();
    QTest::newRow("on") << u"on"_s << Flag() << Number();
    QTest::newRow("empty") << QString() << Flag() << Number();
}

void tst_settings::storedSwitches()
{
    QFETCH(QString, text);
    QFETCH(std::optional<bool>, on);
    QFETCH(std::optional<double>, number);
    for (const Settings::Switch *setting : {&Settings::askOnExit, &Settings::addToCache}) {
        store(*setting, text);
        QCOMPARE(setting->read(), on);
        QCOMPARE(setting->readNumber(), number);
        QCOMPARE(setting->isOne(), number == 1.0);
    }
}

void tst_settings::storedNumbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<std::optional<double>>("number");
    QTest::newRow("2") << u"2"_s << std::optional(2.0);
    QTest::newRow("3.5") << u"3.5"_s << std::optional(3.5);
    QTest::newRow("top") << u"top"_s << std::optional<double>();
    QTest::newRow("empty") << QString() << std::optional<double>();
}

void tst_settings::storedNumbers()
{
    QFETCH(QString, text);
    QFETCH(std::optional<double>, number);
    QCOMPARE(Settings::align.read(), std::optional(1.0));
    QVERIFY(m_folder->setSetting(u"ToolBar"_s, u"Align"_s, text));
    QCOMPARE(Settings::align.read(), number);
}

void tst_settings::numbersAreWrittenInDigits()
{
    QVERIFY(Settings::align.write(2));
    QCOMPARE(stored("ToolBar", "Align"), u"2"_s);
    QCOMPARE(Settings::bandWidth.entry(1'000'000'000, 1).value, u"1000000000"_s);
}

void tst_settings::settingsOfBands()
{
    QCOMPARE(Settings::bandNewRow.read(2), std::optional<bool>());
    QCOMPARE(Settings::bandWidth.read(2), std::optional<double>());
    QVERIFY(Settings::write(
        {Settings::bandNewRow.entry(true, 2), Settings::bandWidth.entry(4321, 12)}));
    QCOMPARE(m_folder->readSettings(), "[ToolBar]\r\nNewRow2=True\r\nWidth12=4321\r\n"_ba);
    QCOMPARE(Settings::bandNewRow.read(2), std::optional(true));
    QCOMPARE(Settings::bandNewRow.read(3), std::optional<bool>());
    QCOMPARE(Settings::bandWidth.read(12), std::optional(4321.0));
}

void tst_settings::texts()
{
    QCOMPARE(Settings::homeUrl.read(), ProgramInfo::homeUrl());
    QCOMPARE(Settings::language.read(), u"English"_s);
    QVERIFY(Settings::write(
        {Settings::homeUrl.entry(u"any text"_s), Settings::language.entry(u"German"_s)}));
    QCOMPARE(stored("Settings", "Home-URL"), u"any text"_s);
    QCOMPARE(stored("Options", "Language"), u"German"_s);
    QCOMPARE(Settings::homeUrl.read(), u"any text"_s);
    QVERIFY(Settings::write({Settings::homeUrl.entry({})}));
    QCOMPARE(Settings::homeUrl.read(), QString());
}

void tst_settings::entriesAreWrittenTogether()
{
    QVERIFY(!Settings::write({Settings::askOnExit.entry(true), {u"Settings"_s, u"="_s, {}}}));
    QCOMPARE(stored("Settings", "AskOnExit"), u"none"_s);
}

QTEST_GUILESS_MAIN(tst_settings)
#include "tst_settings.moc"
