#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTreeWidget>
#include <QtTest>

#include "FakeEngineData.h"
#include "IniStore.h"
#include "InternetOptionsDialog.h"
#include "ProgramWithoutEngine.h"
#include "Unlogged.h"

using namespace Qt::StringLiterals;

/// The two items of internet options: the platform's own where there is one, else the dialog.
class tst_InternetOptions : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void platformsControlPanelIsStarted_data();
    void platformsControlPanelIsStarted();
    void panelThatDoesNotStartGivesTheDialog();
    void itemsOpenTheirPages();
    void secondItemTurnsThePageOfTheOpenDialog();
    void withoutAFileItShowsTheDefaults();
    void itShowsWhatIsStored();
    void applyWritesUsesAndStays();
    void saveCloses();
    void cancelChangesNothing();
    void escapeCloses();
    void everyControlIsWrittenAndShownAgain();
    void whatCannotBeUsedIsToldAndNotWritten_data();
    void whatCannotBeUsedIsToldAndNotWritten();
    void downloadsFolderIsMade();
    void downloadsFolderThatCannotBeMade_data();
    void downloadsFolderThatCannotBeMade();
    void proxyAddressOnlyForOnesOwn();
    void fontThatIsNotThereIsKept();
    void cacheIsMeasuredAndCleared();
    void programWithoutStoredData();
    void visitedLinksAreCleared();
    void cookiesAreListedBySite();
    void cookieIsDeleted();
    void siteIsDeletedByTheKeyboard();
    void allCookiesAreDeletedAfterAQuestion();
    void treeStaysOpenWhileCookiesCome();
    void threeThousandCookies();
    void folderIsChosen();
    void nextStartIsSaidBesideTheControl();
    void keyboardOrderIsTopToBottom();
    void everyControlHasAName();
    void whatCannotBeKeptIsTold_data();
    void whatCannotBeKeptIsTold();
    void rubbishInTheFileIsSurvived();
    void dictionariesAreTicked();
    void dictionariesOfTheDesktopNeedNoNames();
    void withoutATickNothingIsChecked();
    void dictionaryThatIsNotThereIsKept();
    void withoutADictionaryItSaysSo();

private:
    void open(const char *item = "mnuToolsInternetOptions") { m_program->choose(item); }
    void openAdvanced() { open("mnuToolsAdvancedInternetOptions"); }
    static InternetOptionsDialog *form()
    {
        return qobject_cast<InternetOptionsDialog *>(Forms::named("frmInternetOptions").value(0));
    }
    template <typename Control> static Control *find(const char *name)
    {
        return form()->findChild<Control *>(QLatin1String(name));
    }
    static void click(const char *name)
    {
        QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton);
    }
    static QStringList ticked()
    {
        QStringList tags;
        const auto *list = find<QListWidget>("lstDictionaries");
        for (int i = 0; i < list->count(); ++i) {
            if (list->item(i)->checkState() == Qt::Checked)
                tags.append(list->item(i)->data(Qt::UserRole).toString());
        }
        return tags;
    }
    static void tick(const QString &tag, Qt::CheckState state)
    {
        const auto *list = find<QListWidget>("lstDictionaries");
        for (int i = 0; i < list->count(); ++i) {
            if (list->item(i)->data(Qt::UserRole) == tag)
                list->item(i)->setCheckState(state);
        }
    }
    static int page() { return find<QTabWidget>("tabPages")->currentIndex(); }
    static QTreeWidget *tree() { return find<QTreeWidget>("lstCookies"); }
    static QStringList sites()
    {
        QStringList result;
        for (int index = 0; index < tree()->topLevelItemCount(); ++index)
            result.append(tree()->topLevelItem(index)->text(0));
        return result;
    }
    QString stored(const char *key) const
    {
        return readIni(u"Engine"_s, QString::fromLatin1(key), u"(none)"_s,
                       m_program->folder.file(u"AppData/Engine.ini"_s));
    }
    void fakePanel(const QByteArray &script) const;

    std::unique_ptr<ProgramWithoutEngine> m_program;
    std::unique_ptr<FakeData> m_data;
    QByteArray m_path;
    const QByteArray m_dataFolders = qgetenv("XDG_DATA_DIRS");
    const QByteArray m_locale = qgetenv("LC_ALL");
};

namespace {

StoredCookie cookie(const char *domain, const char *name, const QDateTime &expires = {})
{
    return {name, QString::fromLatin1(domain), u"/"_s, expires, false};
}

QList<StoredCookie> someCookies()
{
    return {cookie(".two.example", "b"), cookie("one.example", "a"),
            cookie("two.example", "a", QDateTime(QDate(2031, 2, 3), QTime(12, 0)))};
}

}

void tst_InternetOptions::init()
{
    m_path = qgetenv("PATH");
    m_program = std::make_unique<ProgramWithoutEngine>();
    // As a system with two dictionaries.
    qputenv("XDG_DATA_DIRS", m_program->folder.file(u"share"_s).toUtf8());
    qputenv("LC_ALL", "de_DE.UTF-8");
    for (const auto &name : {u"de_DE"_s, u"pl"_s})
        m_program->folder.write(u"share/hunspell-bdic/%1.bdic"_s.arg(name), "words");
    QVERIFY(m_program->folder.isValid());
    // A machine that has the platform's command must not start it.
    qputenv("PATH", m_program->folder.file(u"bin"_s).toUtf8());
    m_data = std::make_unique<FakeData>();
    m_program->start();
}

void tst_InternetOptions::cleanup()
{
    m_program.reset();
    m_data.reset();
    qputenv("PATH", m_path);
    qputenv("XDG_DATA_DIRS", m_dataFolders);
    qputenv("LC_ALL", m_locale);
}

void tst_InternetOptions::fakePanel(const QByteArray &script) const
{
    QVERIFY(m_program->folder.write(u"bin/rundll32"_s, script));
    QVERIFY(QFile::setPermissions(m_program->folder.file(u"bin/rundll32"_s),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void tst_InternetOptions::platformsControlPanelIsStarted_data()
{
    QTest::addColumn<QByteArray>("arguments");
    QTest::newRow("mnuToolsInternetOptions")
        << QByteArray("shell32.dll,Control_RunDLL|inetcpl.cpl,,0|");
    QTest::newRow("mnuToolsAdvancedInternetOptions")
        << QByteArray("shell32.dll,Control_RunDLL|inetcpl.cpl,,6|");
}

void tst_InternetOptions::platformsControlPanelIsStarted()
{
    QFETCH(QByteArray, arguments);
    const QString told = m_program->folder.file(u"told"_s);
    fakePanel("#!/bin/sh\nprintf '%s|' \"$@\" > '" + told.toUtf8() + ".part'\n/bin/mv '"
              + told.toUtf8() + ".part' '" + told.toUtf8() + "'\n");
    open(QTest::currentDataTag());
    QVERIFY2(!form(), "the platform's own is enough");
    QTRY_VERIFY(QFile::exists(told));
    QCOMPARE(m_program->folder.read(u"told"_s), arguments);
}

void tst_InternetOptions::panelThatDoesNotStartGivesTheDialog()
{
    fakePanel("#!/no/such/interpreter\n");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^cannot start"_s));
    open();
    QVERIFY(form());
}

void tst_InternetOptions::itemsOpenTheirPages()
{
    open();
    QVERIFY(form()->isVisible());
    QVERIFY(form()->isModal());
    QCOMPARE(form()->parentWidget(), m_program->frame.get());
    QCOMPARE(form()->windowTitle(), u"Internet Options"_s);
    QCOMPARE(page(), 0);
    click("cmdCancel");
    QTRY_VERIFY(!form());
    openAdvanced();
    QCOMPARE(page(), 1);
}

void tst_InternetOptions::secondItemTurnsThePageOfTheOpenDialog()
{
    open();
    const InternetOptionsDialog *first = form();
    m_program->frame->run(u"mnuToolsAdvancedInternetOptions"_s);
    QCOMPARE(Forms::named("frmInternetOptions").size(), 1);
    QCOMPARE(form(), first);
    QCOMPARE(page(), 1);
}

void tst_InternetOptions::withoutAFileItShowsTheDefaults()
{
    open();
    QCOMPARE(find<QSpinBox>("txtCacheLimit")->text(), u"Automatic"_s);
    QVERIFY(find<QCheckBox>("chkThirdParty")->isChecked());
    for (const char *name : {"chkScripts", "chkImages", "chkPdf", "chkHardware"})
        QVERIFY(find<QCheckBox>(name)->isChecked());
    for (const char *name :
         {"cboStandardFont", "cboSerifFont", "cboSansSerifFont", "cboFixedFont", "cboProxy"})
        QCOMPARE(find<QComboBox>(name)->currentIndex(), 0);
    QCOMPARE(find<QSpinBox>("txtFontSize")->value(), 16);
    QCOMPARE(find<QSpinBox>("txtFixedFontSize")->value(), 13);
    QCOMPARE(find<QSpinBox>("txtMinimumSize")->value(), 0);
    for (const char *name : {"txtProxyHost", "txtLanguages", "txtUserAgent", "txtDownloads"})
        QVERIFY(find<QLineEdit>(name)->text().isEmpty());
    QVERIFY2(!m_program->folder.exists(u"AppData/Engine.ini"_s), "opening it writes nothing");
    QVERIFY(m_data->newest->used.isEmpty());
}

void tst_InternetOptions::itShowsWhatIsStored()
{
    m_program->folder.write(u"AppData/Engine.ini"_s,
                            "[Engine]\r\nScripts=False\r\nCacheLimit=70\r\nProxy=SOCKS5\r\n"
                            "ProxyHost=proxy.example\r\nProxyPort=1080\r\nLanguages=de, en\r\n");
    openAdvanced();
    QVERIFY(!find<QCheckBox>("chkScripts")->isChecked());
    QCOMPARE(find<QSpinBox>("txtCacheLimit")->value(), 70);
    QCOMPARE(find<QComboBox>("cboProxy")->currentText(), u"SOCKS 5"_s);
    QCOMPARE(find<QLineEdit>("txtProxyHost")->text(), u"proxy.example"_s);
    QCOMPARE(find<QSpinBox>("txtProxyPort")->value(), 1080);
    QCOMPARE(find<QLineEdit>("txtLanguages")->text(), u"de, en"_s);
}

void tst_InternetOptions::applyWritesUsesAndStays()
{
    openAdvanced();
    QTest::mouseClick(find<QCheckBox>("chkScripts"), Qt::LeftButton, {}, QPoint(8, 8));
    click("cmdApply");
    QVERIFY(form()->isVisible());
    QCOMPARE(stored("Scripts"), u"False"_s);
    EngineOptions expected;
    expected.scripts = false;
    QCOMPARE(m_data->newest->used.size(), 1);
    QCOMPARE(m_data->newest->used.first(), expected);
    QCOMPARE(EngineOptions::read(), expected);
}

void tst_InternetOptions::saveCloses()
{
    open();
    find<QCheckBox>("chkThirdParty")->setChecked(false);
    click("cmdSave");
    QTRY_VERIFY(!form());
    QVERIFY(!EngineOptions::read().refuseThirdPartyCookies);
}

void tst_InternetOptions::cancelChangesNothing()
{
    openAdvanced();
    find<QCheckBox>("chkImages")->setChecked(false);
    click("cmdCancel");
    QTRY_VERIFY(!form());
    QVERIFY(!m_program->folder.exists(u"AppData/Engine.ini"_s));
}

void tst_InternetOptions::escapeCloses()
{
    open();
    QTest::keyClick(form(), Qt::Key_Escape);
    QTRY_VERIFY(!form());
}

void tst_InternetOptions::everyControlIsWrittenAndShownAgain()
{
    const QString folder = m_program->folder.file(u"down"_s);
    openAdvanced();
    find<QSpinBox>("txtCacheLimit")->setValue(33);
    for (const char *name : {"chkThirdParty", "chkScripts", "chkImages", "chkPdf", "chkHardware"})
        find<QCheckBox>(name)->setChecked(false);
    int entry = 0;
    for (const char *name :
         {"cboStandardFont", "cboSerifFont", "cboSansSerifFont", "cboFixedFont"}) {
        auto *box = find<QComboBox>(name);
        box->setCurrentIndex(1 + entry++ % (box->count() - 1));
    }
    find<QSpinBox>("txtFontSize")->setValue(21);
    find<QSpinBox>("txtFixedFontSize")->setValue(22);
    find<QSpinBox>("txtMinimumSize")->setValue(9);
    find<QComboBox>("cboProxy")->setCurrentIndex(2);
    QTest::keyClicks(find<QLineEdit>("txtProxyHost"), u"proxy.example"_s);
    find<QSpinBox>("txtProxyPort")->setValue(3128);
    QTest::keyClicks(find<QLineEdit>("txtLanguages"), u"fr, en"_s);
    QTest::keyClicks(find<QLineEdit>("txtUserAgent"), u" Mine/1.0 "_s);
    find<QLineEdit>("txtDownloads")->setText(folder);
    const QString serif = find<QComboBox>("cboSerifFont")->currentText();
    click("cmdSave");
    QTRY_VERIFY(!form());
    EngineOptions options = EngineOptions::read();
    QCOMPARE(options.cacheLimit, 33);
    QVERIFY(!options.refuseThirdPartyCookies && !options.scripts && !options.images
            && !options.pdfInPage && !options.hardwareRendering);
    QCOMPARE(options.serifFont, serif);
    QVERIFY(!options.standardFont.isEmpty() && !options.sansSerifFont.isEmpty()
            && !options.fixedFont.isEmpty());
    QCOMPARE(options.fontSize, 21);
    QCOMPARE(options.fixedFontSize, 22);
    QCOMPARE(options.minimumFontSize, 9);
    QCOMPARE(options.proxy, EngineOptions::Proxy::Http);
    QCOMPARE(options.proxyHost, u"proxy.example"_s);
    QCOMPARE(options.proxyPort, 3128);
    QCOMPARE(options.languages, u"fr, en"_s);
    QCOMPARE(options.userAgent, u"Mine/1.0"_s);
    QCOMPARE(options.downloadFolder, folder);
    open();
    click("cmdSave");
    QTRY_VERIFY(!form());
    QCOMPARE(EngineOptions::read(), options);
}

void tst_InternetOptions::whatCannotBeUsedIsToldAndNotWritten_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message");
    QTest::newRow("txtProxyHost") << u"two words"_s << u"This is not the address of a proxy."_s;
    QTest::newRow("txtLanguages") << u"German and English"_s << u"These are not languages."_s;
    QTest::newRow("txtUserAgent") << u"\u00fcber"_s << u"The user agent must be in"_s;
    QTest::newRow("txtDownloads") << u"not/absolute"_s << u"This is not a folder."_s;
}

void tst_InternetOptions::downloadsFolderIsMade()
{
    const QString folder = m_program->folder.file(u"new/one"_s);
    open();
    find<QLineEdit>("txtDownloads")->setText(folder);
    click("cmdSave");
    QTRY_VERIFY(!form());
    QVERIFY(QFileInfo(folder).isDir());
    QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
    QVERIFY(QDir(folder).removeRecursively());
    m_program->folder.write(u"new/one"_s, "a file now");
    open();
    click("cmdSave");
    QTRY_VERIFY2(!form(), "what was good once keeps nobody from changing something else");
}

void tst_InternetOptions::downloadsFolderThatCannotBeMade_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("in a file") << u"in-the-way/below"_s;
    QTest::newRow("a file") << u"in-the-way"_s;
    QTest::newRow("nowhere") << u"/proc/downloads"_s;
    QTest::newRow("nothing can be put into it") << u"/proc"_s;
}

void tst_InternetOptions::downloadsFolderThatCannotBeMade()
{
    QFETCH(QString, folder);
    m_program->folder.write(u"in-the-way"_s, "a file");
    open();
    auto *field = find<QLineEdit>("txtDownloads");
    field->setText(folder.startsWith(u'/') ? folder : m_program->folder.file(folder));
    click("cmdSave");
    QTRY_VERIFY(form()->findChild<QMessageBox *>());
    auto *box = form()->findChild<QMessageBox *>();
    QVERIFY2(box->text().startsWith(u"This folder cannot be made"_s), qPrintable(box->text()));
    QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    QVERIFY(form()->isVisible());
    QVERIFY(!m_program->folder.exists(u"AppData/Engine.ini"_s));
}

void tst_InternetOptions::whatCannotBeUsedIsToldAndNotWritten()
{
    QFETCH(QString, text);
    QFETCH(QString, message);
    open();
    find<QComboBox>("cboProxy")->setCurrentIndex(3);
    find<QLineEdit>("txtProxyHost")->setText(u"proxy.example"_s);
    auto *field = find<QLineEdit>(QTest::currentDataTag());
    field->setText(text);
    QVERIFY(QTest::qWaitForWindowActive(form()));
    click("cmdSave");
    QTRY_VERIFY(form()->findChild<QMessageBox *>());
    auto *box = form()->findChild<QMessageBox *>();
    QVERIFY(box->text().startsWith(message));
    QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    QVERIFY(form()->isVisible());
    QCOMPARE(page(), 1);
    QTRY_COMPARE(form()->focusWidget(), field);
    QVERIFY(!m_program->folder.exists(u"AppData/Engine.ini"_s));
    QVERIFY(m_data->newest->used.isEmpty());
}

void tst_InternetOptions::proxyAddressOnlyForOnesOwn()
{
    openAdvanced();
    auto *kind = find<QComboBox>("cboProxy");
    for (int index = 0; index < kind->count(); ++index) {
        kind->setCurrentIndex(index);
        QCOMPARE(find<QLineEdit>("txtProxyHost")->isEnabled(), index >= 2);
        QCOMPARE(find<QSpinBox>("txtProxyPort")->isEnabled(), index >= 2);
    }
}

void tst_InternetOptions::fontThatIsNotThereIsKept()
{
    EngineOptions options;
    options.serifFont = u"No Such Font"_s;
    QVERIFY(options.write());
    openAdvanced();
    QCOMPARE(find<QComboBox>("cboSerifFont")->currentText(), u"No Such Font"_s);
    click("cmdSave");
    QTRY_VERIFY(!form());
    QCOMPARE(EngineOptions::read(), options);
}

void tst_InternetOptions::cacheIsMeasuredAndCleared()
{
    m_data->bytes = 5 * 1024 * 1024;
    open();
    QCOMPARE(find<QLabel>("lblCacheUsed")->text(), u"In use: 5.0 MB"_s);
    click("cmdClearCache");
    QCOMPARE(m_data->newest->bytes, 0);
    QCOMPARE(find<QLabel>("lblCacheUsed")->text(), u"In use: 0 bytes"_s);
}

void tst_InternetOptions::programWithoutStoredData()
{
    m_data->stored = false;
    open();
    QVERIFY(find<QLabel>("lblCacheUsed")->text().startsWith("Another running program"_L1));
}

void tst_InternetOptions::visitedLinksAreCleared()
{
    open();
    click("cmdClearLinks");
    QCOMPARE(m_data->newest->linksCleared, 1);
    QCOMPARE(find<QLabel>("lblLinks")->text(), u"No link counts as visited any more."_s);
}

void tst_InternetOptions::cookiesAreListedBySite()
{
    m_data->kept = someCookies();
    open();
    QCOMPARE(sites(), QStringList({u"one.example"_s, u"two.example"_s}));
    const QTreeWidgetItem &two = *tree()->topLevelItem(1);
    QCOMPARE(two.childCount(), 2);
    QCOMPARE(two.child(0)->text(0), u"a"_s);
    QCOMPARE(two.child(0)->text(1), u"/"_s);
    QCOMPARE(two.child(0)->text(2), QLocale().toString(QDate(2031, 2, 3), QLocale::ShortFormat));
    QCOMPARE(two.child(1)->text(2), u"With the program"_s);
}

void tst_InternetOptions::cookieIsDeleted()
{
    m_data->kept = someCookies();
    open();
    QVERIFY(!find<QPushButton>("cmdDeleteCookies")->isEnabled());
    tree()->expandAll();
    tree()->setCurrentItem(tree()->topLevelItem(1)->child(0));
    click("cmdDeleteCookies");
    QTRY_COMPARE(tree()->topLevelItem(1)->childCount(), 1);
    QCOMPARE(m_data->newest->kept.size(), 2);
    QVERIFY(!m_data->newest->kept.contains(someCookies().last()));
}

void tst_InternetOptions::siteIsDeletedByTheKeyboard()
{
    m_data->kept = someCookies();
    open();
    tree()->setFocus();
    QTest::keyClick(tree(), Qt::Key_Home);
    QTest::keyClick(tree(), Qt::Key_End);
    QCOMPARE(tree()->currentItem()->text(0), u"two.example"_s);
    QTest::keyClick(tree(), Qt::Key_Delete);
    QTRY_COMPARE(sites(), QStringList(u"one.example"_s));
    QCOMPARE(m_data->newest->kept, QList<StoredCookie>{someCookies().at(1)});
}

void tst_InternetOptions::allCookiesAreDeletedAfterAQuestion()
{
    m_data->kept = someCookies();
    open();
    for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        click("cmdDeleteAllCookies");
        QTRY_VERIFY(form()->findChild<QMessageBox *>());
        QPointer<QMessageBox> box = form()->findChild<QMessageBox *>();
        QTest::mouseClick(box->button(answer), Qt::LeftButton);
        QTRY_VERIFY(!box);
        QCOMPARE(m_data->newest->kept.isEmpty(), answer == QMessageBox::Yes);
    }
    QTRY_COMPARE(tree()->topLevelItemCount(), 0);
    QVERIFY(!find<QPushButton>("cmdDeleteAllCookies")->isEnabled());
}

void tst_InternetOptions::treeStaysOpenWhileCookiesCome()
{
    m_data->kept = someCookies();
    open();
    tree()->topLevelItem(1)->setExpanded(true);
    tree()->setCurrentItem(tree()->topLevelItem(1)->child(1));
    m_data->newest->kept.append(cookie("another.example", "x"));
    emit m_data->newest->cookiesChanged();
    QTRY_COMPARE(sites().size(), 3);
    QVERIFY(tree()->topLevelItem(2)->isExpanded());
    QVERIFY(!tree()->topLevelItem(1)->isExpanded());
    QVERIFY(tree()->topLevelItem(2)->child(1)->isSelected());
    QCOMPARE(tree()->selectedItems().size(), 1);
}

void tst_InternetOptions::threeThousandCookies()
{
    for (int number = 0; number < 3000; ++number) {
        m_data->kept.append(cookie(qPrintable(u"site%1.example"_s.arg(number / 10)),
                                   qPrintable(QString::number(number))));
    }
    open();
    QCOMPARE(sites().size(), 300);
    tree()->selectAll();
    click("cmdDeleteCookies");
    QTRY_COMPARE(tree()->topLevelItemCount(), 0);
    QVERIFY(m_data->newest->kept.isEmpty());
}

void tst_InternetOptions::folderIsChosen()
{
    QVERIFY(QDir(m_program->folder.path()).mkpath(u"chosen"_s));
    openAdvanced();
    click("cmdBrowse");
    QTRY_VERIFY(form()->findChild<QFileDialog *>());
    auto *dialog = form()->findChild<QFileDialog *>();
    emit dialog->fileSelected(m_program->folder.file(u"chosen"_s));
    dialog->close();
    QCOMPARE(find<QLineEdit>("txtDownloads")->text(), m_program->folder.file(u"chosen"_s));
}

void tst_InternetOptions::nextStartIsSaidBesideTheControl()
{
    openAdvanced();
    QStringList said;
    for (const auto *control : form()->findChildren<QWidget *>()) {
        if (control->accessibleDescription() == "from the next start on"_L1)
            said.append(control->objectName());
    }
    said.sort();
    QCOMPARE(
        said,
        QStringList({u"chkHardware"_s, u"txtCacheLimit"_s, u"txtLanguages"_s, u"txtUserAgent"_s}));
    QCOMPARE(form()->findChildren<QLabel *>(u"lblNextStart"_s).size(), said.size());
}

void tst_InternetOptions::keyboardOrderIsTopToBottom()
{
    openAdvanced();
    find<QComboBox>("cboProxy")->setCurrentIndex(2);
    QStringList order;
    for (const char *first : {"cmdClearCache", "chkScripts"}) {
        QWidget *widget = find<QWidget>(first);
        const QWidget *start = widget;
        do {
            const QString name = widget->objectName();
            if ((widget->focusPolicy() & Qt::TabFocus) && !name.isEmpty()
                && !name.startsWith("qt_"_L1) && !name.startsWith("ScrollBar"_L1))
                order.append(name);
            widget = widget->nextInFocusChain();
        } while (widget != start && widget->objectName() != "chkScripts"_L1
                 && widget->objectName() != "cmdApply"_L1);
    }
    QCOMPARE(order,
             QStringList({u"cmdClearCache"_s, u"txtCacheLimit"_s,    u"chkThirdParty"_s,
                          u"lstCookies"_s,    u"cmdDeleteCookies"_s, u"cmdDeleteAllCookies"_s,
                          u"cmdClearLinks"_s, u"chkScripts"_s,       u"chkImages"_s,
                          u"chkPdf"_s,        u"chkHardware"_s,      u"cboStandardFont"_s,
                          u"txtFontSize"_s,   u"cboFixedFont"_s,     u"txtFixedFontSize"_s,
                          u"cboSerifFont"_s,  u"cboSansSerifFont"_s, u"txtMinimumSize"_s,
                          u"cboProxy"_s,      u"txtProxyHost"_s,     u"txtProxyPort"_s,
                          u"txtLanguages"_s,  u"txtUserAgent"_s,     u"txtDownloads"_s,
                          u"cmdBrowse"_s,     u"txtSleepAfter"_s,    u"txtSleepMemory"_s,
                          u"lstSites"_s,      u"cmdRemoveSite"_s,    u"cmdRemoveAllSites"_s,
                          u"chkSpelling"_s,   u"lstDictionaries"_s}));
}

void tst_InternetOptions::everyControlHasAName()
{
    open();
    for (const auto *control : form()->findChildren<QWidget *>()) {
        const QString name = control->objectName();
        if (!(control->focusPolicy() & Qt::TabFocus) || name.isEmpty() || name.startsWith("qt_"_L1)
            || qobject_cast<const QTabBar *>(control->parentWidget()))
            continue;
        const auto *button = qobject_cast<const QAbstractButton *>(control);
        const bool named =
            button ? !button->text().isEmpty() : !control->accessibleName().isEmpty();
        QVERIFY2(named || qobject_cast<const QTabWidget *>(control), qPrintable(name));
        QVERIFY2(!control->accessibleName().contains(u'&'), qPrintable(name));
    }
}

void tst_InternetOptions::whatCannotBeKeptIsTold_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QString>("inTheWay");
    QTest::newRow("apply, no folder") << QByteArray("cmdApply") << QString();
    QTest::newRow("save, no folder") << QByteArray("cmdSave") << QString();
    QTest::newRow("apply, folder in its place") << QByteArray("cmdApply") << u"Engine.ini"_s;
    QTest::newRow("save, folder in its place") << QByteArray("cmdSave") << u"Engine.ini"_s;
}

void tst_InternetOptions::whatCannotBeKeptIsTold()
{
    QFETCH(QByteArray, button);
    QFETCH(QString, inTheWay);
    const Unlogged unlogged;
    openAdvanced();
    const QString folder = m_program->folder.file(u"AppData"_s);
    if (inTheWay.isEmpty())
        QVERIFY(QDir(folder).removeRecursively());
    else
        QVERIFY(QDir(folder).mkpath(inTheWay));
    find<QCheckBox>("chkScripts")->setChecked(false);
    click(button.constData());
    QVERIFY2(form() && form()->isVisible(), "the dialog stays");
    const auto *message = form()->findChild<QMessageBox *>();
    QVERIFY(message && message->isVisible());
    QVERIFY(message->text().contains(folder + "/Engine.ini"_L1));
    QVERIFY2(message->text().contains("\n\n"_L1), "it says why");
    QCOMPARE(m_data->newest->used.size(), 1);
    QVERIFY2(!m_data->newest->used.first().scripts, "what acts at once still acts");
}

void tst_InternetOptions::dictionariesAreTicked()
{
    open();
    QVERIFY(find<QCheckBox>("chkSpelling")->isChecked());
    QCOMPARE(ticked(), QStringList(u"de-DE"_s));
    tick(u"pl"_s, Qt::Checked);
    click("cmdSave");
    QTRY_VERIFY(!form());
    QCOMPARE(stored("Dictionaries"), u"de-DE,pl"_s);
    open();
    QCOMPARE(ticked(), QStringList({u"de-DE"_s, u"pl"_s}));
    find<QCheckBox>("chkSpelling")->setChecked(false);
    QVERIFY(!find<QListWidget>("lstDictionaries")->isEnabled());
    click("cmdSave");
    QTRY_VERIFY(!form());
    QCOMPARE(stored("Spelling"), u"False"_s);
    QCOMPARE(stored("Dictionaries"), u"de-DE,pl"_s);
}

/// They follow when the desktop speaks another language.
void tst_InternetOptions::dictionariesOfTheDesktopNeedNoNames()
{
    open();
    tick(u"pl"_s, Qt::Checked);
    tick(u"pl"_s, Qt::Unchecked);
    click("cmdSave");
    QTRY_VERIFY(!form());
    QCOMPARE(stored("Dictionaries"), QString());
    QVERIFY(EngineOptions::read().spelling);
}

void tst_InternetOptions::withoutATickNothingIsChecked()
{
    open();
    tick(u"de-DE"_s, Qt::Unchecked);
    click("cmdSave");
    QTRY_VERIFY(!form());
    QVERIFY(!EngineOptions::read().spelling);
}

void tst_InternetOptions::dictionaryThatIsNotThereIsKept()
{
    EngineOptions options;
    options.dictionaries = u"fr-FR,pl"_s;
    QVERIFY(options.write());
    open();
    QCOMPARE(ticked(), QStringList(u"pl"_s));
    click("cmdSave");
    QTRY_VERIFY(!form());
    QCOMPARE(EngineOptions::read(), options);
}

void tst_InternetOptions::withoutADictionaryItSaysSo()
{
    qputenv("XDG_DATA_DIRS", m_program->folder.file(u"empty"_s).toUtf8());
    open();
    find<QTabWidget>("tabPages")->setCurrentIndex(3);
    QVERIFY(find<QLabel>("lblNoDictionary")->isVisible());
    QVERIFY(!find<QCheckBox>("chkSpelling")->isEnabled());
    click("cmdSave");
    QTRY_VERIFY(!form());
    QCOMPARE(EngineOptions::read(), EngineOptions());
}

void tst_InternetOptions::rubbishInTheFileIsSurvived()
{
    m_program->folder.write(u"AppData/Engine.ini"_s, "[Engine]\r\nScripts=\xff\r\nProxy=?\r\n");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Scripts cannot be"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Proxy cannot be"_s));
    openAdvanced();
    QVERIFY(find<QCheckBox>("chkScripts")->isChecked());
    click("cmdSave");
    QTRY_VERIFY(!form());
    QCOMPARE(EngineOptions::read(), EngineOptions());
}

QTEST_MAIN(tst_InternetOptions)
#include "tst_internetoptions.moc"
