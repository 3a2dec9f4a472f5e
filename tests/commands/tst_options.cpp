#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

#include "AppFolder.h"
#include "FileFaults.h"
#include "OptionsDialog.h"
#include "ProgramInfo.h"
#include "ProgramWithoutEngine.h"
#include "ToolBar.h"
#include "Unlogged.h"

using namespace Qt::StringLiterals;

/// The options dialog over a whole frame: what it shows, writes and changes at once.
class tst_Options : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void withoutSettingsItShowsTheDefaults();
    void itShowsWhatIsStored();
    void switchThatIsNoNumberEndsTheLoading();
    void numberThatIsNeitherOnNorOffShowsOff();
    void everyDeclaredBoxAndItemIsThere();
    void languagesAreListedByNameWithTheCurrentOneSelected();
    void languageInOtherLettersSelectsNothing();
    void oddFilesInTheLanguageFolder();
    void fiveHundredLanguages();
    void homeButtonsFillTheBox();
    void currentPageWithoutAWindowIsTheStoredHomePage();
    void currentPageOfTheActiveWindow();
    void currentPageOverASourceWindowIsTheStoredHomePage();
    void applyWritesEveryKeyInOrder();
    void switchOfTheDeskIsWrittenOnceItIsUsed();
    void applyActsOnTwoMarksAndTheButtonOnly();
    void applyTranslatesFrameAndDialogAtOnce();
    void keyMissingInTheNextLanguageKeepsTheText();
    void saveWritesAndCloses();
    void cancelWritesNothing();
    void cancelAfterApplyKeepsWhatWasApplied();
    void escapeCloses();
    void enterSaves();
    void whatCannotBeKeptIsTold_data();
    void whatCannotBeKeptIsTold();
    void withoutAChoiceTheLanguageStays();
    void secondCallShowsTheSameDialog();
    void closingTheFrameTakesItAlong();
    void keyboardOrderIsTopToBottom();
    void languageFilesInOtherEncodings();

private:
    OptionsDialog *open();
    template <typename Control> Control *find(const char *name) const
    {
        return form()->findChild<Control *>(QString::fromLatin1(name));
    }
    static OptionsDialog *form()
    {
        const QList<QWidget *> forms = Forms::named("frmOptions");
        return forms.isEmpty() ? nullptr : qobject_cast<OptionsDialog *>(forms.first());
    }
    void click(const char *name) const
    {
        QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton);
    }
    bool isOn(const char *name) const { return find<QCheckBox>(name)->isChecked(); }
    QString homePage() const { return find<QLineEdit>("txtHomepageURL")->text(); }
    QStringList languages() const
    {
        QStringList result;
        const QComboBox &box = *find<QComboBox>("cboLanguage");
        for (int index = 0; index < box.count(); ++index)
            result.append(box.itemText(index));
        return result;
    }
    TempAppFolder &folder() const { return m_program->folder; }

    std::unique_ptr<ProgramWithoutEngine> m_program;
};

void tst_Options::init()
{
    m_program = std::make_unique<ProgramWithoutEngine>();
    QVERIFY(folder().isValid());
    m_program->start();
}

void tst_Options::cleanup()
{
    m_program.reset();
}

OptionsDialog *tst_Options::open()
{
    m_program->choose("mnuToolsOptions");
    return form();
}

void tst_Options::withoutSettingsItShowsTheDefaults()
{
    QVERIFY(QFile::remove(folder().settingsFile()));
    QVERIFY(open());
    QVERIFY(form()->isModal());
    QCOMPARE(form()->parentWidget(), m_program->frame.get());
    QCOMPARE(form()->windowTitle(), u"Options"_s);
    QCOMPARE(homePage(), ProgramInfo::homeUrl());
    QVERIFY(isOn("chkAskOnExit"));
    QVERIFY(isOn("chkShowSplashScreen"));
    QVERIFY(!isOn("chkMaxCatcher"));
    QVERIFY(!isOn("chkKillPopups"));
    QVERIFY(!isOn("chkSuppressScriptErrors"));
    QVERIFY(languages().isEmpty());
    QVERIFY2(!folder().exists(u"AppData/Settings.ini"_s), "opening the dialog writes nothing");
}

void tst_Options::itShowsWhatIsStored()
{
    folder().writeSettings("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nHome-URL=not an address\r\n"
                           "AskOnExit=0\r\nKill-Popups=1\r\nSuppress-Script-Errors=1\r\n"
                           "Maximize-Catcher=1\r\n");
    open();
    QCOMPARE(homePage(), u"not an address"_s);
    QVERIFY(!isOn("chkAskOnExit"));
    QVERIFY(!isOn("chkShowSplashScreen"));
    QVERIFY(isOn("chkMaxCatcher"));
    QVERIFY(isOn("chkKillPopups"));
    QVERIFY(isOn("chkSuppressScriptErrors"));
}

void tst_Options::switchThatIsNoNumberEndsTheLoading()
{
    folder().writeLanguage(u"English"_s, {});
    folder().writeSettings("[Options]\r\nShow-Splash=1\r\n[Settings]\r\nAskOnExit=1\r\n"
                           "Kill-Popups=True\r\nSuppress-Script-Errors=1\r\nMaximize-Catcher=1\r\n"
                           "Home-URL=http://stored/\r\n");
    QVERIFY(open());
    QVERIFY(form()->isVisible());
    QCOMPARE(homePage(), u"http://stored/"_s);
    QVERIFY(isOn("chkShowSplashScreen"));
    QVERIFY(isOn("chkAskOnExit"));
    QVERIFY(!isOn("chkKillPopups"));
    QVERIFY(!isOn("chkSuppressScriptErrors"));
    QVERIFY(!isOn("chkMaxCatcher"));
    QVERIFY(languages().isEmpty());
}

void tst_Options::numberThatIsNeitherOnNorOffShowsOff()
{
    folder().writeLanguage(u"English"_s, {});
    folder().setSetting(u"Settings"_s, u"AskOnExit"_s, u"7"_s);
    folder().setSetting(u"Settings"_s, u"Maximize-Catcher"_s, u"1.0"_s);
    open();
    QVERIFY(!isOn("chkAskOnExit"));
    QVERIFY(isOn("chkMaxCatcher"));
    QCOMPARE(languages(), QStringList(u"English"_s));
}

void tst_Options::everyDeclaredBoxAndItemIsThere()
{
    open();
    QStringList boxes;
    for (const auto *box : form()->findChildren<QCheckBox *>())
        boxes.append(box->objectName());
    QStringList declared;
    for (const Settings::Switch *setting : Settings::switches) {
        if (setting->checkBox)
            declared.append(QString::fromLatin1(setting->checkBox));
        if (setting->menuItem)
            QVERIFY2(m_program->item(setting->menuItem)->isCheckable(), setting->key);
    }
    boxes.sort();
    declared.sort();
    QCOMPARE(boxes, declared);
}

void tst_Options::languagesAreListedByNameWithTheCurrentOneSelected()
{
    folder().writeLanguage(u"German"_s, {});
    folder().writeLanguage(u"English"_s, {});
    open();
    QCOMPARE(languages(), QStringList({u"English"_s, u"German"_s}));
    QCOMPARE(find<QComboBox>("cboLanguage")->currentText(), u"English"_s);
}

void tst_Options::languageInOtherLettersSelectsNothing()
{
    folder().writeLanguage(u"english"_s, {});
    folder().writeLanguage(u"German"_s, {});
    open();
    QCOMPARE(languages(), QStringList({u"english"_s, u"German"_s}));
    QCOMPARE(find<QComboBox>("cboLanguage")->currentIndex(), -1);
    click("cmdApply");
    QCOMPARE(folder().setting(u"Options"_s, u"Language"_s, u"none"_s), u"none"_s);
}

void tst_Options::oddFilesInTheLanguageFolder()
{
    folder().writeLanguage(u"English"_s, {});
    folder().write(u"AppData/Languages/.ini"_s, "[frmMain]\r\n");
    folder().write(u"AppData/Languages/Readme.txt"_s, "text");
    folder().write(u"AppData/Languages/LOUD.INI"_s, {});
    QVERIFY(QDir().mkpath(AppFolder::appData(u"Languages/x.ini"_s)));
    open();
    QCOMPARE(languages(), QStringList({u"English"_s, u"LOUD"_s}));
}

void tst_Options::fiveHundredLanguages()
{
    for (int number = 0; number < 500; ++number)
        folder().writeLanguage(u"L%1"_s.arg(number, 3, 10, QLatin1Char('0')), {});
    folder().writeLanguage(u"English"_s, {});
    open();
    QCOMPARE(languages().size(), 501);
    QCOMPARE(find<QComboBox>("cboLanguage")->currentText(), u"English"_s);
    QVERIFY(form()->height() <= form()->screen()->availableGeometry().height());
}

void tst_Options::homeButtonsFillTheBox()
{
    open();
    click("cmdHomeURL0");
    QCOMPARE(homePage(), u"About:Blank"_s);
    click("cmdHomeURL2");
    QCOMPARE(homePage(), ProgramInfo::homeUrl());
    form()->setCurrentPage(u"http://current/?a=%20&b"_s);
    click("cmdHomeURL1");
    QCOMPARE(homePage(), u"http://current/?a=%20&b"_s);
}

void tst_Options::currentPageWithoutAWindowIsTheStoredHomePage()
{
    m_program->choose("mnuFileCloseAll");
    QTRY_VERIFY(!m_program->frame->activeChild());
    folder().setSetting(u"Settings"_s, u"Home-URL"_s, u"http://stored/"_s);
    open();
    QCOMPARE(form()->currentPage(), u"http://stored/"_s);
    click("cmdHomeURL0");
    click("cmdHomeURL1");
    QCOMPARE(homePage(), u"http://stored/"_s);
}

void tst_Options::currentPageOfTheActiveWindow()
{
    FakeWebBrowser::made().first()->location = u"http://shown/"_s;
    open();
    QCOMPARE(form()->currentPage(), u"http://shown/"_s);
    click("cmdHomeURL1");
    QCOMPARE(homePage(), u"http://shown/"_s);
}

void tst_Options::currentPageOverASourceWindowIsTheStoredHomePage()
{
    folder().setSetting(u"Settings"_s, u"Home-URL"_s, u"http://stored/"_s);
    auto *source = new QMdiSubWindow;
    source->setObjectName("frmSource"_L1);
    Forms::add(source);
    m_program->frame->adopt(source);
    source->show();
    QTRY_COMPARE(m_program->frame->activeChild(), source);
    open();
    click("cmdHomeURL0");
    click("cmdHomeURL1");
    QCOMPARE(homePage(), u"http://stored/"_s);
}

void tst_Options::switchOfTheDeskIsWrittenOnceItIsUsed()
{
    folder().writeSettings({});
    open();
    QVERIFY(!isOn("chkOpenLastDesk"));
    click("cmdApply");
    QVERIFY(!folder().readSettings().contains("OpenLastDesk"));
    find<QCheckBox>("chkOpenLastDesk")->setChecked(true);
    click("cmdApply");
    QCOMPARE(folder().setting(u"Settings"_s, u"OpenLastDesk"_s), u"1"_s);
    find<QCheckBox>("chkOpenLastDesk")->setChecked(false);
    click("cmdApply");
    QCOMPARE(folder().setting(u"Settings"_s, u"OpenLastDesk"_s), u"0"_s);
}

void tst_Options::applyWritesEveryKeyInOrder()
{
    folder().writeLanguage(u"English"_s, {});
    folder().writeSettings({});
    open();
    find<QLineEdit>("txtHomepageURL")->setText(u" http://typed/ as it is "_s);
    find<QCheckBox>("chkShowSplashScreen")->setChecked(false);
    find<QCheckBox>("chkSuppressScriptErrors")->setChecked(true);
    click("cmdApply");
    QVERIFY(form()->isVisible());
    QString stored = QString::fromUtf8(folder().readSettings());
    stored.remove(u'\r');
    QStringList keys;
    for (const QString &line : stored.split(u'\n'))
        keys += line.section(u'=', 0, 0);
    keys.removeAll(QString());
    QCOMPARE(keys,
             QStringList({u"[Settings]"_s, u"Home-URL"_s, u"AskOnExit"_s, u"Kill-Popups"_s,
                          u"Suppress-Script-Errors"_s, u"Maximize-Catcher"_s, u"[Options]"_s,
                          u"Show-Splash"_s, u"Language"_s}));
    QVERIFY(stored.contains("http://typed/ as it is"_L1));
    QCOMPARE(folder().setting(u"Options"_s, u"Show-Splash"_s), u"0"_s);
    QCOMPARE(folder().setting(u"Options"_s, u"Language"_s), u"English"_s);
    QCOMPARE(folder().setting(u"Settings"_s, u"AskOnExit"_s), u"1"_s);
    QCOMPARE(folder().setting(u"Settings"_s, u"Kill-Popups"_s), u"0"_s);
    QCOMPARE(folder().setting(u"Settings"_s, u"Suppress-Script-Errors"_s), u"1"_s);
    QCOMPARE(folder().setting(u"Settings"_s, u"Maximize-Catcher"_s), u"0"_s);
}

void tst_Options::applyActsOnTwoMarksAndTheButtonOnly()
{
    const auto *bar = m_program->frame->findChild<ToolBar *>(u"tbFunctions"_s);
    // Settings that the dialog does not own are not applied again by it.
    folder().setSetting(u"View"_s, u"TabStrip"_s, u"False"_s);
    open();
    for (const bool on : {true, false}) {
        find<QCheckBox>("chkKillPopups")->setChecked(on);
        find<QCheckBox>("chkMaxCatcher")->setChecked(on);
        find<QCheckBox>("chkSuppressScriptErrors")->setChecked(true);
        click("cmdApply");
        QCOMPARE(m_program->isChecked("mnuToolsKillPopUps"), on);
        QCOMPARE(bar->isPressed(u"PopupKiller"_s), on);
        QCOMPARE(m_program->isChecked("mnuToolsMaximizeCatcher"), on);
    }
    QVERIFY(!m_program->isChecked("mnuToolsScriptErrorSuppress"));
    QVERIFY(!FakeWebBrowser::made().first()->isSilent());
    QVERIFY(m_program->isChecked("mnuViewToolBarTabStrip"));
}

void tst_Options::applyTranslatesFrameAndDialogAtOnce()
{
    folder().writeLanguage(u"English"_s, {});
    folder().writeLanguage(u"German"_s,
                           "[frmMain]\r\nmnuFileOpen=&Oeffnen\r\n"
                           "[frmMain-Toolbar]\r\nHome=Daheim\r\n"
                           "[frmOptions]\r\nCaption=Einstellungen\r\n"
                           "cmdSave=S&ichern\r\nchkAskOnExit=Fragen\r\n"
                           "FrameHomePage=&Startseite\r\nlblLanguage=Sprache:\r\n");
    open();
    find<QComboBox>("cboLanguage")->setCurrentText(u"German"_s);
    click("cmdApply");
    QCOMPARE(m_program->item("mnuFileOpen")->text(), u"&Oeffnen"_s);
    QCOMPARE(form()->windowTitle(), u"Einstellungen"_s);
    QCOMPARE(find<QPushButton>("cmdSave")->text(), u"S&ichern"_s);
    QCOMPARE(find<QPushButton>("cmdCancel")->text(), u"&Cancel"_s);
    QCOMPARE(find<QCheckBox>("chkAskOnExit")->text(), u"Fragen"_s);
    QCOMPARE(find<QGroupBox>("FrameHomePage")->title(), u"&Startseite"_s);
    QVERIFY(find<QGroupBox>("FrameOptions1")->title().isEmpty());
    QCOMPARE(find<QLabel>("lblLanguage")->text(), u"Sprache:"_s);
    QCOMPARE(find<QComboBox>("cboLanguage")->accessibleName(), u"Sprache:"_s);
    QCOMPARE(find<QLineEdit>("txtHomepageURL")->accessibleName(), u"Startseite"_s);
}

void tst_Options::keyMissingInTheNextLanguageKeepsTheText()
{
    folder().writeLanguage(u"English"_s, {});
    folder().writeLanguage(u"German"_s, "[frmOptions]\r\ncmdSave=S&ichern\r\n");
    open();
    find<QComboBox>("cboLanguage")->setCurrentText(u"German"_s);
    click("cmdApply");
    find<QComboBox>("cboLanguage")->setCurrentText(u"English"_s);
    click("cmdApply");
    QCOMPARE(find<QPushButton>("cmdSave")->text(), u"S&ichern"_s);
}

void tst_Options::saveWritesAndCloses()
{
    open();
    find<QLineEdit>("txtHomepageURL")->setText(u"http://saved/"_s);
    click("cmdSave");
    QTRY_VERIFY(!form());
    QCOMPARE(folder().setting(u"Settings"_s, u"Home-URL"_s), u"http://saved/"_s);
}

void tst_Options::cancelWritesNothing()
{
    const QByteArray before = folder().readSettings();
    open();
    find<QLineEdit>("txtHomepageURL")->setText(u"http://lost/"_s);
    find<QCheckBox>("chkKillPopups")->setChecked(true);
    click("cmdCancel");
    QTRY_VERIFY(!form());
    QCOMPARE(folder().readSettings(), before);
    QVERIFY(!m_program->isChecked("mnuToolsKillPopUps"));
}

void tst_Options::cancelAfterApplyKeepsWhatWasApplied()
{
    open();
    find<QCheckBox>("chkKillPopups")->setChecked(true);
    click("cmdApply");
    find<QCheckBox>("chkKillPopups")->setChecked(false);
    click("cmdCancel");
    QTRY_VERIFY(!form());
    QCOMPARE(folder().setting(u"Settings"_s, u"Kill-Popups"_s), u"1"_s);
    QVERIFY(m_program->isChecked("mnuToolsKillPopUps"));
}

void tst_Options::escapeCloses()
{
    const QByteArray before = folder().readSettings();
    QTest::keyClick(open(), Qt::Key_Escape);
    QTRY_VERIFY(!form());
    QCOMPARE(folder().readSettings(), before);
}

void tst_Options::enterSaves()
{
    open();
    find<QLineEdit>("txtHomepageURL")->setText(u"http://entered/"_s);
    QTest::keyClick(find<QLineEdit>("txtHomepageURL"), Qt::Key_Return);
    QTRY_VERIFY(!form());
    QCOMPARE(folder().setting(u"Settings"_s, u"Home-URL"_s), u"http://entered/"_s);
}

void tst_Options::whatCannotBeKeptIsTold_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QByteArray>("trouble");
    for (const char *button : {"cmdApply", "cmdSave"}) {
        for (const char *trouble : {"no folder", "folder in its place", "sixteen bits", "no room"})
            QTest::addRow("%s, %s", button, trouble) << QByteArray(button) << QByteArray(trouble);
    }
}

void tst_Options::whatCannotBeKeptIsTold()
{
    QFETCH(QByteArray, button);
    QFETCH(QByteArray, trouble);
    const Unlogged unlogged;
    const QByteArray sixteenBits("\xff\xfe[\0O\0]\0", 8);
    open();
    if (trouble == "no folder") {
        QVERIFY(QDir(AppFolder::appData({})).removeRecursively());
    } else if (trouble == "folder in its place") {
        QVERIFY(QFile::remove(folder().settingsFile()));
        QVERIFY(QDir().mkpath(folder().settingsFile()));
    } else if (trouble == "sixteen bits") {
        QVERIFY(folder().writeSettings(sixteenBits));
    }
    const QByteArray before = folder().readSettings();
    find<QCheckBox>("chkMaxCatcher")->setChecked(true);
    if (trouble == "no room")
        FileFaults::arm(FileFaults::Kind::ReadOnly, 1);
    click(button.constData());
    FileFaults::disarm();
    QVERIFY2(form() && form()->isVisible(), "the dialog stays");
    const auto *message = form()->findChild<QMessageBox *>();
    QVERIFY(message && message->isVisible());
    QVERIFY(message->text().contains(folder().settingsFile()));
    QVERIFY2(message->text().contains("\n\n"_L1), "it says why");
    QCOMPARE(form()->findChildren<QMessageBox *>().size(), 1);
    QCOMPARE(folder().readSettings(), before);
    QVERIFY2(m_program->isChecked("mnuToolsMaximizeCatcher"), "what acts at once still acts");
    QVERIFY(find<QCheckBox>("chkMaxCatcher")->isChecked());
}

void tst_Options::withoutAChoiceTheLanguageStays()
{
    folder().writeLanguage(u"German"_s, {});
    // The switch that is no number ends the loading before the languages are listed.
    folder().writeSettings("[Options]\r\nLanguage=German\r\n[Settings]\r\n"
                           "Maximize-Catcher=yes\r\n");
    open();
    QCOMPARE(find<QComboBox>("cboLanguage")->currentIndex(), -1);
    click("cmdSave");
    QTRY_VERIFY(!form());
    QCOMPARE(folder().setting(u"Options"_s, u"Language"_s), u"German"_s);
    QCOMPARE(folder().setting(u"Settings"_s, u"Maximize-Catcher"_s), u"0"_s);
    open();
    QCOMPARE(find<QComboBox>("cboLanguage")->currentText(), u"German"_s);
}

void tst_Options::secondCallShowsTheSameDialog()
{
    const OptionsDialog *first = open();
    m_program->frame->run(u"mnuToolsOptions"_s);
    QCOMPARE(Forms::named("frmOptions").size(), 1);
    QCOMPARE(form(), first);
    click("cmdCancel");
    QTRY_VERIFY(!form());
    QVERIFY(open());
}

void tst_Options::closingTheFrameTakesItAlong()
{
    open();
    m_program->frame.reset();
    QVERIFY(!form());
}

void tst_Options::keyboardOrderIsTopToBottom()
{
    open();
    QStringList order;
    QWidget *widget = find<QLineEdit>("txtHomepageURL");
    for (const QWidget *first = widget; order.isEmpty() || widget != first;
         widget = widget->nextInFocusChain()) {
        if (!widget->objectName().isEmpty() && (widget->focusPolicy() & Qt::TabFocus)
            && !widget->objectName().startsWith("qt_"_L1))
            order.append(widget->objectName());
    }
    order.erase(std::remove_if(order.begin(), order.end(),
                               [](const QString &name) { return name.startsWith("Frame"_L1); }),
                order.end());
    QCOMPARE(order.mid(0, 10),
             QStringList({u"txtHomepageURL"_s, u"cmdHomeURL2"_s, u"cmdHomeURL1"_s, u"cmdHomeURL0"_s,
                          u"chkAskOnExit"_s, u"chkShowSplashScreen"_s, u"chkMaxCatcher"_s,
                          u"chkKillPopups"_s, u"chkSuppressScriptErrors"_s, u"cboLanguage"_s}));
}

void tst_Options::languageFilesInOtherEncodings()
{
    folder().writeLanguage(u"Old"_s,
                           "[frmOptions]\r\nCaption=Pr\xe9"
                           "f\xe9rences\r\n");
    folder().writeLanguage(u"Marked"_s, "\xef\xbb\xbf[frmOptions]\r\nCaption=\xe8\xa8\xad\r\n");
    open();
    find<QComboBox>("cboLanguage")->setCurrentText(u"Old"_s);
    click("cmdApply");
    QCOMPARE(form()->windowTitle(), u"Pr\u00e9f\u00e9rences"_s);
    find<QComboBox>("cboLanguage")->setCurrentText(u"Marked"_s);
    click("cmdApply");
    QCOMPARE(form()->windowTitle(), u"\u8a2d"_s);
}

QTEST_MAIN(tst_Options)
#include "tst_options.moc"
