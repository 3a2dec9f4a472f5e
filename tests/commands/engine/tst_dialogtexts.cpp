#include <QPdfDocument>
#include <QProgressDialog>
#include <QTabWidget>
#include <functional>

#include "../Session.h"
#include "AddFavoriteDialog.h"
#include "BookmarkImport.h"
#include "CrashNotice.h"
#include "DialogRoom.h"
#include "EngineTest.h"
#include "FavoritesHome.h"
#include "JobProgress.h"
#include "Language.h"
#include "LoginFields.h"
#include "MsgBox.h"
#include "OrganizeFavoritesDialog.h"
#include "PageFindBar.h"
#include "PageProperties.h"
#include "PageQuestionBox.h"
#include "PageSetupDialog.h"
#include "PrintPreview.h"
#include "ProfileProgress.h"
#include "QtTexts.h"
#include "QtWebBrowser.h"
#include "ScriptErrorsDialog.h"
#include "SearchBar.h"
#include "SkippedDialog.h"
#include "TransferStrip.h"
#include "WebPage.h"

/// Every dialog, bar and strip of the program in every language: each text has the room it needs,
/// and no two controls have the same access key.
class tst_DialogTexts : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();
    void textsFit_data();
    void textsFit();

private:
    /// Makes and shows one; the test closes it.
    using Opener = std::function<QWidget *()>;

    void describeMenuDialogs();
    void describePageDialogs();
    void describeFavorites();
    void describeStrips();
    Opener fromMenu(const char *item, const char *form);
    Opener page(const char *item, int number);
    void keepPicture() const;
    Opener bar(const std::function<QWidget *(QWidget *)> &make);
    /// Of a page, in a window that has room for all of it.
    Opener asked(const std::function<PageQuestion()> &make);
    WebPage *webPage() const
    {
        return qobject_cast<QtWebBrowser *>(m_session->active()->browser())->page();
    }

    std::unique_ptr<FavoritesHome> m_home;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<QWidget> m_place;
    QList<std::pair<QString, Opener>> m_dialogs;
    QPointer<QWidget> m_open;
};

namespace {
const QString shipped = QStringLiteral(ORVANE_SOURCE_DIR "/appdata/Languages/");
/// The narrowest a window is expected to be used at, pixels.
constexpr int narrowWindow = 640;

QStringList languages()
{
    QStringList names = QDir(shipped).entryList({u"*.ini"_s}, QDir::Files, QDir::Name);
    for (QString &name : names)
        name.chop(4);
    return names;
}

QWidget *shown(QWidget *window)
{
    window->show();
    return window;
}

PageQuestion pageQuestion(const QString &section, const QString &key)
{
    PageQuestion question;
    question.title = languageText(section, key, u"?"_s);
    question.text = languageText(u"LoginDialog"_s, u"strWrong"_s, u"?"_s);
    question.yes = languageText(u"PageQuestions"_s, u"cmdLeave"_s, u"?"_s);
    question.no = languageText(u"PageQuestions"_s, u"cmdStay"_s, u"?"_s);
    return question;
}

/// One of each kind that an import can leave out.
ImportOutcome outcome()
{
    ImportOutcome result;
    result.links = 12345;
    using enum BookmarkProblem::Reason;
    for (const auto reason : {NoAddress, BrokenTag, TooLong, Query, TooDeep, NotWritten})
        result.problems.append({reason, 123456, u"A favorite"_s});
    result.skipped = int(result.problems.size());
    return result;
}
}

void tst_DialogTexts::initTestCase()
{
    // A machine that has the platform's control panel must not start it.
    qputenv("PATH", "/nowhere");
    m_home = std::make_unique<FavoritesHome>();
    QVERIFY(m_home->writeLink(u"Links/one.url"_s, "http://one/"));
    m_session = std::make_unique<Session>();
    for (const QString &name : languages()) {
        QVERIFY(QFile::copy(shipped + name + ".ini"_L1,
                            AppFolder::appData("Languages/"_L1 + name + ".ini"_L1)));
    }
    m_session->start();
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/home"_s)));
    describeMenuDialogs();
    describePageDialogs();
    describeFavorites();
    describeStrips();
}

void tst_DialogTexts::cleanupTestCase()
{
    m_session.reset();
    m_home.reset();
}

void tst_DialogTexts::cleanup()
{
    delete m_open;
    m_place.reset();
    setLanguageName(u"English"_s);
    QtTexts::follow(u"English"_s);
}

tst_DialogTexts::Opener tst_DialogTexts::fromMenu(const char *item, const char *form)
{
    return [this, item, form] {
        m_session->choose(item);
        return Forms::named(form).value(0);
    };
}

tst_DialogTexts::Opener tst_DialogTexts::page(const char *item, int number)
{
    return [this, item, number] {
        QWidget *dialog = fromMenu(item, "frmInternetOptions")();
        dialog->findChild<QTabWidget *>()->setCurrentIndex(number);
        return dialog;
    };
}

/// In a window as narrow as one may be.
tst_DialogTexts::Opener tst_DialogTexts::bar(const std::function<QWidget *(QWidget *)> &make)
{
    return [this, make] {
        m_place = std::make_unique<QWidget>();
        m_place->resize(narrowWindow, 300);
        m_place->show();
        QWidget *result = make(m_place.get());
        result->show();
        result->setGeometry(0, 0, narrowWindow, result->sizeHint().height());
        return result;
    };
}

tst_DialogTexts::Opener tst_DialogTexts::asked(const std::function<PageQuestion()> &make)
{
    return [this, make] {
        m_place = std::make_unique<QWidget>();
        m_place->resize(narrowWindow, narrowWindow);
        m_place->show();
        auto *result = new PageQuestionBox(make(), true, m_place.get());
        result->show();
        result->fitInto(m_place->size());
        return result;
    };
}

void tst_DialogTexts::describeMenuDialogs()
{
    m_dialogs += {
        {u"options"_s, fromMenu("mnuToolsOptions", "frmOptions")},
        {u"internet options"_s, page("mnuToolsInternetOptions", 0)},
        {u"advanced internet options"_s, page("mnuToolsAdvancedInternetOptions", 1)},
        {u"blocked addresses"_s, fromMenu("mnuToolsSmartPopupBlockerList", "frmBlockedURLs")},
        {u"open"_s, fromMenu("mnuFileOpen", "frmOpenURL")},
        {u"about"_s, fromMenu("mnuHelpAbout", "frmAbout")},
        {u"keys"_s, fromMenu("mnuHelpKeys", "frmKeys")},
    };
}

void tst_DialogTexts::describePageDialogs()
{
    QWidget *owner = m_session->frame.get();
    m_dialogs += {
        {u"page set-up"_s,
         [owner] {
             const QPageLayout layout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF());
             return shown(new PageSetupDialog(layout, owner));
         }},
        {u"print preview"_s,
         [this] {
             auto *preview = new PrintPreview(webPage());
             [preview] { QTRY_VERIFY(preview->document().pageCount() > 0); }();
             return shown(preview);
         }},
        {u"properties"_s, [this, owner] { return shown(new PageProperties(webPage(), owner)); }},
        {u"sign-in"_s, asked([] {
             PageQuestion question = pageQuestion(u"LoginDialog"_s, u"strProxyQuestion"_s);
             question.fields = [](QWidget *parent) { return new LoginFields({}, true, parent); };
             return question;
         })},
        {u"question of a page"_s,
         asked([] { return pageQuestion(u"PageQuestions"_s, u"strLeave"_s); })},
        {u"script errors"_s,
         [owner] {
             auto *errors = new ScriptErrorsDialog(owner, [] { return u"http://page/"_s; });
             errors->add({u"Uncaught Error: first"_s, 12345, 678, u"http://page/"_s});
             errors->add({u"Uncaught Error: second"_s, 12345, 678, u"http://page/"_s});
             [errors] { QTRY_VERIFY(errors->isVisible()); }();
             return errors;
         }},
        {u"find bar"_s, bar([this](QWidget *place) {
             auto *find = new PageFindBar(webPage(), place);
             find->arrangeFor(place->width());
             return find;
         })},
        {u"crashed page"_s, bar([](QWidget *place) { return new CrashNotice(place); })},
    };
}

void tst_DialogTexts::describeFavorites()
{
    QWidget *owner = m_session->frame.get();
    m_dialogs += {
        {u"add favorite"_s,
         [this, owner] {
             return shown(new AddFavoriteDialog(
                 {u"http://page/"_s, u"A page"_s, m_home->favorites()}, owner));
         }},
        {u"organize favorites"_s,
         [this, owner] { return shown(new OrganizeFavoritesDialog(m_home->favorites(), owner)); }},
        {u"left out"_s, [owner] { return shown(new SkippedDialog(outcome(), owner)); }},
    };
}

void tst_DialogTexts::describeStrips()
{
    QWidget *owner = m_session->frame.get();
    m_dialogs += {
        {u"import under way"_s, bar([](QWidget *place) {
             auto *strip = new TransferStrip(place);
             strip->begin(u"Import"_s);
             strip->setProgress(50);
             return strip;
         })},
        {u"import done"_s, bar([](QWidget *place) {
             auto *strip = new TransferStrip(place);
             strip->end(u"Imported"_s, true);
             return strip;
         })},
        {u"profile under way"_s, bar([](QWidget *place) {
             auto *strip = new ProfileProgress(place);
             strip->show(123, 456);
             return strip;
         })},
        {u"search bar"_s, bar([](QWidget *place) {
             auto *search = new SearchBar(place);
             search->loadLanguage();
             return search;
         })},
        {u"message"_s,
         [owner] {
             MsgBox::inform(owner, languageText(u"frmBlockedURLs"_s, u"sPatternMatch"_s, u"?"_s));
             return owner->findChild<QWidget *>(u"MsgBox"_s);
         }},
        {u"question"_s,
         [owner] {
             MsgBox::ask(owner, languageText(u"frmMain"_s, u"alertExit"_s, u"?"_s), {}, {});
             return owner->findChild<QWidget *>(u"MsgBox"_s);
         }},
    };
}

/// For the eye, in the folder that ORVANE_PICTURES names.
void tst_DialogTexts::keepPicture() const
{
    const QString folder = qEnvironmentVariable("ORVANE_PICTURES");
    if (!folder.isEmpty())
        QVERIFY(m_open->grab().save(folder + u'/' + QLatin1String(QTest::currentDataTag())
                                    + ".png"_L1));
}

void tst_DialogTexts::textsFit_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("dialog");
    for (const QString &language : languages()) {
        for (int index = 0; index < int(m_dialogs.size()); ++index) {
            QTest::addRow("%s in %s", qPrintable(m_dialogs.at(index).first), qPrintable(language))
                << language << index;
        }
    }
}

void tst_DialogTexts::textsFit()
{
    QFETCH(QString, language);
    QFETCH(int, dialog);
    setLanguageName(language);
    QtTexts::follow(language);
    m_open = m_dialogs.at(dialog).second();
    QVERIFY(m_open);
    QTRY_VERIFY(m_open->isVisible());
    QVERIFY(QTest::qWaitForWindowExposed(m_open->window()));
    QTRY_VERIFY2(roomFaults(*m_open).isEmpty(), qPrintable(roomFaults(*m_open).join(u'\n')));
    QVERIFY2(accessKeyFaults(*m_open).isEmpty(), qPrintable(accessKeyFaults(*m_open).join(u'\n')));
    keepPicture();
}

ORVANE_ENGINE_TEST_MAIN(tst_DialogTexts)
#include "tst_dialogtexts.moc"
