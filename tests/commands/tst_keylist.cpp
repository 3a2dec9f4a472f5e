#include <QAbstractButton>
#include <QFile>
#include <QLineEdit>
#include <QMenuBar>
#include <QTreeWidget>
#include <QWindow>

#include "AddressBox.h"
#include "AppFolder.h"
#include "BrowserWindow.h"
#include "KeyList.h"
#include "KeyTable.h"
#include "Language.h"
#include "MenuTable.h"
#include "ProgramWithoutEngine.h"

#include <QtTest>

using namespace Qt::StringLiterals;

/// The tables of keys, the list that is made from them, and what keys do that no menu shows.
namespace {
/// As the keys are labelled where that language is spoken.
QString keyText(const QKeySequence &key, const QString &language)
{
    static const QHash<QString, QString> german{
        {u"Ctrl"_s, u"Strg"_s},           {u"Shift"_s, u"Umschalt"_s},  {u"Del"_s, u"Entf"_s},
        {u"Ins"_s, u"Einfg"_s},           {u"PgDown"_s, u"Bild ab"_s},  {u"PgUp"_s, u"Bild auf"_s},
        {u"Left"_s, u"Links"_s},          {u"Right"_s, u"Rechts"_s},    {u"Up"_s, u"Oben"_s},
        {u"Down"_s, u"Unten"_s},          {u"Home"_s, u"Pos1"_s},       {u"End"_s, u"Ende"_s},
        {u"Backspace"_s, u"Rücktaste"_s}, {u"Space"_s, u"Leertaste"_s}, {u"Return"_s, u"Eingabe"_s},
        {u"Enter"_s, u"Enter"_s},         {u"Menu"_s, u"Menü"_s}};
    QStringList parts = key.toString(QKeySequence::PortableText).split(u'+');
    if (language == "German"_L1) {
        for (QString &part : parts)
            part = german.value(part, part);
    }
    return parts.join(u'+');
}
}

class tst_KeyList : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_program.reset(); }

    void noKeyHasTwoMeanings();
    void everyCommandHasAKeyAndAHandler();
    void guideNamesEveryKey_data();
    void guideNamesEveryKey();

    void listIsSearchedAsOneTypes();
    void listFollowsTheLanguage();
    void listIsOneAndClosesByEscape();

    void menusComeBeforeKeysOfTheTable();
    void heldKeyActsOnce_data();
    void heldKeyActsOnce();
    void keysWaitWhileSomethingIsOpen_data();
    void keysWaitWhileSomethingIsOpen();
    void keysOfItemsThatAreGreyDoNothing();
    void settingIsInTheOptions();

private:
    void press(int key, Qt::KeyboardModifiers held, bool isRepeat = false) const
    {
        QTRY_VERIFY(QApplication::activeWindow());
        QTest::simulateEvent(QApplication::activeWindow()->windowHandle(), true, key, held, {},
                             isRepeat);
        QTest::simulateEvent(QApplication::activeWindow()->windowHandle(), false, key, held, {},
                             isRepeat);
    }
    void openWindows(int count) const
    {
        for (int i = 0; i < count; ++i)
            m_program->frame->openBrowserWindow(u"http://one/"_s, WindowState::AsOthers);
    }
    static int windows() { return int(browserForms().size()); }
    static QTreeWidget &list()
    {
        return *Forms::named("frmKeys").first()->findChild<QTreeWidget *>();
    }
    static QStringList seenRows();
    static void type(const QString &text)
    {
        Forms::named("frmKeys").first()->findChild<QLineEdit *>()->setText(text);
    }
    void takeLanguage(const QString &name) const;

    std::unique_ptr<ProgramWithoutEngine> m_program;
};

void tst_KeyList::init()
{
    m_program = std::make_unique<ProgramWithoutEngine>();
    QVERIFY(m_program->folder.isValid());
    for (const QString &name : {u"English"_s, u"German"_s})
        QVERIFY(
            QFile::copy(QStringLiteral(ORVANE_SOURCE_DIR "/appdata/Languages/") + name + ".ini"_L1,
                        AppFolder::appData("Languages/"_L1 + name + ".ini"_L1)));
    m_program->start();
    m_program->frame->activateWindow();
    QTRY_VERIFY(m_program->frame->isActiveWindow());
}

void tst_KeyList::takeLanguage(const QString &name) const
{
    QVERIFY(m_program->folder.setSetting(u"Options"_s, u"Language"_s, name));
    startUp(*m_program->frame);
}

QStringList tst_KeyList::seenRows()
{
    QStringList rows;
    for (int i = 0; i < list().topLevelItemCount(); ++i) {
        const QTreeWidgetItem *group = list().topLevelItem(i);
        if (group->isHidden())
            continue;
        if (group->childCount() == 0)
            rows.append(group->text(0));
        for (int j = 0; j < group->childCount(); ++j) {
            const QTreeWidgetItem *row = group->child(j);
            if (!row->isHidden())
                rows.append(row->text(0) + u'|' + row->text(1));
        }
    }
    return rows;
}

/// Keys of a place come first where the keyboard is in it; those of fields edit there, as the
/// menu's of the same name do.
void tst_KeyList::noKeyHasTwoMeanings()
{
    QHash<QKeySequence, QString> everywhere;
    QHash<std::pair<QString, QKeySequence>, QString> inPlaces;
    const QList<KeyRow> rows = allKeys(*m_program->frame);
    for (const KeyRow &row : rows) {
        QVERIFY2(!row.keys.isEmpty(), qPrintable(row.what));
        for (const QKeySequence &key : row.keys) {
            const QString told = key.toString() + u' ' + row.what;
            QVERIFY2(!key.isEmpty() && key.count() == 1, qPrintable(told));
            QVERIFY2(!inPlaces.contains({row.group, key}), qPrintable(told));
            inPlaces.insert({row.group, key}, row.what);
            if (row.isEverywhere) {
                QVERIFY2(!everywhere.contains(key), qPrintable(told));
                everywhere.insert(key, row.what);
            }
        }
    }
    const QStringList windowsOfTheirOwn{u"Document HTML"_s, u"Print Preview"_s};
    const QList<QKeySequence> editing{QKeySequence(u"Shift+Del"_s), QKeySequence(u"Ctrl+Ins"_s)};
    for (const KeyRow &row : rows) {
        for (const QKeySequence &key : row.keys) {
            const bool mayClash =
                row.isEverywhere || windowsOfTheirOwn.contains(row.group) || editing.contains(key);
            QVERIFY2(mayClash || !everywhere.contains(key),
                     qPrintable(key.toString() + u' ' + row.what));
        }
    }
}

void tst_KeyList::everyCommandHasAKeyAndAHandler()
{
    for (const PlainCommand &command : plainCommands()) {
        QVERIFY2(std::ranges::any_of(
                     keyTable(),
                     [&](const KeyEntry &key) { return !qstrcmp(key.command, command.name); }),
                 command.name);
    }
    for (const KeyEntry &key : keyTable()) {
        const bool isPlain = std::ranges::any_of(plainCommands(), [&](const PlainCommand &each) {
            return !qstrcmp(each.name, key.command);
        });
        QVERIFY2(isPlain || m_program->frame->menuItem(QLatin1String(key.command)), key.key);
    }
}

void tst_KeyList::guideNamesEveryKey_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("page");
    QTest::newRow("English") << u"English"_s << u"keys.md"_s;
    QTest::newRow("German") << u"German"_s << u"de/keys.md"_s;
}

/// A line of the guide for each row of the list.
void tst_KeyList::guideNamesEveryKey()
{
    QFETCH(const QString, language);
    QFETCH(const QString, page);
    takeLanguage(language);
    QFile file(QStringLiteral(ORVANE_SOURCE_DIR "/docs/") + page);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString guide = QString::fromUtf8(file.readAll());
    QString group;
    QString missing;
    const QList<KeyRow> rows = allKeys(*m_program->frame);
    for (const KeyRow &row : rows) {
        QStringList keys;
        for (const QKeySequence &key : row.keys)
            keys.append(keyText(key, language));
        const QString line = "| %1 | %2 |\n"_L1.arg(row.what, keys.join(u", "_s));
        if (std::exchange(group, row.group) != row.group && !guide.contains("\n## "_L1 + group))
            missing += "\n## "_L1 + group + "\n\n"_L1;
        if (!guide.contains(line))
            missing += line;
    }
    QVERIFY2(missing.isEmpty(), qPrintable(u'\n' + missing));
}

void tst_KeyList::listIsSearchedAsOneTypes()
{
    m_program->choose("mnuHelpKeys");
    QVERIFY(seenRows().size() > 70);
    type(u"ctrl+t blank"_s);
    QCOMPARE(seenRows(), QStringList{u"New blank window, ready for an address|Ctrl+T"_s});
    type(u"ADDRESS bar"_s);
    QVERIFY(seenRows().contains(u"Address bar|Ctrl+L, Alt+D"_s));
    QVERIFY(seenRows().contains(u"Drop the list|Up, Down, Alt+Down"_s));
    QVERIFY(!seenRows().contains(u"Last window|Ctrl+9"_s));
    type(u"close file"_s);
    QVERIFY(seenRows().contains(u"Close|Ctrl+W, Ctrl+F4"_s));
    type(u"new current"_s);
    QCOMPARE(seenRows(), QStringList{u"New > Current|Ctrl+N"_s});
    type(u"nothing like this"_s);
    QCOMPARE(seenRows(), QStringList{u"No key is found"_s});
    type({});
    QVERIFY(seenRows().size() > 70);
    QVERIFY(!seenRows().contains(u"No key is found"_s));
}

void tst_KeyList::listFollowsTheLanguage()
{
    m_program->choose("mnuHelpKeys");
    const int rows = int(seenRows().size());
    takeLanguage(u"German"_s);
    QTRY_COMPARE(Forms::named("frmKeys").first()->windowTitle(), u"Tasten"_s);
    QCOMPARE(seenRows().size(), rows);
    type(u"letztes"_s);
    QVERIFY(seenRows().first().startsWith("Letztes Fenster|"_L1));
    // There the other key opens a menu.
    type(u"adressleiste +l"_s);
    QCOMPARE(seenRows().size(), 1);
    QVERIFY(!seenRows().first().contains("Alt+"_L1));
    type(u"letztes"_s);
    takeLanguage(u"English"_s);
    QTRY_COMPARE(seenRows(), QStringList{u"No key is found"_s});
}

void tst_KeyList::listIsOneAndClosesByEscape()
{
    m_program->choose("mnuHelpKeys");
    m_program->choose("mnuHelpKeys");
    QCOMPARE(Forms::named("frmKeys").size(), 1);
    QWidget *dialog = Forms::named("frmKeys").first();
    QTRY_COMPARE(QApplication::activeWindow(), dialog);
    QVERIFY(dialog->findChild<QLineEdit *>()->hasFocus());
    press(Qt::Key_Return, {});
    QVERIFY(dialog->isVisible());
    press(Qt::Key_Down, {});
    QVERIFY(list().hasFocus());
    press(Qt::Key_Escape, {});
    QTRY_VERIFY(Forms::named("frmKeys").isEmpty());
}

/// In German "Datei" has the key that is the address bar's elsewhere.
void tst_KeyList::menusComeBeforeKeysOfTheTable()
{
    auto *field = m_program->frame->findChild<AddressBox *>(u"brwURL1"_s)->findChild<QLineEdit *>();
    const auto leave = [this] {
        m_program->frame->activeChild()->widget()->setFocus();
        static_cast<FakeWebBrowser *>(activeBrowser(*m_program->frame)->browser())->setFocus();
    };
    leave();
    QVERIFY(!field->hasFocus());
    press(Qt::Key_D, Qt::AltModifier);
    QTRY_VERIFY(field->hasFocus());

    takeLanguage(u"German"_s);
    leave();
    press(Qt::Key_D, Qt::AltModifier);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QCOMPARE(QApplication::activePopupWidget()->objectName(), u"mnuFile"_s);
    QVERIFY(!field->hasFocus());
    QApplication::activePopupWidget()->close();
    press(Qt::Key_L, Qt::ControlModifier);
    QTRY_VERIFY(field->hasFocus());

    takeLanguage(u"English"_s);
    leave();
    press(Qt::Key_D, Qt::AltModifier);
    QTRY_VERIFY(field->hasFocus());
}

void tst_KeyList::heldKeyActsOnce_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("change");
    QTest::newRow("Ctrl+T") << int(Qt::Key_T) << 1;
    QTest::newRow("Ctrl+N") << int(Qt::Key_N) << 1;
    QTest::newRow("Ctrl+W") << int(Qt::Key_W) << -1;
    QTest::newRow("Ctrl+F4") << int(Qt::Key_F4) << -1;
}

/// What a key does is through once a key that comes behind it is.
void tst_KeyList::heldKeyActsOnce()
{
    QFETCH(int, key);
    QFETCH(int, change);
    openWindows(20);
    const int before = windows();
    press(key, Qt::ControlModifier);
    for (int i = 0; i < 100; ++i)
        press(key, Qt::ControlModifier, true);
    QCoreApplication::processEvents();
    QTRY_COMPARE(windows(), before + change);
    press(key, Qt::ControlModifier);
    QTRY_COMPARE(windows(), before + 2 * change);
}

void tst_KeyList::keysWaitWhileSomethingIsOpen_data()
{
    QTest::addColumn<bool>("isMenu");
    QTest::newRow("menu") << true;
    QTest::newRow("dialog") << false;
}

void tst_KeyList::keysWaitWhileSomethingIsOpen()
{
    QFETCH(bool, isMenu);
    openWindows(2);
    const int before = windows();
    if (isMenu) {
        press(Qt::Key_F, Qt::AltModifier);
        QTRY_VERIFY(QApplication::activePopupWidget());
    } else {
        m_program->choose("mnuToolsOptions");
        QTRY_VERIFY(QApplication::activeModalWidget());
        QTRY_COMPARE(QApplication::activeWindow(), QApplication::activeModalWidget());
    }
    for (const int key : {Qt::Key_T, Qt::Key_W, Qt::Key_1, Qt::Key_L})
        press(key, Qt::ControlModifier);
    QCoreApplication::processEvents();
    QCOMPARE(windows(), before);
    if (isMenu)
        QVERIFY(QApplication::activePopupWidget());
    else
        QVERIFY(QApplication::activeModalWidget());
    QVERIFY(!m_program->frame->findChild<AddressBox *>(u"brwURL1"_s)
                 ->findChild<QLineEdit *>()
                 ->hasFocus());
    if (isMenu)
        QApplication::activePopupWidget()->close();
}

void tst_KeyList::keysOfItemsThatAreGreyDoNothing()
{
    m_program->choose("mnuFileCloseAll");
    QTRY_COMPARE(windows(), 0);
    for (const int key : {Qt::Key_W, Qt::Key_U, Qt::Key_1, Qt::Key_9})
        press(key, Qt::ControlModifier);
    for (const int key : {Qt::Key_Left, Qt::Key_Right})
        press(key, Qt::AltModifier);
    QCOMPARE(windows(), 0);
    press(Qt::Key_T, Qt::ControlModifier);
    QTRY_COMPARE(windows(), 1);
    QVERIFY(Forms::named("frmSource").isEmpty());
}

void tst_KeyList::settingIsInTheOptions()
{
    m_program->choose("mnuToolsOptions");
    QWidget *options = Forms::named("frmOptions").first();
    auto *box = options->findChild<QAbstractButton *>(u"chkBackspaceGoesBack"_s);
    QVERIFY(box->isChecked());
    auto *apply = options->findChild<QAbstractButton *>(u"cmdApply"_s);
    apply->click();
    QVERIFY(!m_program->folder.readSettings().contains("BackspaceGoesBack"));
    box->setChecked(false);
    apply->click();
    QCOMPARE(m_program->folder.setting(u"Settings"_s, u"BackspaceGoesBack"_s), u"0"_s);
}

QTEST_MAIN(tst_KeyList)
#include "tst_keylist.moc"
