// What is misspelled in the fields of pages, by dictionaries of a system of the test's own.
#include <QMenu>
#include <QTemporaryDir>
#include <QWebEngineProfile>
#include <QWebEngineView>

#include "../Session.h"
#include "Dictionaries.h"
#include "EngineData.h"
#include "EngineOptions.h"
#include "EngineProfile.h"
#include "EngineTest.h"
#include "PrivateProfiles.h"
#include "QtWebBrowser.h"
#include "WebPage.h"

using namespace Qt::StringLiterals;

class tst_spelling : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void dictionariesOfTheSystem();
    void wordIsMarkedAndMended();
    void nothingIsMarkedWhereItIsOff();
    void choiceActsAtOnce();
    void privateWindowsHaveThemToo();
    void brokenDictionary();
    void convertedOnce();

private:
    static void install(const QString &folder, const QString &name, const QByteArray &bytes);
    static QString cached(const QString &tag)
    {
        return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)
            + u"/orvane/Dictionaries/%1.bdic"_s.arg(tag);
    }
    void open(const QByteArray &word = "helo");
    QWidget *view() const
    {
        return m_session->active()->findChild<QWebEngineView *>()->focusProxy();
    }
    QVariant run(const QString &script) const;
    /// Opens the menu on the field's word; null where there comes none.
    QMenu *menuOfField() const;
    /// What the menu suggests in place of the word.
    QStringList suggestions() const;
    static void use(const QString &dictionaries, bool spelling = true)
    {
        EngineOptions options;
        options.dictionaries = dictionaries;
        options.spelling = spelling;
        std::unique_ptr<EngineData>(makeEngineData(nullptr))->use(options);
    }

    QTemporaryDir m_system;
    std::unique_ptr<Session> m_session;
};

void tst_spelling::install(const QString &folder, const QString &name, const QByteArray &bytes)
{
    QVERIFY(QDir().mkpath(folder));
    QFile file(folder + u'/' + name);
    QVERIFY(file.open(QFile::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

void tst_spelling::initTestCase()
{
    const QString folder = m_system.filePath(u"hunspell"_s);
    const QByteArray rules = "SET UTF-8\nTRY esianrtolcdugmphbyfvkwz\n";
    install(folder, u"en_US.aff"_s, rules);
    install(folder, u"en_US.dic"_s, "3\nhello\nworld\nwords\n");
    install(folder, u"de_DE.aff"_s, rules);
    install(folder, u"de_DE.dic"_s, "2\nhallo\nwelt\n");
    install(folder, u"pl_PL.aff"_s, rules);
    // It names no words.
    install(folder, u"fr_FR.dic"_s, QByteArray("\xff\xfe/,\n\0\1", 8));
    install(folder, u"hyph_en_GB.dic"_s, "1\nword\n");
    qputenv("XDG_DATA_DIRS", QFile::encodeName(m_system.path()));
    qputenv("LC_ALL", "en_US.UTF-8");
}

void tst_spelling::init()
{
    m_session = std::make_unique<Session>();
}

void tst_spelling::cleanup()
{
    if (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
    use({});
    m_session.reset();
}

QVariant tst_spelling::run(const QString &script) const
{
    const auto result = std::make_shared<std::optional<QVariant>>();
    static_cast<QtWebBrowser *>(m_session->active()->browser())
        ->page()
        ->runJavaScript(script, [result](const QVariant &value) { *result = value; });
    [&] { QTRY_VERIFY(*result); }();
    return result->value_or(QVariant());
}

void tst_spelling::open(const QByteArray &word)
{
    m_session->server.page("/home",
                           "<title>home page</title><textarea id=a rows=4 style='font:30px "
                           "monospace'>"
                               + word + " </textarea>");
    m_session->start();
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/home"_s)));
    QTRY_VERIFY(run(u"performance.getEntriesByType('paint').length"_s).toInt() > 0);
    // What is in a field is checked as its user begins to write there.
    const auto place = run(u"document.getElementById('a').getBoundingClientRect().bottom"_s);
    QTRY_VERIFY((QTest::mouseClick(view(), Qt::LeftButton, {}, QPoint(60, place.toInt() - 20)),
                 run(u"document.activeElement.id"_s) == u"a"_s));
    QTRY_VERIFY((QTest::keyClick(view(), Qt::Key_Space),
                 run(u"document.getElementById('a').value"_s).toString().endsWith("  "_L1)));
}

QMenu *tst_spelling::menuOfField() const
{
    const QVariantList place = run(u"var r = document.getElementById('a').getBoundingClientRect();"
                                   "[r.left + 30, r.top + 20]"_s)
                                   .toList();
    QTest::mouseClick(view(), Qt::RightButton, {},
                      QPoint(place.value(0).toInt(), place.value(1).toInt()));
    [] { QTRY_VERIFY(QApplication::activePopupWidget()); }();
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

QStringList tst_spelling::suggestions() const
{
    QMenu *menu = menuOfField();
    QStringList words;
    for (const QAction *each : menu ? menu->actions() : QList<QAction *>()) {
        if (each->objectName().startsWith("mnuFieldSuggestion"_L1))
            words.append(each->text().remove(u'&'));
    }
    if (menu)
        menu->close();
    return words;
}

void tst_spelling::dictionariesOfTheSystem()
{
    const QStringList all = Dictionaries::all();
    QVERIFY2(all.contains(u"en-US"_s) && all.contains(u"de-DE"_s), qPrintable(all.join(u' ')));
    QVERIFY(!all.join(u' ').contains("hyph"_L1));
    QCOMPARE(Dictionaries::ofDesktop(all), QStringList(u"en-US"_s));
    QVERIFY(Dictionaries::nameOf(u"de-DE"_s).startsWith("Deutsch"_L1));
}

void tst_spelling::wordIsMarkedAndMended()
{
    open();
    QTRY_COMPARE(suggestions(), QStringList(u"hello"_s));
    // From Qt 6.8 on a menu takes a press for the one that opened it while no mouse was ever seen.
    QTest::mouseMove(m_session->frame->windowHandle(), QPoint());
    QMenu *menu = menuOfField();
    QAction *word = menu->findChild<QAction *>(u"mnuFieldSuggestion"_s);
    QVERIFY(word);
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(word).center());
    QTRY_VERIFY(run(u"document.getElementById('a').value"_s).toString().startsWith("hello "_L1));
}

void tst_spelling::nothingIsMarkedWhereItIsOff()
{
    open();
    QTRY_COMPARE(suggestions(), QStringList(u"hello"_s));
    use({}, false);
    QVERIFY(!engineProfile()->isSpellCheckEnabled());
    QTRY_COMPARE(suggestions(), QStringList());
}

void tst_spelling::choiceActsAtOnce()
{
    open("halo");
    use(u"de-DE"_s);
    QTRY_COMPARE(engineProfile()->spellCheckLanguages(), QStringList(u"de-DE"_s));
    QTRY_COMPARE(suggestions(), QStringList(u"hallo"_s));
    // Of two choices the last counts, whichever is ready first.
    use(u"en-US"_s);
    use(u"de-DE,en-US"_s);
    QTRY_COMPARE(engineProfile()->spellCheckLanguages(), QStringList({u"de-DE"_s, u"en-US"_s}));
}

void tst_spelling::privateWindowsHaveThemToo()
{
    open();
    m_session->choose("mnuFileNewPrivate");
    QTRY_COMPARE(m_session->windows(), 2);
    const auto *page = static_cast<QtWebBrowser *>(m_session->active()->browser())->page();
    QVERIFY(PrivateProfiles::numberOf(page->profile()) != 0);
    QTRY_COMPARE(page->profile()->spellCheckLanguages(), QStringList(u"en-US"_s));
    QVERIFY(page->profile()->isSpellCheckEnabled());
}

/// The others work; it is not offered again, nor tried for each page.
void tst_spelling::brokenDictionary()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"fr_FR.dic.*cannot be converted"_s));
    open();
    QVERIFY(Dictionaries::all().contains(u"fr-FR"_s));
    use(u"fr-FR,de-DE"_s);
    QTRY_COMPARE(engineProfile()->spellCheckLanguages(), QStringList(u"de-DE"_s));
    QVERIFY(!QFile::exists(cached(u"fr-FR"_s)));
    QVERIFY(!Dictionaries::all().contains(u"fr-FR"_s));
    use(u"fr-FR,en-US"_s);
    QTRY_COMPARE(engineProfile()->spellCheckLanguages(), QStringList(u"en-US"_s));
}

void tst_spelling::convertedOnce()
{
    open();
    QTRY_VERIFY(QFile::exists(cached(u"en-US"_s)));
    const QDateTime before = QFileInfo(cached(u"en-US"_s)).lastModified();
    use({}, false);
    use({});
    QTRY_COMPARE(engineProfile()->spellCheckLanguages(), QStringList(u"en-US"_s));
    QCOMPARE(QFileInfo(cached(u"en-US"_s)).lastModified(), before);
    QFile words(m_system.filePath(u"hunspell/en_US.dic"_s));
    QVERIFY(words.open(QFile::ReadWrite));
    QVERIFY(
        words.setFileTime(QDateTime::currentDateTime().addSecs(5), QFile::FileModificationTime));
    words.close();
    use({}, false);
    use({});
    QTRY_VERIFY(QFileInfo(cached(u"en-US"_s)).lastModified() > before);
}

ORVANE_ENGINE_TEST_MAIN(tst_spelling)
#include "tst_spelling.moc"
