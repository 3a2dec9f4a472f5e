#include "AppFolder.h"
#include "Language.h"
#include "TempAppFolder.h"
#include "Texts.h"

#include <QTest>
#include <memory>

using namespace Qt::StringLiterals;

class tst_language : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void missingFileKeepsTheCaption();
    void oneKeyChangesOneCaption();
    void emptyValueBlanksTheCaption();
    void longCaptionsAreCut();
    void captionsAreTakenAsTheyStand();
    void fileIsReadAtEachCall();
    void namesOfFiles_data();
    void namesOfFiles();
    void nameOutsideTheFolder();
    void textsAreLookedUpByTheirSection();
    void textsWithoutATranslation();
    void everyTextIsInTheChain();
    void codes();

private:
    std::unique_ptr<TempAppFolder> m_folder;
};

void tst_language::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
}

void tst_language::cleanup()
{
    m_folder.reset();
    QCOMPARE(languageName(), u"English"_s);
}

void tst_language::missingFileKeepsTheCaption()
{
    QCOMPARE(languageName(), u"English"_s);
    QCOMPARE(languageText(u"frmMain"_s, u"mnuFileOpen"_s, u"&Open..."_s), u"&Open..."_s);
    QCOMPARE(languageText(u"frmMain"_s, u"mnuFileOpen"_s, QString()), QString());
    QVERIFY(!m_folder->exists(u"AppData/Languages/English.ini"_s));
}

void tst_language::oneKeyChangesOneCaption()
{
    QVERIFY(m_folder->writeLanguage(u"Deutsch"_s, "[frmMain]\r\nmnuFileOpen=\xd6&ffnen\r\n"));
    setLanguageName(u"Deutsch"_s);
    QCOMPARE(languageText(u"frmMain"_s, u"mnuFileOpen"_s, u"&Open..."_s), u"\u00d6&ffnen"_s);
    QCOMPARE(languageText(u"frmMain"_s, u"mnuFileNew"_s, u"&New"_s), u"&New"_s);
    QCOMPARE(languageText(u"frmOptions"_s, u"mnuFileOpen"_s, u"&Open..."_s), u"&Open..."_s);
    // Switching to a language without a file leaves what is shown.
    setLanguageName(u"English"_s);
    QCOMPARE(languageText(u"frmMain"_s, u"mnuFileOpen"_s, u"\u00d6&ffnen"_s), u"\u00d6&ffnen"_s);
}

void tst_language::emptyValueBlanksTheCaption()
{
    QVERIFY(m_folder->writeLanguage(u"English"_s, "[frmMain]\r\nmnuFileOpen=\r\n"));
    QCOMPARE(languageText(u"frmMain"_s, u"mnuFileOpen"_s, u"&Open..."_s), QString());
}

void tst_language::longCaptionsAreCut()
{
    const QByteArray caption(5000, 'x');
    QVERIFY(m_folder->writeLanguage(u"English"_s, "[frmMain]\r\na=" + caption + "\r\nb=y\r\n"));
    QCOMPARE(languageText(u"frmMain"_s, u"a"_s, u"A"_s), QString(999, u'x'));
    QCOMPARE(languageText(u"frmMain"_s, u"b"_s, u"B"_s), u"y"_s);
}

void tst_language::captionsAreTakenAsTheyStand()
{
    QVERIFY(m_folder->writeLanguage(u"English"_s, "[S]\na=\"x\\n\" &y && %20;z\n"));
    QCOMPARE(languageText(u"S"_s, u"a"_s, QString()), u"\"x\\n\" &y && %20;z"_s);
}

void tst_language::fileIsReadAtEachCall()
{
    QVERIFY(m_folder->writeLanguage(u"English"_s, "[S]\na=1\n"));
    QCOMPARE(languageText(u"S"_s, u"a"_s, QString()), u"1"_s);
    QVERIFY(m_folder->writeLanguage(u"English"_s, "[S]\na=2\n"));
    QCOMPARE(languageText(u"S"_s, u"a"_s, QString()), u"2"_s);
}

void tst_language::namesOfFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blank") << u"My Language"_s;
    QTest::newRow("accents") << u"Fran\u00e7ais"_s;
    QTest::newRow("other script") << u"\u65e5\u672c\u8a9e"_s;
    QTest::newRow("pair") << u"\U0001F600"_s;
    QTest::newRow("dots, percent, brackets") << u"a.b %1 [c] = ;d"_s;
}

void tst_language::namesOfFiles()
{
    QFETCH(const QString, name);
    QVERIFY(m_folder->writeLanguage(name, "[S]\na=1\n"));
    setLanguageName(name);
    QCOMPARE(languageText(u"S"_s, u"a"_s, u"default"_s), u"1"_s);
}

void tst_language::nameOutsideTheFolder()
{
    for (const QString &name :
         {QString(), u"."_s, u".."_s, u"a/b"_s, QString(5000, u'x'), u"\n"_s}) {
        setLanguageName(name);
        QCOMPARE(languageText(u"S"_s, u"a"_s, u"default"_s), u"default"_s);
    }
}

namespace {
constexpr Texts<"frmTest"> texts;

/// Nobody calls it.
[[maybe_unused]] QString neverShown()
{
    return texts.at<"strNever", "Never shown">();
}
}

void tst_language::textsAreLookedUpByTheirSection()
{
    QVERIFY(m_folder->writeLanguage(u"English"_s,
                                    "[frmOther]\r\ncmdSave=&Other\r\n"
                                    "[frmTest]\r\ncmdSave=S&ichern\r\ncmdStop=\r\n"));
    const Text &save = texts.at<"cmdSave", "&Save">;
    QCOMPARE(save(), u"S&ichern"_s);
    QCOMPARE(save(u"&Sauver"_s), u"S&ichern"_s);
    QCOMPARE(save.name(), u"cmdSave"_s);
    const Text &stop = texts.at<"cmdStop", "Stop">;
    QCOMPARE(stop(), QString());
    QCOMPARE(texts.named(u"cmdSave"_s, {}), u"S&ichern"_s);
}

void tst_language::textsWithoutATranslation()
{
    const Text &text = texts.at<"strMissing",
                                "Two literals \u2026 "
                                "are one text">;
    QCOMPARE(text(), u"Two literals \u2026 are one text"_s);
    QCOMPARE(text(u"Zwei"_s), u"Zwei"_s);
    QCOMPARE(texts.named(u"strMissing"_s, u"Zwei"_s), u"Zwei"_s);
}

void tst_language::everyTextIsInTheChain()
{
    QStringList keys;
    for (const Text *text = Text::first; text; text = text->next) {
        if (qstrcmp(text->section, "frmTest") == 0)
            keys.append(text->name());
    }
    keys.sort();
    QCOMPARE(keys, QStringList({u"cmdSave"_s, u"cmdStop"_s, u"strMissing"_s, u"strNever"_s}));
}

void tst_language::codes()
{
    QCOMPARE(languageCode(u"English"_s), u"en"_s);
    QCOMPARE(languageCode(u"Japanese"_s), u"ja"_s);
    QCOMPARE(languageCode(u"C"_s), QString());
    QCOMPARE(languageCode(u"../German"_s), QString());
    QCOMPARE(languageCode({}), QString());
}

QTEST_GUILESS_MAIN(tst_language)
#include "tst_language.moc"
