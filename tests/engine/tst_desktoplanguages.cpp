#include "DesktopLanguages.h"
#include "EngineOptions.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_desktoplanguages : public QObject {
    Q_OBJECT

private slots:
    void tags_data();
    void tags();
    void ofThisDesktop();
};

void tst_desktoplanguages::tags_data()
{
    QTest::addColumn<QStringList>("tags");
    QTest::addColumn<QString>("languages");
    const auto row = [](const char *name, const QStringList &tags, const QString &languages) {
        QTest::newRow(name) << tags << languages;
    };
    row("nothing", {}, u"en-US,en"_s);
    row("no locale", {u"C"_s}, u"en-US,en"_s);
    row("rubbish", {u""_s, u"\u00e4\u00f6"_s, u"no language;q=1\r\nX: y"_s}, u"en-US,en"_s);
    row("one language", {u"de"_s}, u"de,en"_s);
    row("language and country", {u"de-AT"_s, u"de"_s}, u"de-AT,de,en"_s);
    row("scripts are left out", {u"en-Latn-GB"_s, u"en-GB"_s, u"en"_s}, u"en-GB,en"_s);
    row("two languages", {u"pl-PL"_s, u"pl"_s, u"fr-CA"_s, u"fr"_s}, u"pl-PL,pl,fr-CA,fr,en"_s);
    row("countries of one", {u"de-AT"_s, u"de-DE"_s}, u"de-AT,de-DE,de,en"_s);
    row("English before", {u"en-GB"_s, u"de-DE"_s}, u"en-GB,en,de-DE,de"_s);
    row("too many", {u"de-AT"_s, u"fr-FR"_s, u"es-ES"_s, u"pl-PL"_s},
        u"de-AT,de,fr-FR,fr,es-ES,es"_s);
}

void tst_desktoplanguages::tags()
{
    QFETCH(QStringList, tags);
    QTEST(DesktopLanguages::fromTags(tags), "languages");
}

void tst_desktoplanguages::ofThisDesktop()
{
    QVERIFY(EngineOptionText::isLanguageList(DesktopLanguages::list()));
}

QTEST_GUILESS_MAIN(tst_desktoplanguages)
#include "tst_desktoplanguages.moc"
