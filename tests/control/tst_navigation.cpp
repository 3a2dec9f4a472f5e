// What is made of the engine's signals, in the orders in which they are known to come.
#include "Navigation.h"

#include <QEvent>
#include <QTest>

using namespace Qt::StringLiterals;

using Type = Navigation::Type;
using What = Navigation::What;

namespace {
Type typeOf(const QString &word)
{
    static const QHash<QString, Type> types{
        {u"typed"_s, Type::Typed}, {u"link"_s, Type::Link},         {u"form"_s, Type::Form},
        {u"step"_s, Type::Step},   {u"redirect"_s, Type::Redirect}, {u"other"_s, Type::Other}};
    return types.value(word, Type::Other);
}

QString line(const Navigation::Event &event)
{
    const QString url = event.url.toString(QUrl::FullyEncoded);
    switch (event.what) {
    case What::Begun:
        return "begun "_L1 + url;
    case What::Opening:
        return "opening "_L1 + url;
    case What::Done:
        return u"done"_s;
    case What::Refused:
        return ("refused "_L1 + url).trimmed();
    case What::PageCame:
        return "came "_L1 + event.text + (event.hasArrived ? u""_s : u" failed"_s)
            + (event.isSkipped ? u" skipped"_s : u""_s);
    case What::BlankCame:
        return u"blank"_s;
    case What::ErrorCame:
        return "error "_L1 + QString::number(event.error);
    case What::Location:
        return ("location "_L1 + event.text).trimmed();
    case What::Distrust:
        return u"distrust"_s;
    case What::Complete:
        return "complete "_L1 + event.text;
    case What::GivenUp:
        return u"given up"_s;
    case What::PerhapsNothing:
        return u"perhaps nothing"_s;
    case What::ForgetLinks:
        return u"forget"_s;
    case What::Ended:
        return u"ended"_s;
    }
    return {};
}

/// An engine that tells what a line says, and a window that is told what comes of it.
class Scene {
public:
    /// Facts parted by ";". `at URL ENTRIES [ENTRY]`: where the engine is from now on. `load`,
    /// `loadForPage`, `adopt`, `adoptEmpty`, `stop`, `step`, `click`, `crash`, `flags`, `wait`: the
    /// program's, the opener's and the user's. `ask TYPE URL` is granted by the window, `deny TYPE
    /// URL` is not, `never TYPE URL` is never opened. All others: the engine tells it.
    void happens(const QString &facts)
    {
        const QStringList all = facts.split(u';', Qt::SkipEmptyParts);
        for (const QString &fact : all)
            happens(fact.trimmed().split(u' '));
    }
    QStringList told() const { return m_told; }
    void forget() { m_told.clear(); }

    Navigation navigation;
    EnginePlace place;

private:
    void happens(const QStringList &words);
    bool isCommand(const QString &what, const QString &first);
    bool isAsked(const QString &what, const QStringList &words);
    Navigation::Events tells(const QString &what, const QStringList &words);

    QStringList m_told;
};

void Scene::happens(const QStringList &words)
{
    const QString what = words.first();
    if (what == "at"_L1) {
        place.shown = QUrl(words.at(1));
        place.entries = words.at(2).toInt();
        place.entry = QUrl(words.value(3, words.at(1)));
        return;
    }
    if (isCommand(what, words.value(1)) || isAsked(what, words))
        return;
    const Navigation::Events events = tells(what, words);
    for (const Navigation::Event &event : events)
        m_told.append(line(event));
}

bool Scene::isCommand(const QString &what, const QString &first)
{
    if (what.startsWith("load"_L1) && !first.isEmpty()) {
        navigation.name(what == "loadForPage"_L1);
        navigation.handOver(QUrl(first));
        if (first.startsWith("about:"_L1))
            navigation.beginBlank(QUrl(first));
    } else if (what.startsWith("adopt"_L1)) {
        navigation.adopt(what == "adoptEmpty"_L1);
    } else if (what == "stop"_L1) {
        navigation.stop();
    } else if (what == "step"_L1) {
        navigation.step(true);
    } else if (what == "click"_L1) {
        navigation.noteEvent(QEvent(QEvent::TouchEnd));
    } else if (what == "crash"_L1) {
        navigation.crash();
    } else if (what == "flags"_L1) {
        navigation.setFlags(first.toInt());
    } else if (what == "wait"_L1) {
        navigation.waitAt(first);
    } else {
        return false;
    }
    return true;
}

bool Scene::isAsked(const QString &what, const QStringList &words)
{
    if (what != "ask"_L1 && what != "deny"_L1)
        return false;
    const Type type = typeOf(words.at(1));
    const QUrl url(words.at(2));
    const Navigation::Request request = navigation.asked(url, type);
    if (request == Navigation::Request::New) {
        m_told.append("before "_L1 + words.at(2));
        if (what == "deny"_L1) {
            navigation.refuse();
            return true;
        }
        if (navigation.replaces(url, type, place)) {
            m_told.append("replace "_L1 + words.at(2));
            return true;
        }
    }
    navigation.accept(url, type, request);
    return true;
}

Navigation::Events Scene::tells(const QString &what, const QStringList &words)
{
    const QUrl url(words.value(1));
    if (what == "never"_L1)
        return navigation.refuseForGood(QUrl(words.at(2)), typeOf(words.at(1)));
    if (what == "start"_L1)
        return navigation.loadStarted(url);
    if (what == "document"_L1)
        return navigation.documentStarted(words.at(1), place);
    if (what == "url"_L1)
        return navigation.urlChanged(place);
    if (what == "loaded"_L1)
        return navigation.documentLoaded();
    if (what == "blankShown"_L1)
        return navigation.blankShown();
    if (what == "end"_L1)
        return navigation.loadEnded({url, false, {}, words.value(2) == "followed"_L1}, place);
    if (what == "error"_L1)
        return navigation.loadEnded({url, false, words.at(2).toInt()}, place);
    if (what == "stopped"_L1)
        return navigation.loadEnded({url, true, {}}, place);
    return {{What::Refused, {}, {}}};
}

/// Until the page at `url` is there as a whole, with nothing odd about it.
QString opened(const QString &url, int entries = 1)
{
    return u"load %1; ask typed %1; start %1; at %1 %2; url; document %1; loaded; end %1;"_s.arg(
        url, QString::number(entries));
}

const QString a = u"http://a.example/"_s;
const QString b = u"http://b.example/"_s;
}

class tst_navigation : public QObject {
    Q_OBJECT

private slots:
    void order_data();
    void order();
    void location_data();
    void location();
    void arrival_data();
    void arrival();
    void addressBeforePage_data();
    void addressBeforePage();
    void signInIsForThePageOnItsWay_data();
    void signInIsForThePageOnItsWay();
    void busy_data();
    void busy();
    void holdsNothing_data();
    void holdsNothing();
    void linksAreForgottenOnce();
    void nothingIsLeft();

private:
    void addRow(const char *name, const QString &before, const QString &facts, const QString &told);
    void addLoads();
    void addRefusals();
    void addOddOrders();
    void addBlankPages();
    void addHistory();
};

/// `told`: parted by "; ". What comes of `before` is not looked at.
void tst_navigation::addRow(const char *name, const QString &before, const QString &facts,
                            const QString &told)
{
    QTest::newRow(name) << before << facts << told;
}

void tst_navigation::order_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("facts");
    QTest::addColumn<QString>("told");
    addLoads();
    addRefusals();
    addOddOrders();
    addBlankPages();
    addHistory();
}

void tst_navigation::addLoads()
{
    addRow("plain", {}, opened(a),
           u"before %1; opening %1; came %1; complete %1; forget; done; ended"_s.arg(a));
    addRow(
        "second page", opened(a), opened(b, 2),
        u"before %1; opening %1; distrust; location %1; came %1; complete %1; forget; done; ended"_s
            .arg(b));
    addRow("redirected", {},
           u"load %1; ask typed %1; start %1; ask redirect %2; at %2 1; url; document %2; loaded; "
           "end %2"_s.arg(a, b),
           u"before %1; opening %1; came %2; complete %2; forget; done; ended"_s.arg(a, b));
    addRow("error page", {},
           u"load %1; ask typed %1; start %1; at %1 1; url; "
           "document chrome-error://chromewebdata/; error %1 -102"_s.arg(a),
           u"before %1; opening %1; came %1 failed; error -102; complete %1; forget; done; ended"_s
               .arg(a));
    addRow(
        "error page without a number", opened(a), u"ask other %1; start %1; error %1 0"_s.arg(a),
        u"before %1; opening %1; came %1 failed; error 0; complete %1; forget; done; ended"_s.arg(
            a));
    addRow("server's page for an error", {},
           u"load %1; ask typed %1; start %1; at %1 1; document %1; end %1"_s.arg(a),
           u"before %1; opening %1; came %1; complete %1; forget; done; ended"_s.arg(a));
    addRow("source of a page", opened(a),
           u"ask other %1; start %1; at view-source:%1 2; document %1"_s.arg(a),
           u"before %1; opening %1; came view-source:%1"_s.arg(a));
    addRow("stopped before its page", opened(a),
           u"load %1; ask typed %1; start %1; stop; stopped %1"_s.arg(b),
           u"before %1; opening %1; forget; given up; refused; ended"_s.arg(b));
    addRow(
        "stopped with its page there", {},
        u"load %1; ask typed %1; start %1; at %1 1; document %1; stop; stopped %1"_s.arg(a),
        u"before %1; opening %1; came %1; complete %1; forget; given up; refused; ended"_s.arg(a));
    addRow("no contents, in a new window", {},
           u"load %1; ask typed %1; start %1; stopped %1"_s.arg(a),
           u"before %1; opening %1; forget; given up; perhaps nothing; refused; ended"_s.arg(a));
    addRow("no contents, with a page there", opened(a),
           u"load %1; ask typed %1; start %1; stopped %1"_s.arg(b),
           u"before %1; opening %1; forget; given up; refused; ended"_s.arg(b));
    addRow("crash while it loads, then again", u"load %1; ask typed %1; start %1; crash"_s.arg(a),
           opened(a), u"before %1; opening %1; came %1; complete %1; forget; done; ended"_s.arg(a));
}

void tst_navigation::addRefusals()
{
    const QString crash = u"chrome://crash/"_s;
    addRow("denied", opened(a), u"load %1; deny typed %1; start %1; stopped %1"_s.arg(b),
           u"before %1; given up; ended"_s.arg(b));
    addRow(
        "two denied, then a page", opened(a),
        u"deny link %1; deny link %1; start %1; stopped %1; stopped %1; ask link %1; start %1"_s
            .arg(b),
        u"before %1; before %1; given up; ended; given up; ended; before %1; opening %1"_s.arg(b));
    addRow("denied while a page loads", u"load %1; ask typed %1; start %1"_s.arg(a),
           u"deny link %1; start %1; stopped %1"_s.arg(b), u"before %1; ended"_s.arg(b));
    addRow("denied after a page came",
           u"load %1; ask typed %1; start %1; at %1 1; document %1"_s.arg(a),
           u"deny link %1; stopped %1"_s.arg(b),
           u"before %2; complete %1; forget; given up; refused; ended"_s.arg(a, b));
    addRow("never opened", opened(a), u"never link %1; start %1; stopped %1"_s.arg(crash),
           u"refused %1; given up; ended"_s.arg(crash));
    addRow(
        "redirected to what is never opened", opened(a),
        u"load %1; ask typed %1; start %1; never redirect %2; stopped %1"_s.arg(b, crash),
        u"before %1; opening %1; refused %2; forget; given up; refused %2; ended"_s.arg(b, crash));
    addRow("the next stop gives no reason of before",
           u"ask typed %1; start %1; never redirect %2; stopped %1"_s.arg(b, crash),
           u"ask typed %1; start %1; stopped %1"_s.arg(b),
           u"before %1; opening %1; forget; given up; perhaps nothing; refused; ended"_s.arg(b));
    addRow("handed over to the engine meanwhile", opened(a),
           u"deny link %1; load %2; stopped %1"_s.arg(b, a + u'x'), u"before %1; ended"_s.arg(b));
}

void tst_navigation::addOddOrders()
{
    addRow("end before start", {},
           u"load %1; ask typed %1; start %1; at %1 1; end %1; document %1; loaded"_s.arg(a),
           u"before %1; opening %1; came %1; complete %1; forget; done; ended"_s.arg(a));
    addRow("end before start, and the next asked for",
           u"load %1; ask typed %1; start %1; at %1 1; end %1"_s.arg(a),
           u"load %2; ask typed %2; document %1; start %2"_s.arg(a, b),
           u"before %1; opening %1"_s.arg(b));
    addRow("error told by its end before its start", {},
           u"load %1; ask typed %1; start %1; at %1 1; error %1 -105; "
           "document chrome-error://chromewebdata/"_s.arg(a),
           u"before %1; opening %1; came %1 failed; error -105; complete %1; forget; done; ended"_s
               .arg(a));
    addRow("document before the engine's word of it", opened(a),
           u"load %1; ask typed %1; start %1; document %1; loaded; at %1 2; url; end %1"_s.arg(b),
           u"before %1; opening %1; came %1; complete %1; forget; done; ended"_s.arg(b));
    addRow("first document before the engine's word of it", {},
           u"load %1; ask typed %1; start %1; document %1; at %1 1; url; loaded; end %1"_s.arg(a),
           u"before %1; opening %1; came %1; complete %1; forget; done; ended"_s.arg(a));
    addRow("first document before the engine's word of it, over an empty one",
           u"at about:blank 1"_s,
           u"load %1; ask typed %1; start %1; document %1; at %1 1; url; loaded; end %1"_s.arg(a),
           u"before %1; opening %1; came %1; complete %1; forget; done; ended"_s.arg(a));
    addRow("redirected, its document before the engine's word of it", {},
           u"load %1; ask typed %1; start %1; at %1 1 about:blank; ask redirect %2; document %2; "
           "at %2 1; url; loaded; end %2"_s.arg(a, b),
           u"before %1; opening %1; came %2; complete %2; forget; done; ended"_s.arg(a, b));
    addRow("error page before the engine's word of it", opened(a),
           u"ask link %1; start %1; document chrome-error://chromewebdata/; at %1 2; url; "
           "error %1 -102"_s.arg(b),
           u"before %1; opening %1; came %1 failed; error -102; complete %1; forget; done; ended"_s
               .arg(b));
    addRow(
        "document before the engine's word, which is its end", opened(a),
        u"ask link %1; start %1; document %1; at %1 2; end %1; ask link %2; document %2"_s.arg(
            b, b + u'x'),
        u"before %1; opening %1; came %1; complete %1; forget; done; ended; before %1x"_s.arg(b));
    addRow("document ahead, of a load that comes to nothing", opened(a),
           u"ask link %1; start %1; document %1; ask link %2; at %1 2; url; start %2"_s.arg(
               a + u'x', a + u'y'),
           u"before %1x; opening %1x; before %1y; opening %1y"_s.arg(a));
    addRow("late end of an earlier load", opened(a),
           u"load %1; ask typed %1; start %1; end %2 followed"_s.arg(b, a),
           u"before %1; opening %1"_s.arg(b));
    const QString loading = u"load %1; ask typed %1; start %1; at %1 1; url; document %1;"_s.arg(a);
    addRow("nothing came while the page was loading", loading,
           u"load %1; ask typed %1; loaded; end %2"_s.arg(b, a),
           u"before %1; given up; complete %2; forget; done; ended"_s.arg(b, a));
    addRow("late end of an earlier load, with a blank page to come", loading,
           u"load about:blank; end %1"_s.arg(a), {});
    addRow("nothing came while the page was loading, and another is to come", loading,
           u"ask link %1; load %2; end %3"_s.arg(b, b + u'x', a),
           u"before %1; complete %2; forget; done; ended"_s.arg(b, a));
    addRow("late document of an earlier load", opened(a),
           u"load %1; ask typed %1; at %1 1 %2; document %2"_s.arg(b, a),
           u"before %1; came %2"_s.arg(b, a));
    addRow("document of a page that is not under way", opened(a), u"document %1"_s.arg(a), {});
    addRow("document that calls itself another's", {},
           u"ask link %1; start %1; at %1 1; document %2"_s.arg(a, b),
           u"before %1; opening %1; came %1"_s.arg(a));
    addRow("complete once", {},
           u"ask link %1; start %1; at %1 1; document %1; loaded; loaded; end %1"_s.arg(a),
           u"before %1; opening %1; came %1; complete %1; forget; done; ended"_s.arg(a));
    addRow("site of another page before its document", opened(a),
           u"ask link %1; start %1; at %1 2; url"_s.arg(b),
           u"before %1; opening %1; distrust; location %1"_s.arg(b));
    addRow("another page of the site before its document", opened(a),
           u"ask link %1x; start %1x; at %1x 2; url"_s.arg(a), u"before %1x; opening %1x"_s.arg(a));
    addRow("typed, and only on its way", opened(a),
           u"load %1; ask typed %1; start %1; at %1 1 %2; url"_s.arg(b, a),
           u"before %1; opening %1"_s.arg(b));
    addRow("fragment", opened(a), u"load %1#x; at %1#x 2; url"_s.arg(a), u"location %1#x"_s.arg(a));
    addRow("history state", opened(a), u"at %1pushed 2; url"_s.arg(a),
           u"location %1pushed"_s.arg(a));
    addRow(
        "history state while another loads, and it is stopped", opened(a),
        u"ask link %2; start %2; at %1pushed 2; url; stopped %2"_s.arg(a, b),
        u"before %2; opening %2; forget; location %1pushed; given up; refused; ended"_s.arg(a, b));
}

void tst_navigation::addBlankPages()
{
    const QString blank = u"about:blank"_s;
    addRow("blank", {},
           u"load %1; start %1; at %1 1; document %1; loaded; end %1; blankShown"_s.arg(blank),
           u"opening %1; came %1; blank; complete %1; forget; done; ended"_s.arg(blank));
    addRow("blank over another load",
           u"load %1; ask typed %1; start %1; at %1 1; document %1"_s.arg(a),
           u"load %1; at %1 2; document %1; blankShown"_s.arg(blank),
           u"came %1; blank; complete %1; done; ended"_s.arg(blank));
    addRow("document of the load that a blank page was opened over",
           u"load %1; ask typed %1; start %1; load %2"_s.arg(a, blank),
           u"at %1 1; document %1; at %2 2; document %2"_s.arg(a, blank),
           u"came %1; blank"_s.arg(blank));
    addRow("blank, opened by a page", opened(a), u"start %1; at %1 2; document %1"_s.arg(blank),
           u"begun %1; opening %1; came %1; blank"_s.arg(blank));
    addRow("another page comes before the blank one's end is told",
           u"load %1; at %1 1; document %1"_s.arg(blank), u"ask link %1; blankShown"_s.arg(a),
           u"before %1"_s.arg(a));
    addRow("adopted without an address", u"adoptEmpty"_s, u"start ; end ;"_s,
           u"forget; done; ended"_s);
    addRow("adopted without an address, sent to one", u"adoptEmpty; start ;"_s,
           u"ask other %1; start %1"_s.arg(a), u"before %1; location; opening %1"_s.arg(a));
    addRow("adopted with an address", u"adopt"_s,
           u"at %1 0; url; ask other %1; start %1; at %1 1; document %1; end %1"_s.arg(a),
           u"location; before %1; location; opening %1; came %1; complete %1; forget; done; ended"_s
               .arg(a));
}

void tst_navigation::addHistory()
{
    addRow("step back", opened(a) + opened(b, 2),
           u"step; ask step %1; start %1; at %1 2; url; document %1; end %1"_s.arg(a),
           u"before %1; opening %1; distrust; location %1; came %1; complete %1; forget; done; "
           "ended"_s.arg(a));
    addRow("leaves no trace: the first page", u"flags 2"_s, opened(a),
           u"before %1; opening %1; came %1; complete %1; forget; done; ended"_s.arg(a));
    addRow("leaves no trace: replaces the page", u"flags 2;"_s + opened(a),
           u"load %1; ask typed %1; start %1; stopped %1; ask redirect %1; start %1; at %1 1; "
           "document %1"_s.arg(b),
           u"before %1; replace %1; ended; opening %1; came %1"_s.arg(b));
    addRow("leaves no trace: another is asked for meanwhile", u"flags 2;"_s + opened(a),
           u"load %1; ask typed %1; ask link %2x"_s.arg(b, a),
           u"before %1; replace %1; before %2x"_s.arg(b, a));
    addRow("leaves no trace: a link is skipped", u"flags 2;"_s + opened(a),
           u"ask link %1; start %1; at %1 2; document %1"_s.arg(b),
           u"before %1; opening %1; came %1 skipped"_s.arg(b));
    addRow("leaves no trace: over an error page",
           u"flags 2; load %1; ask typed %1; start %1; at %1 1; error %1 -102"_s.arg(a),
           u"ask typed %1"_s.arg(b), u"before %1"_s.arg(b));
    addRow("leaves no trace: the same page", u"flags 2;"_s + opened(a), u"ask typed %1#x"_s.arg(a),
           u"before %1#x"_s.arg(a));
    addRow("leaves no trace: a file", u"flags 2;"_s + opened(a), u"ask typed file:///x"_s,
           u"before file:///x"_s);
}

void tst_navigation::order()
{
    QFETCH(const QString, before);
    QFETCH(const QString, facts);
    QFETCH(const QString, told);
    Scene scene;
    scene.happens(before);
    scene.forget();
    scene.happens(facts);
    QCOMPARE(scene.told(), told.split(u"; "_s, Qt::SkipEmptyParts));
}

void tst_navigation::location_data()
{
    QTest::addColumn<QString>("facts");
    QTest::addColumn<QString>("location");
    QTest::newRow("nothing yet") << QString() << QString();
    QTest::newRow("waits") << u"wait http://w/"_s << u"http://w/"_s;
    QTest::newRow("asked") << opened(a) + u"load %1; ask typed %1"_s.arg(b) << a;
    QTest::newRow("started") << opened(a) + u"load %1; ask typed %1; start %1"_s.arg(b) << a;
    QTest::newRow("engine ahead of the page")
        << opened(a) + u"load %1; at %1 1 %2; url"_s.arg(b, a) << a;
    QTest::newRow("engine ahead of the page, page starts")
        << opened(a) + u"load %1; ask typed %1; start %1; at %1 1 %2; document %2"_s.arg(b, a) << a;
    QTest::newRow("byte-exact") << opened(u"http://a/x%20y?q=%C3%A4+%2b%41%7e"_s)
                                << u"http://a/x%20y?q=%C3%A4+%2b%41%7e"_s;
    QTest::newRow("as the page spells it")
        << u"ask link http://a/%41; start http://a/%41; at http://a/%41 1; document http://a/%41"_s
        << u"http://a/%41"_s;
    QTest::newRow("what the page says is not believed")
        << u"ask link %1; start %1; at %1 1; document %2"_s.arg(a, b) << a;
    QTest::newRow("adopted, nothing committed")
        << u"adopt; ask other %1; start %1; at %1 0; url; document %1"_s.arg(a) << QString();
    QTest::newRow("step counts at once in the history, not here")
        << opened(a) + opened(b, 2) + u"step; ask step %1; at %2 2 %1; url; document %2"_s.arg(a, b)
        << b;
    QTest::newRow("refused") << opened(a) + u"deny link %1; start %1; stopped %1"_s.arg(b) << a;
    QTest::newRow("crashed") << opened(a) + u"crash"_s << a;
}

void tst_navigation::location()
{
    QFETCH(const QString, facts);
    QFETCH(const QString, location);
    Scene scene;
    scene.happens(facts);
    QCOMPARE(scene.navigation.location(), location);
}

void tst_navigation::arrival_data()
{
    QTest::addColumn<QString>("facts");
    QTest::addColumn<Arrival>("arrival");
    QTest::newRow("named") << u"load %1; ask typed %1"_s.arg(a) << Arrival::ByAddress;
    QTest::newRow("named by a page") << u"loadForPage %1; ask typed %1"_s.arg(a) << Arrival::ByPage;
    QTest::newRow("named after a page")
        << u"loadForPage %1; ask typed %1; load %1; ask typed %1"_s.arg(a) << Arrival::ByAddress;
    QTest::newRow("blank, named") << u"load about:blank"_s << Arrival::ByAddress;
    QTest::newRow("blank, by a page") << opened(a) + u"start about:blank"_s << Arrival::ByPage;
    QTest::newRow("clicked link") << u"click; ask link %1"_s.arg(a) << Arrival::ByStep;
    QTest::newRow("script's link") << u"ask link %1"_s.arg(a) << Arrival::ByPage;
    QTest::newRow("click counts once")
        << u"click; ask link %1; ask link %1"_s.arg(a) << Arrival::ByPage;
    QTest::newRow("sent form") << u"click; ask form %1"_s.arg(a) << Arrival::ByStep;
    QTest::newRow("click before a redirect of the load under way counts on")
        << u"load %1; ask typed %1; click; ask redirect %1; ask link %1"_s.arg(a)
        << Arrival::ByStep;
    QTest::newRow("redirect is of the same arrival")
        << u"load %1; ask typed %1; ask redirect %2"_s.arg(a, b) << Arrival::ByAddress;
    QTest::newRow("location.replace")
        << opened(a) + u"click; ask redirect %1"_s.arg(b) << Arrival::ByPage;
    QTest::newRow("user's step") << u"step; ask step %1"_s.arg(a) << Arrival::ByStep;
    QTest::newRow("page's step") << u"ask step %1"_s.arg(a) << Arrival::ByPage;
    QTest::newRow("step counts once")
        << u"step; ask step %1; ask step %1"_s.arg(a) << Arrival::ByPage;
}

void tst_navigation::arrival()
{
    QFETCH(const QString, facts);
    QFETCH(const Arrival, arrival);
    Scene scene;
    scene.happens(facts);
    QCOMPARE(scene.navigation.arrival(), arrival);
}

void tst_navigation::addressBeforePage_data()
{
    QTest::addColumn<QString>("facts");
    QTest::addColumn<QString>("address");
    QTest::newRow("own window") << u"load %1; ask typed %1; start %1"_s.arg(a) << u"asked"_s;
    QTest::newRow("opener may have written") << u"adopt"_s << u"about:blank"_s;
    QTest::newRow("on its way") << u"adopt; ask other %1; start %1; at %1 0"_s.arg(a) << a;
    QTest::newRow("on its way, and the opener has written")
        << u"adopt; ask other %1; start %1; at  0"_s.arg(a) << u"about:blank"_s;
    QTest::newRow("given up") << u"adopt; ask other %1; start %1; at %1 0; stopped %1"_s.arg(a)
                              << u"about:blank"_s;
}

void tst_navigation::addressBeforePage()
{
    QFETCH(const QString, facts);
    QFETCH(const QString, address);
    Scene scene;
    scene.happens(facts);
    QCOMPARE(scene.navigation.addressBeforePage(u"asked"_s, scene.place.shown), address);
}

void tst_navigation::signInIsForThePageOnItsWay_data()
{
    QTest::addColumn<QString>("facts");
    QTest::addColumn<bool>("may");
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("asked") << u"ask link %1"_s.arg(a) << true;
    QTest::newRow("started") << u"ask link %1; start %1"_s.arg(a) << true;
    QTest::newRow("another") << u"ask link %1; start %1"_s.arg(b) << false;
    QTest::newRow("fragment and user name aside") << u"ask link http://user@a.example/#x"_s << true;
    QTest::newRow("redirected from")
        << u"ask link %1; start %1; ask redirect %2"_s.arg(a, b) << false;
    QTest::newRow("redirected to") << u"ask link %2; start %2; ask redirect %1"_s.arg(a, b) << true;
    QTest::newRow("over") << opened(a) << false;
}

void tst_navigation::signInIsForThePageOnItsWay()
{
    QFETCH(const QString, facts);
    QFETCH(const bool, may);
    Scene scene;
    scene.happens(facts);
    QCOMPARE(scene.navigation.isOnItsWay(QUrl(a)), may);
}

void tst_navigation::busy_data()
{
    QTest::addColumn<QString>("facts");
    QTest::addColumn<bool>("busy");
    QTest::addColumn<bool>("document");
    const QString started = u"load %1; ask typed %1; start %1;"_s.arg(a);
    QTest::newRow("nothing") << QString() << false << false;
    QTest::newRow("asked") << u"load %1; ask typed %1"_s.arg(a) << false << false;
    QTest::newRow("started") << started << true << false;
    QTest::newRow("page there") << started + u"at %1 1; document %1"_s.arg(a) << true << true;
    QTest::newRow("page complete")
        << started + u"at %1 1; document %1; loaded"_s.arg(a) << true << true;
    QTest::newRow("ended") << opened(a) << false << true;
    QTest::newRow("stopped") << started + u"stop; stopped %1"_s.arg(a) << false << false;
    QTest::newRow("crashed") << started + u"crash"_s << false << false;
    QTest::newRow("denied") << u"deny link %1; start %1"_s.arg(a) << false << false;
}

void tst_navigation::busy()
{
    QFETCH(const QString, facts);
    QFETCH(const bool, busy);
    QFETCH(const bool, document);
    Scene scene;
    scene.happens(facts);
    QCOMPARE(scene.navigation.isBusy(), busy);
    QCOMPARE(scene.navigation.hasDocument(), document);
}

void tst_navigation::holdsNothing_data()
{
    QTest::addColumn<QString>("facts");
    QTest::addColumn<bool>("nothing");
    QTest::newRow("new") << QString() << true;
    QTest::newRow("page") << opened(a) << false;
    QTest::newRow("under way") << u"ask link %1"_s.arg(a) << false;
    QTest::newRow("no contents") << u"ask link %1; start %1; stopped %1"_s.arg(a) << true;
    QTest::newRow("stopped") << u"ask link %1; start %1; stop; stopped %1"_s.arg(a) << false;
    QTest::newRow("blank")
        << u"load about:blank; at about:blank 1; document about:blank; blankShown"_s << true;
}

void tst_navigation::holdsNothing()
{
    QFETCH(const QString, facts);
    QFETCH(const bool, nothing);
    Scene scene;
    scene.happens(facts);
    QCOMPARE(scene.navigation.holdsNothing(), nothing);
}

void tst_navigation::linksAreForgottenOnce()
{
    Navigation navigation;
    navigation.setFlags(NavFlags::NoHistory);
    QVERIFY(!navigation.leavesTrace());
    navigation.forgetLink(QUrl(a));
    QCOMPARE(navigation.linksToForget(), QList<QUrl>{QUrl(a)});
    QCOMPARE(navigation.takeLinksToForget(), QList<QUrl>{QUrl(a)});
    QVERIFY(navigation.linksToForget().isEmpty());
}

/// Whatever a page was about, a new value knows nothing of it.
void tst_navigation::nothingIsLeft()
{
    Scene scene;
    scene.happens(u"adopt; flags 2; click; step; never link chrome://crash/;"_s + opened(a)
                  + u"load %1; ask typed %1; start %1"_s.arg(b));
    scene.navigation = {};
    scene.place = {};
    scene.forget();
    QCOMPARE(scene.navigation.location(), QString());
    QVERIFY(!scene.navigation.isBusy() && !scene.navigation.isAdopted());
    scene.happens(opened(a));
    QCOMPARE(scene.told().first(), "before "_L1 + a);
    QCOMPARE(scene.told().last(), u"ended"_s);
    QCOMPARE(scene.navigation.arrival(), Arrival::ByAddress);
}

QTEST_GUILESS_MAIN(tst_navigation)
#include "tst_navigation.moc"
