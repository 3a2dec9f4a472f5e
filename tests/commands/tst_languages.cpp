#include <QComboBox>
#include <QDir>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QtTest>

#include "AppFolder.h"
#include "ContextTable.h"
#include "ContextTarget.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "DialogRoom.h"
#include "FakeEngineData.h"
#include "InternetOptionsDialog.h"
#include "Language.h"
#include "MenuTable.h"
#include "OptionsDialog.h"
#include "ProgramWithoutEngine.h"
#include "Texts.h"
#include "ToolBar.h"
#include "VisitFile.h"
#include "VisitHistory.h"

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
    void textsThatNobodyShowsAreKnown();
    void englishIsWhatTheProgramSays();
    void textsFitWhereTheyAreUsed_data() { languageRows(); }
    void textsFitWhereTheyAreUsed();
    void accessKeysOfAMenuDiffer_data() { languageRows(); }
    void accessKeysOfAMenuDiffer();
    void accessKeysOfAPagesMenuDiffer_data() { languageRows(); }
    void accessKeysOfAPagesMenuDiffer();
    void optionsHoldTheTextsTheyChangeTo_data() { languageRows(); }
    void optionsHoldTheTextsTheyChangeTo();
    void internetOptionsNeedNoScroller_data() { languageRows(); }
    void internetOptionsNeedNoScroller();
    void listsHaveRoomForTheirTexts_data();
    void listsHaveRoomForTheirTexts();
    void walkThroughTheLanguagesWithTenWindows();

private:
    void languageRows() const;
    /// By "section/key".
    using TextMap = QMap<QString, QString>;
    TextMap wantedTexts() const;
    TextMap texts(const QString &language) const;
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

/// What the code declares, and the tables whose lines are looked up by their names.
tst_Languages::TextMap tst_Languages::wantedTexts() const
{
    TextMap wanted;
    const auto add = [&wanted](const QString &section, const QString &key, const QString &english) {
        const QString name = section + u'/' + key;
        QVERIFY2(wanted.value(name, english) == english, qPrintable("two texts: "_L1 + name));
        wanted.insert(name, english);
    };
    for (const Text *text = Text::first; text; text = text->next)
        add(QString::fromLatin1(text->section), text->name(), text->inEnglish());
    for (const MenuEntry &entry : menuTable()) {
        if (entry.kind != MenuEntry::Kind::Separator)
            add(u"frmMain"_s, QString::fromLatin1(entry.name), QString::fromUtf8(entry.caption));
    }
    for (const ContextEntry &entry : contextTable()) {
        if (entry.item.kind != MenuEntry::Kind::Separator)
            add(u"PageMenu"_s, QString::fromLatin1(entry.item.name),
                QString::fromUtf8(entry.item.caption));
    }
    for (const char *name : {"tbFunctions", "tbBrowser"}) {
        const auto *bar = m_program->frame->findChild<ToolBar *>(QLatin1String(name));
        for (int index = 1; index <= bar->buttonCount(); ++index)
            add(u"frmMain-Toolbar"_s, bar->buttonKey(index), bar->toolTip(index));
    }
    const auto *strip = m_program->frame->findChild<CoolBar *>();
    for (int position = 1; position <= strip->bandCount(); ++position) {
        const CoolBand *band = strip->band(position);
        add(u"CoolBar"_s, "str"_L1 + band->key(), band->name());
    }
    return wanted;
}

tst_Languages::TextMap tst_Languages::texts(const QString &language) const
{
    QFile file(appData + language + ".ini"_L1);
    TextMap result;
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
    const TextMap have = texts(language);
    QVERIFY(have.value(u"frmMain/strNoWindow"_s).contains("%1"_L1));
    for (auto text = have.cbegin(); text != have.cend(); ++text) {
        for (const char *key : {"Ctrl", "Strg", "Shift+", "Umschalt", "Alt+"})
            QVERIFY2(!text->contains(QLatin1String(key)), qPrintable(text.key()));
    }
}

void tst_Languages::everyKeyIsThereAndNoneIsUnknown()
{
    QFETCH(QString, language);
    const TextMap keys = wantedTexts();
    const TextMap have = texts(language);
    for (auto key = keys.keyBegin(); key != keys.keyEnd(); ++key)
        QVERIFY2(!have.value(*key).isEmpty(), qPrintable("missing: "_L1 + *key));
    for (auto key = have.keyBegin(); key != have.keyEnd(); ++key)
        QVERIFY2(keys.contains(*key), qPrintable("unknown: "_L1 + *key));
}

void tst_Languages::textsThatNobodyShowsAreKnown()
{
    const TextMap wanted = wantedTexts();
    for (const char *key : {"frmPrintPreview/strFailed", "PageSaver/strFailed", "frmMain/mnuFile",
                            "frmMain-Toolbar/Home", "CoolBar/strAddress", "CommandLine/strOpens"})
        QVERIFY2(wanted.contains(QLatin1StringView(key)), key);
}

void tst_Languages::englishIsWhatTheProgramSays()
{
    const TextMap keys = wantedTexts();
    const TextMap english = texts(u"English"_s);
    for (const auto &[key, text] : keys.asKeyValueRange())
        QVERIFY2(english.value(key) == text, qPrintable(key + u' ' + text));
}

void tst_Languages::textsFitWhereTheyAreUsed()
{
    QFETCH(QString, language);
    const TextMap english = texts(u"English"_s);
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
    const TextMap have = texts(language);
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

/// Whatever it was opened on.
void tst_Languages::accessKeysOfAPagesMenuDiffer()
{
    QFETCH(QString, language);
    const TextMap have = texts(language);
    ContextTarget onLink;
    onLink.linkIs = ContextTarget::Link::Opens;
    onLink.linkText = u"words"_s;
    onLink.selection = onLink.linkText;
    onLink.mediaUrl = QUrl(u"http://127.0.0.1/"_s);
    QList<ContextTarget> targets{{}, onLink, onLink, onLink};
    targets[1].media = ContextTarget::Media::Image;
    targets[2].media = ContextTarget::Media::Video;
    targets[3].media = ContextTarget::Media::Audio;
    targets[3].mediaPaused = true;
    for (qsizetype i = 1; i <= 3; ++i) {
        targets.append(targets.at(i));
        targets.last().isField = targets.last().isRichField = true;
    }
    for (const ContextTarget &target : targets) {
        QMap<QString, QString> taken;
        for (const ContextEntry &entry : contextTable()) {
            if (entry.item.kind == MenuEntry::Kind::Separator || !entry.stands(target))
                continue;
            const QString name = QString::fromLatin1(entry.item.name);
            const QString key = accessKey(have.value("PageMenu/"_L1 + name));
            QVERIFY2(key.isEmpty() || !taken.contains(key),
                     qPrintable(name + " and "_L1 + taken.value(key) + u' ' + key));
            taken.insert(key, name);
        }
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

void tst_Languages::listsHaveRoomForTheirTexts_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("item");
    QTest::addColumn<QString>("list");
    for (const QString &language : languages) {
        for (const char *list : {"Downloads", "Visits", "Costs"})
            QTest::addRow("%s, %s", list, qPrintable(language))
                << language << "mnuTools"_L1 + QLatin1String(list)
                << "frm"_L1 + QLatin1String(list);
    }
}

/// It is open as the language changes.
void tst_Languages::listsHaveRoomForTheirTexts()
{
    QFETCH(QString, language);
    QFETCH(QString, item);
    QFETCH(QString, list);
    const VisitHistory history(VisitFile::path());
    m_program->choose(qPrintable(item));
    QWidget *window = Forms::named(qPrintable(list)).value(0);
    m_program->choose("mnuToolsOptions");
    QVERIFY(QTest::qWaitForWindowExposed(form(), longestWait));
    takeLanguage(language);
    QCOMPARE(languageName(), language);
    form()->close();
    for (const int width : {1000, 420}) {
        m_program->frame->resize(width, 500);
        QTRY_COMPARE(m_program->frame->width(), width);
        QTRY_VERIFY2(roomFaults(*window).isEmpty(), qPrintable(roomFaults(*window).join(u'\n')));
    }
    window->close();
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
        const TextMap text = texts(language);
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
