#include <QComboBox>
#include <QDialogButtonBox>
#include <QLibraryInfo>
#include <QMenu>
#include <QPushButton>

#include "../Session.h"
#include "EngineTest.h"
#include "Language.h"
#include "MenuTable.h"
#include "QtTexts.h"
#include "ToolBar.h"

using namespace Qt::StringLiterals;

/// The interface's language changes while ten windows with real pages are open.
class tst_LanguageWalk : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyLanguageAndBack();
    void qtsOwnTextsFollow();
    void languagesThatQtDoesNotKnow_data();
    void languagesThatQtDoesNotKnow();

private:
    QStringList texts() const;
    void apply(const QString &language) const;
    void keepPictures(const QString &language) const;
    static QWidget *form() { return Forms::named("frmOptions").value(0); }
    static QString cancelText()
    {
        const QDialogButtonBox box(QDialogButtonBox::Cancel);
        return box.button(QDialogButtonBox::Cancel)->text();
    }

    std::unique_ptr<Session> m_session;
};

namespace {
const QString shipped = QStringLiteral(ORVANE_SOURCE_DIR "/appdata/Languages/");

QStringList languages()
{
    QStringList names = QDir(shipped).entryList({u"*.ini"_s}, QDir::Files, QDir::Name);
    for (QString &name : names)
        name.chop(4);
    return names;
}
}

void tst_LanguageWalk::init()
{
    m_session = std::make_unique<Session>();
    for (const QString &name : languages()) {
        QVERIFY(QFile::copy(shipped + name + ".ini"_L1,
                            AppFolder::appData("Languages/"_L1 + name + ".ini"_L1)));
    }
    m_session->start();
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/home"_s)));
}

void tst_LanguageWalk::cleanup()
{
    QtTexts::follow(u"English"_s);
    m_session.reset();
}

/// Every caption of the menus, tool tips, side bars, windows and the dialog.
QStringList tst_LanguageWalk::texts() const
{
    QStringList result;
    for (const MenuEntry &entry : menuTable()) {
        if (entry.kind != MenuEntry::Kind::Separator)
            result.append(m_session->item(entry.name)->text());
    }
    for (const auto *bar : m_session->frame->findChildren<ToolBar *>()) {
        for (int index = 1; index <= bar->buttonCount(); ++index)
            result.append(bar->toolTip(index));
    }
    for (const QWidget *top : {static_cast<QWidget *>(m_session->frame.get()), form()}) {
        result.append(top->windowTitle());
        for (const auto *button : top->findChildren<QAbstractButton *>())
            result.append(button->objectName() + u' ' + button->text());
    }
    for (const QMdiSubWindow *window : browserForms()) {
        result.append(window->windowTitle());
        for (const QAction *action : window->systemMenu()->actions())
            result.append(action->text());
    }
    return result;
}

void tst_LanguageWalk::apply(const QString &language) const
{
    form()->findChild<QComboBox *>()->setCurrentText(language);
    QTest::mouseClick(form()->findChild<QPushButton *>(u"cmdApply"_s), Qt::LeftButton);
    QCOMPARE(languageName(), language);
}

/// For the eye: pictures of frame, menu and dialog, in the folder that ORVANE_PICTURES names.
void tst_LanguageWalk::keepPictures(const QString &language) const
{
    const QString folder = qEnvironmentVariable("ORVANE_PICTURES");
    if (folder.isEmpty())
        return;
    auto *menu = m_session->frame->findChild<QMenu *>(u"mnuTools"_s);
    const QString name = folder + u'/' + language;
    QVERIFY(m_session->frame->grab().save(name + "-frame.png"_L1));
    QVERIFY(form()->grab().save(name + "-options.png"_L1));
    if (menu)
        menu->adjustSize();
    QVERIFY(!menu || menu->grab().save(name + "-menu.png"_L1));
}

void tst_LanguageWalk::everyLanguageAndBack()
{
    const QStringList paths{u"/home"_s, u"/one"_s, u"/two"_s};
    for (int number = 1; number < 10; ++number)
        m_session->frame->openBrowserWindow(m_session->server.url(paths.at(number % 3)),
                                            WindowState::AsOthers);
    QCOMPARE(m_session->windows(), 10);
    for (const BrowserWindow *window : browserForms()) {
        const WebBrowser &engine = *window->browser();
        QTRY_VERIFY(engine.hasDocument() && !engine.isBusy());
        QTRY_VERIFY(!window->windowTitle().startsWith("http"_L1));
    }
    m_session->choose("mnuToolsOptions");
    QVERIFY(QTest::qWaitForWindowExposed(form(), 30000));
    apply(u"English"_s);
    const QStringList english = texts();
    QStringList seen{english.join(u'\n')};
    for (const QString &language : languages()) {
        apply(language);
        QCOMPARE(m_session->windows(), 10);
        if (language != "English"_L1)
            QVERIFY2(!seen.contains(texts().join(u'\n')), "each language has texts of its own");
        seen.append(texts().join(u'\n'));
        keepPictures(language);
    }
    apply(u"English"_s);
    QCOMPARE(texts(), english);
    for (const BrowserWindow *window : browserForms())
        QVERIFY(window->browser()->hasDocument());
}

void tst_LanguageWalk::qtsOwnTextsFollow()
{
    const QString english = cancelText();
    m_session->choose("mnuToolsOptions");
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (!QFile::exists(folder + "/qtbase_de.qm"_L1))
        QSKIP("this machine has no translations of Qt");
    apply(u"German"_s);
    QCOMPARE(cancelText(), u"Abbrechen"_s);
    apply(u"French"_s);
    QVERIFY(cancelText() != english);
    QVERIFY(cancelText() != "Abbrechen"_L1);
    apply(u"English"_s);
    QCOMPARE(cancelText(), english);
}

void tst_LanguageWalk::languagesThatQtDoesNotKnow_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("no language") << u"My own words"_s;
    QTest::newRow("empty") << QString();
    QTest::newRow("one without a translation") << u"Zulu"_s;
}

void tst_LanguageWalk::languagesThatQtDoesNotKnow()
{
    QFETCH(QString, language);
    const QString english = cancelText();
    QtTexts::follow(u"German"_s);
    QtTexts::follow(language);
    QCOMPARE(cancelText(), english);
}

ORVANE_ENGINE_TEST_MAIN(tst_LanguageWalk)
#include "tst_languagewalk.moc"
