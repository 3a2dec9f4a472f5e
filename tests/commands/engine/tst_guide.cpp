// The user's guide, which the program has in itself.
#include "../EngineSession.h"
#include "EngineTest.h"

using namespace Qt::StringLiterals;

class tst_Guide : public QObject, private EngineSession {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { finish(); }

    void opensInAWindowOfItsOwn();
    void keyOpensIt();
    void linksLeadOn();
    void placeInAPage();
    void backAndForth();
    void hasItsPictures();
    void isInTheProgramsLanguage();
    void pageThatThereIsNot();
    void withScriptsOff();

private:
    static constexpr auto guide = "orvane:guide"_L1;

    void open()
    {
        start();
        m_session->choose("mnuHelpContents");
        QTRY_VERIFY(m_session->shows(guide));
        QTRY_COMPARE(m_session->active()->windowTitle(), u"Using Orvane"_s);
    }
    void follow(const QString &address) const
    {
        script(u"document.querySelector('a[href=\"%1\"]').click()"_s.arg(address));
    }
};

void tst_Guide::opensInAWindowOfItsOwn()
{
    open();
    QCOMPARE(m_session->windows(), 2);
    QCOMPARE(m_session->address().text(), QString(guide));
    QVERIFY(script(u"document.body.innerText"_s).contains("The application folder"_L1));
}

void tst_Guide::keyOpensIt()
{
    start();
    QTest::keyClick(m_session->frame->window(), Qt::Key_F1);
    QTRY_VERIFY(m_session->shows(guide));
}

void tst_Guide::linksLeadOn()
{
    open();
    follow(u"orvane:guide/keys"_s);
    QTRY_VERIFY(m_session->shows(u"orvane:guide/keys"_s));
    QTRY_COMPARE(m_session->active()->windowTitle(), u"Keys"_s);
    follow(u"orvane:guide"_s);
    QTRY_VERIFY(m_session->shows(guide));
    QCOMPARE(m_session->windows(), 2);
}

void tst_Guide::placeInAPage()
{
    open();
    follow(u"orvane:guide#favorites"_s);
    QTRY_VERIFY(m_session->shows(u"orvane:guide#favorites"_s));
    QTRY_VERIFY(script(u"String(scrollY)"_s).toDouble() > 0);
    QVERIFY(script(u"String(document.getElementById('favorites').getBoundingClientRect().top)"_s)
                .toDouble()
            < 100);
    // From outside too.
    go(u"orvane:guide/popups#patterns"_s);
    QTRY_VERIFY(script(u"String(scrollY)"_s).toDouble() > 0);
}

void tst_Guide::backAndForth()
{
    open();
    follow(u"orvane:guide/profiles"_s);
    QTRY_VERIFY(m_session->shows(u"orvane:guide/profiles"_s));
    m_session->active()->browser()->goBack();
    QTRY_VERIFY(m_session->shows(guide));
    m_session->active()->browser()->goForward();
    QTRY_VERIFY(m_session->shows(u"orvane:guide/profiles"_s));
}

void tst_Guide::hasItsPictures()
{
    open();
    QVERIFY(script(u"String(document.images.length)"_s).toInt() > 0);
    QTRY_COMPARE(script(u"String([...document.images].filter(i => i.naturalWidth === 0).length)"_s),
                 u"0"_s);
}

void tst_Guide::isInTheProgramsLanguage()
{
    QVERIFY(m_session->folder.setSetting(u"Options"_s, u"Language"_s, u"German"_s));
    start();
    m_session->choose("mnuHelpContents");
    QTRY_VERIFY(m_session->shows(guide));
    QTRY_COMPARE(script(u"document.documentElement.lang"_s), u"de"_s);
    QTRY_COMPARE(m_session->active()->windowTitle(), u"Orvane benutzen"_s);
    // A place whose name has letters that addresses write otherwise.
    follow(u"orvane:guide#w\u00f6rter-in-einer-seite-finden"_s);
    QTRY_VERIFY(script(u"String(scrollY)"_s).toDouble() > 0);
    // This page is there in English alone.
    go(u"orvane:guide/files"_s);
    QTRY_COMPARE(script(u"document.documentElement.lang"_s), u"en"_s);
}

void tst_Guide::pageThatThereIsNot()
{
    start();
    m_session->frame->navigateActive(u"orvane:guide/nothing"_s);
    QTRY_VERIFY(script(u"document.querySelectorAll('button').length > 0 ? 'yes' : ''"_s)
                == "yes"_L1);
    QVERIFY(!script(u"document.body.innerText"_s).contains("application folder"_L1));
}

void tst_Guide::withScriptsOff()
{
    EngineOptions options;
    options.scripts = false;
    start(options);
    m_session->choose("mnuHelpContents");
    QTRY_VERIFY(m_session->shows(guide));
    follow(u"orvane:guide/keys"_s);
    QTRY_VERIFY(m_session->shows(u"orvane:guide/keys"_s));
}

ORVANE_ENGINE_TEST_MAIN(tst_Guide)
#include "tst_guide.moc"
