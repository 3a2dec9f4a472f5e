#include <QComboBox>
#include <QDir>
#include <QDirIterator>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QtTest>

#include "AppFolder.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "DialogRoom.h"
#include "FakeEngineData.h"
#include "InternetOptionsDialog.h"
#include "Language.h"
#include "LanguageKeys.h"
#include "MenuTable.h"
#include "OptionsDialog.h"
#include "ProgramWithoutEngine.h"
#include "ToolBar.h"

using namespace Qt::StringLiterals;

/// The language files that ship, held against what the program looks up and shows.
class tst_Languages : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theLanguagesThatShip();
    void filesAreUtf8WithWindowsLines_data() { languageRows(); }
    void filesAreUtf8WithWindowsLines();
    void keysOfTheKeyboardAreNamedByTheToolkit_data() { languageRows(); }
    void keysOfTheKeyboardAreNamedByTheToolkit();
    void everyKeyIsThereAndNoneIsUnknown_data() { languageRows(); }
    void everyKeyIsThereAndNoneIsUnknown();
    void whatIsNamedLikeATextIsOne();
    void whatIsLookedUpIsChecked();
    void englishIsWhatTheProgramSays();
    void textsFitWhereTheyAreUsed_data() { languageRows(); }
    void textsFitWhereTheyAreUsed();
    void accessKeysOfAMenuDiffer_data() { languageRows(); }
    void accessKeysOfAMenuDiffer();
    void optionsHoldTheTextsTheyChangeTo_data() { languageRows(); }
    void optionsHoldTheTextsTheyChangeTo();
    void internetOptionsNeedNoScroller_data() { languageRows(); }
    void internetOptionsNeedNoScroller();
    void walkThroughTheLanguagesWithTenWindows();

private:
    void languageRows() const;
    LanguageKeys wanted() const;
    QMap<QString, QString> texts(const QString &language) const;
    static OptionsDialog *form()
    {
        return qobject_cast<OptionsDialog *>(Forms::named("frmOptions").value(0));
    }
    void takeLanguage(const QString &name) const;

    std::unique_ptr<ProgramWithoutEngine> m_program;
};

namespace {

const QString appData = QStringLiteral(ORVANE_SOURCE_DIR "/appdata/Languages/");
const QStringList languages{u"English"_s, u"German"_s, u"French"_s,  u"Spanish"_s,
                            u"Dutch"_s,   u"Polish"_s, u"Japanese"_s};

/// For a window to be shown on a machine that is busy, milliseconds.
constexpr int longestWait = 30'000;

/// Looked up through a variable, so that no English text stands beside the key.
const QMap<QString, QString> lookedUpByName{
    {u"frmMain/strScrollTabsLeft"_s, u"Scroll tabs left"_s},
    {u"frmMain/strScrollTabsRight"_s, u"Scroll tabs right"_s},
    {u"frmOptions/Caption"_s, u"Options"_s},
    {u"frmOptions/cmdApply"_s, u"&Apply"_s},
    {u"frmOptions/cmdCancel"_s, u"&Cancel"_s},
    {u"frmOptions/cmdSave"_s, u"&Save"_s},
    {u"frmOptions/lblLanguage"_s, u"Interface Language:"_s},
    {u"frmProfile/Caption"_s, u"URL Profiles"_s},
    {u"frmProfile/FrameOpen"_s, u"Open A URL Profile"_s},
    {u"frmProfile/FrameSave"_s, u"Open A URL Profile"_s},
    {u"frmAddFavorite/strNewFolder"_s, u"New Folder"_s},
    {u"PageFindBar/lblFind"_s, u"F&ind:"_s},
    {u"PageFindBar/cmdFindPrevious"_s, u"&Previous"_s},
    {u"PageFindBar/cmdFindNext"_s, u"&Next"_s},
    {u"PageFindBar/chkMatchCase"_s, u"&Match case"_s},
    {u"PageFindBar/cmdFindClose"_s, u"Close"_s},
    {u"PageFindBar/strNotFound"_s, u"Not found"_s},
    {u"PageFindBar/strResult"_s, u"%1 of %2"_s},
    {u"SearchBox/lblSearchEngine"_s, u"Search Engine:"_s},
    {u"SearchBox/lblSearchQuery"_s, u"Search Query:"_s},
    {u"SearchBox/lblClearSearches"_s, u"Clear Searches"_s},
    {u"SearchBox/cmdSearch"_s, u"&Search"_s},
    {u"SearchBox/cmdExit"_s, u"X"_s},
    {u"SearchBox/chkNewWindow"_s, u"Open In New Window"_s},
    {u"SearchBox/strEngineDataNotFound"_s, u"Error: Engine data not found!"_s},
    {u"SearchBox/strNoSearchEngineSelected"_s, u"Error: No Search Engine Selected!"_s},
    {u"SearchBox/strYouMustEnterSearchCriteria"_s, u"Error: You must enter a search criteria!"_s},
};

QString accessKey(const QString &caption)
{
    const qsizetype mark = caption.indexOf(u'&');
    return mark < 0 ? QString() : caption.mid(mark + 1, 1).toUpper();
}

/// The menu that holds each line of the menu table: "" for the menu bar.
QList<std::pair<QString, QString>> menuLines()
{
    QList<std::pair<QString, QString>> result;
    QStringList open{QString()};
    for (const MenuEntry &entry : menuTable()) {
        const QString name = QString::fromLatin1(entry.name);
        open.resize(entry.depth + 1);
        if (entry.kind != MenuEntry::Kind::Separator)
            result.append({open.last(), name});
        if (entry.kind == MenuEntry::Kind::Menu)
            open.append(name);
    }
    return result;
}

}

void tst_Languages::init()
{
    m_program = std::make_unique<ProgramWithoutEngine>();
    QVERIFY(m_program->folder.isValid());
    for (const QString &name : languages) {
        QVERIFY(QFile::copy(appData + name + ".ini"_L1,
                            AppFolder::appData("Languages/"_L1 + name + ".ini"_L1)));
    }
    m_program->start();
}

void tst_Languages::cleanup()
{
    m_program.reset();
}

void tst_Languages::languageRows() const
{
    QTest::addColumn<QString>("language");
    for (const QString &name : languages)
        QTest::newRow(qPrintable(name)) << name;
}

LanguageKeys tst_Languages::wanted() const
{
    LanguageKeys keys = languageKeysOf(QStringLiteral(ORVANE_SOURCE_DIR "/src"));
    keys.insert(lookedUpByName);
    for (const MenuEntry &entry : menuTable()) {
        if (entry.kind != MenuEntry::Kind::Separator)
            keys.insert("frmMain/"_L1 + QLatin1String(entry.name),
                        QString::fromUtf8(entry.caption));
    }
    for (const char *name : {"tbFunctions", "tbBrowser"}) {
        const auto *bar = m_program->frame->findChild<ToolBar *>(QLatin1String(name));
        for (int index = 1; index <= bar->buttonCount(); ++index)
            keys.insert("frmMain-Toolbar/"_L1 + bar->buttonKey(index), bar->toolTip(index));
    }
    keys.insert(u"frmMain/lblAddress"_s, u"Address:"_s);
    keys.insert(u"CoolBar/strMore"_s, u"More Buttons"_s);
    const auto *strip = m_program->frame->findChild<CoolBar *>();
    for (int position = 1; position <= strip->bandCount(); ++position) {
        const CoolBand *band = strip->band(position);
        keys.insert("CoolBar/str"_L1 + band->key(), band->name());
    }
    return keys;
}

QMap<QString, QString> tst_Languages::texts(const QString &language) const
{
    QFile file(appData + language + ".ini"_L1);
    QMap<QString, QString> result;
    if (!file.open(QIODevice::ReadOnly))
        return result;
    QString section;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u"\r\n"_s)) {
        if (line.startsWith(u'['))
            section = line.mid(1, line.size() - 2);
        else if (line.contains(u'='))
            result.insert(section + u'/' + line.section(u'=', 0, 0), line.section(u'=', 1));
    }
    return result;
}

void tst_Languages::theLanguagesThatShip()
{
    QStringList files;
    for (const QString &name : languages)
        files.append(name + ".ini"_L1);
    files.sort();
    QCOMPARE(QDir(appData).entryList(QDir::Files, QDir::Name), files);
}

void tst_Languages::filesAreUtf8WithWindowsLines()
{
    QFETCH(QString, language);
    QFile file(appData + language + ".ini"_L1);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QCOMPARE(QString::fromUtf8(bytes).toUtf8(), bytes);
    QCOMPARE(bytes.count('\n'), bytes.count("\r\n"));
    QCOMPARE(bytes.count('\r'), bytes.count("\r\n"));
    QVERIFY(bytes.endsWith("\r\n"));
}

/// As in the menus, which say "Strg" in German.
void tst_Languages::keysOfTheKeyboardAreNamedByTheToolkit()
{
    QFETCH(QString, language);
    const QMap<QString, QString> have = texts(language);
    QVERIFY(have.value(u"frmMain/strNoWindow"_s).contains("%1"_L1));
    for (auto text = have.cbegin(); text != have.cend(); ++text) {
        for (const char *key : {"Ctrl", "Strg", "Shift+", "Umschalt", "Alt+"})
            QVERIFY2(!text->contains(QLatin1String(key)), qPrintable(text.key()));
    }
}

void tst_Languages::everyKeyIsThereAndNoneIsUnknown()
{
    QFETCH(QString, language);
    const LanguageKeys keys = wanted();
    QVERIFY2(keys.size() > 180, "the look-ups are found");
    const QMap<QString, QString> have = texts(language);
    for (auto key = keys.keyBegin(); key != keys.keyEnd(); ++key)
        QVERIFY2(!have.value(*key).isEmpty(), qPrintable("missing: "_L1 + *key));
    for (auto key = have.keyBegin(); key != have.keyEnd(); ++key)
        QVERIFY2(keys.contains(*key), qPrintable("unknown: "_L1 + *key));
}

/// Also where keys stand in tables, or are handed on, and no text beside them tells what they are.
void tst_Languages::whatIsNamedLikeATextIsOne()
{
    const QStringList keys = texts(u"English"_s).keys();
    static const QRegularExpression literal(uR"re("((?:str|alert)[A-Z]\w*)")re"_s);
    static const QRegularExpression lookUp(uR"re(GetLanguageText\(\s*u"([\w-]+)"_s)re"_s);
    QDirIterator files(QStringLiteral(ORVANE_SOURCE_DIR "/src"), {u"*.cpp"_s, u"*.h"_s},
                       QDir::Files, QDirIterator::Subdirectories);
    int found = 0;
    while (files.hasNext()) {
        QFile file(files.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString source = QString::fromUtf8(file.readAll());
        QStringList sections;
        for (auto match = lookUp.globalMatch(source); match.hasNext();)
            sections.append(match.next().captured(1));
        for (auto match = literal.globalMatch(source); match.hasNext(); ++found) {
            const QString key = match.next().captured(1);
            const auto isKey = [&](const QString &known) {
                return known.section(u'/', 1) == key
                    && (sections.isEmpty() || sections.contains(known.section(u'/', 0, 0)));
            };
            QVERIFY2(std::any_of(keys.begin(), keys.end(), isKey),
                     qPrintable(file.fileName() + u' ' + key));
        }
    }
    QVERIFY2(found > 100, qPrintable(QString::number(found)));
}

void tst_Languages::whatIsLookedUpIsChecked()
{
    QCOMPARE(languageText(u"PageSaver"_s, u"strComplete"_s, u"English"_s), u"Web page, complete"_s);
    QEXPECT_FAIL("", "in no language", Continue);
    languageText(u"PageSaver"_s, u"strMissing"_s, u"English"_s);
}

void tst_Languages::englishIsWhatTheProgramSays()
{
    const LanguageKeys keys = wanted();
    const QMap<QString, QString> english = texts(u"English"_s);
    for (const auto &[key, text] : keys.asKeyValueRange())
        QVERIFY2(text.isEmpty() || english.value(key) == text, qPrintable(key + u' ' + text));
}

void tst_Languages::textsFitWhereTheyAreUsed()
{
    QFETCH(QString, language);
    const QMap<QString, QString> english = texts(u"English"_s);
    for (const auto &[key, text] : texts(language).asKeyValueRange()) {
        const QString original = english.value(key);
        for (const QString &mark : {u"%1"_s, u"%2"_s, u"..."_s, u"*//ads.*"_s})
            QVERIFY2(text.count(mark) == original.count(mark), qPrintable(key + u' ' + text));
        QVERIFY2(text.count(u'&') <= 1, qPrintable(key));
        QVERIFY2(text.size() < 999, qPrintable(key));
        // Messages, tool tips and titles show an "&" as it is.
        const QString name = key.section(u'/', 1);
        if (name.startsWith("str"_L1) || name.startsWith("alert"_L1) || name == "Caption"_L1
            || key.startsWith("frmMain-Toolbar"_L1) || name.startsWith("mnuFavoritesExp"_L1)
            || name.startsWith("mnuFavoritesImp"_L1))
            QVERIFY2(!text.contains(u'&'), qPrintable(key));
    }
}

void tst_Languages::accessKeysOfAMenuDiffer()
{
    QFETCH(QString, language);
    if (language == "English"_L1)
        QSKIP("the English captions are as they were designed");
    const QMap<QString, QString> have = texts(language);
    QMap<QString, QString> taken;
    for (const auto &[menu, name] : menuLines()) {
        const QString key = accessKey(have.value("frmMain/"_L1 + name));
        if (key.isEmpty())
            continue;
        const QString place = menu + u' ' + key;
        QVERIFY2(!taken.contains(place),
                 qPrintable(name + " and "_L1 + taken.value(place) + u' ' + key));
        taken.insert(place, name);
    }
}

void tst_Languages::takeLanguage(const QString &name) const
{
    form()->findChild<QComboBox *>()->setCurrentText(name);
    QTest::mouseClick(form()->findChild<QPushButton *>(u"cmdApply"_s), Qt::LeftButton);
}

/// The dialog that changes the language has to have room for the texts of the next one.
void tst_Languages::optionsHoldTheTextsTheyChangeTo()
{
    QFETCH(QString, language);
    m_program->choose("mnuToolsOptions");
    QVERIFY(QTest::qWaitForWindowExposed(form(), longestWait));
    takeLanguage(language);
    QCOMPARE(languageName(), language);
    QTRY_VERIFY2(roomFaults(*form()).isEmpty(), qPrintable(roomFaults(*form()).join(u'\n')));
    QCOMPARE(accessKeyFaults(*form()), QStringList());
    QVERIFY(form()->width() < 900);
}

void tst_Languages::internetOptionsNeedNoScroller()
{
    QFETCH(QString, language);
    setLanguageName(language);
    const FakeData data;
    InternetOptionsDialog::showOver(*m_program->frame, InternetOptionsDialog::Page::Advanced);
    QWidget *dialog = Forms::named("frmInternetOptions").value(0);
    QVERIFY(QTest::qWaitForWindowExposed(dialog, longestWait));
    const QWidget &scroller =
        *dialog->findChild<QScrollArea *>(u"pageAdvanced"_s)->verticalScrollBar();
    QTRY_VERIFY2(!scroller.isVisible(), "this screen has room for all");
    QVERIFY2(dialog->width() < 800, qPrintable(QString::number(dialog->width())));
    QVERIFY2(dialog->height() < 720, qPrintable(QString::number(dialog->height())));
    dialog->close();
}

void tst_Languages::walkThroughTheLanguagesWithTenWindows()
{
    for (int number = 2; number <= 10; ++number)
        m_program->frame->openBrowserWindow(u"http://page%1/"_s.arg(number), WindowState::AsOthers);
    QCOMPARE(FakeWebBrowser::made().size(), 10);
    m_program->choose("mnuToolsOptions");
    QVERIFY(QTest::qWaitForWindowExposed(form(), longestWait));
    QStringList walk = languages;
    walk.append(u"English"_s);
    const auto *bar = m_program->frame->findChild<ToolBar *>(u"tbBrowser"_s);
    const auto *strip = m_program->frame->findChild<CoolBar *>();
    for (const QString &language : walk) {
        takeLanguage(language);
        QCOMPARE(languageName(), language);
        const QMap<QString, QString> text = texts(language);
        for (const auto &[menu, name] : menuLines()) {
            const QString shown = m_program->frame->menuItem(name)->text();
            QVERIFY2(shown.trimmed() == text.value("frmMain/"_L1 + name).trimmed(),
                     qPrintable(language + u' ' + name + u' ' + shown));
        }
        for (int index = 1; index <= bar->buttonCount(); ++index)
            QCOMPARE(bar->toolTip(index),
                     text.value("frmMain-Toolbar/"_L1 + bar->buttonKey(index)));
        QCOMPARE(strip->band(u"Address"_s)->caption(), text.value(u"frmMain/lblAddress"_s));
        QCOMPARE(form()->windowTitle(), text.value(u"frmOptions/Caption"_s));
        for (const auto *button : form()->findChildren<QAbstractButton *>())
            QCOMPARE(button->text(), text.value("frmOptions/"_L1 + button->objectName()));
        QCOMPARE(m_program->folder.setting(u"Options"_s, u"Language"_s), language);
        QCOMPARE(FakeWebBrowser::made().size(), 10);
    }
}

QTEST_MAIN(tst_Languages)
#include "tst_languages.moc"
