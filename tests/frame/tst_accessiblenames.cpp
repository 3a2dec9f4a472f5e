#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QtTest>

#include "BrowserWindow.h"
#include "FakeWebBrowser.h"
#include "MainWindow.h"
#include "MdiArea.h"
#include "MenuTable.h"
#include "StatusStrip.h"
#include "TabStrip.h"
#include "TempAppFolder.h"
#include "ToolBar.h"

using namespace Qt::StringLiterals;

/// What somebody who cannot see the frame, and a program that knows nothing of it, find in it.
class tst_AccessibleNames : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void frameIsNamedByItsTitle();
    void menuBarHasCaptionsWithoutMarks();
    void menuItemsHaveCaptionsWithoutMarks();
    void toolBarButtonsHaveTheirToolTips_data();
    void toolBarButtonsHaveTheirToolTips();
    void addressEditKeepsItsNameInAnyLanguage();
    void tabsHaveCaptionAndToolTip();
    void windowsHaveTheirCaptions();
    void everyControlHasANameAndSaysWhatItIs();
    void namedControlsAreFoundByName_data();
    void namedControlsAreFoundByName();

private:
    BrowserWindow *open(const QString &url);

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<MainWindow> m_frame;
    WebBrowserMaker m_maker;
};

namespace {
QString nameOf(QObject *object)
{
    QAccessibleInterface *face = QAccessible::queryAccessibleInterface(object);
    return face ? face->text(QAccessible::Name) : QString();
}

QString descriptionOf(QObject *object)
{
    QAccessibleInterface *face = QAccessible::queryAccessibleInterface(object);
    return face ? face->text(QAccessible::Description) : QString();
}

QString withoutMarks(QString caption)
{
    return caption.remove(u'&');
}

/// Everything below `face` that is shown, on any level.
void collect(QAccessibleInterface *face, QList<QAccessibleInterface *> &all)
{
    for (int i = 0; i < face->childCount(); ++i) {
        QAccessibleInterface *child = face->child(i);
        if (!child || !child->isValid() || child->state().invisible)
            continue;
        all.append(child);
        collect(child, all);
    }
}

bool isOperated(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::Button:
    case QAccessible::ButtonMenu:
    case QAccessible::ButtonDropDown:
    case QAccessible::CheckBox:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::MenuItem:
    case QAccessible::PageTab:
    case QAccessible::RadioButton:
    case QAccessible::Tree:
    case QAccessible::List:
        return true;
    default:
        return false;
    }
}
}

void tst_AccessibleNames::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    QVERIFY(m_folder->writeSettings("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\n"
                                    "[View]\r\nSearchBar=True\r\n"));
    m_maker = setWebBrowserMaker([](QWidget *host) { return new FakeWebBrowser(host); });
    m_frame = std::make_unique<MainWindow>();
    m_frame->setCommandLine(u"http://one.example/"_s);
    m_frame->load();
    m_frame->translate();
    QVERIFY(QTest::qWaitForWindowExposed(m_frame.get()));
}

void tst_AccessibleNames::cleanup()
{
    m_frame.reset();
    setWebBrowserMaker(m_maker);
    m_folder.reset();
}

BrowserWindow *tst_AccessibleNames::open(const QString &url)
{
    m_frame->openBrowserWindow(url, WindowState::AsOthers);
    return activeBrowser(*m_frame);
}

void tst_AccessibleNames::frameIsNamedByItsTitle()
{
    BrowserWindow *window = activeBrowser(*m_frame);
    FakeWebBrowser::made().last()->events->titleChange(u"A page"_s);
    QTRY_VERIFY(window->isMaximized());
    QCOMPARE(nameOf(m_frame.get()), u"Orvane - [A page]"_s);
    window->showNormal();
    QTRY_COMPARE(nameOf(m_frame.get()), u"Orvane"_s);
}

void tst_AccessibleNames::menuBarHasCaptionsWithoutMarks()
{
    QAccessibleInterface *bar = QAccessible::queryAccessibleInterface(m_frame->menuBar());
    QStringList names;
    for (int i = 0; i < bar->childCount(); ++i)
        names.append(bar->child(i)->text(QAccessible::Name));
    const QStringList expected{u"File"_s,      u"Edit"_s,  u"View"_s,   u"Navigation"_s,
                               u"Favorites"_s, u"Tools"_s, u"Window"_s, u"Help"_s};
    QCOMPARE(names, expected);
}

void tst_AccessibleNames::menuItemsHaveCaptionsWithoutMarks()
{
    int seen = 0;
    for (const MenuEntry &entry : menuTable()) {
        if (entry.kind != MenuEntry::Kind::Menu)
            continue;
        QMenu *menu = m_frame->menuItem(QString::fromLatin1(entry.name))->menu();
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(menu);
        const QList<QAction *> actions = menu->actions();
        QCOMPARE(face->childCount(), int(actions.size()));
        for (int i = 0; i < face->childCount(); ++i) {
            if (actions.at(i)->isSeparator())
                continue;
            QCOMPARE(face->child(i)->text(QAccessible::Name), withoutMarks(actions.at(i)->text()));
            ++seen;
        }
    }
    QVERIFY(seen > 70);
}

void tst_AccessibleNames::toolBarButtonsHaveTheirToolTips_data()
{
    QTest::addColumn<QString>("bar");
    QTest::newRow("functions") << u"tbFunctions"_s;
    QTest::newRow("browser") << u"tbBrowser"_s;
}

void tst_AccessibleNames::toolBarButtonsHaveTheirToolTips()
{
    QFETCH(QString, bar);
    const auto *strip = m_frame->findChild<ToolBar *>(bar);
    QVERIFY(strip);
    int seen = 0;
    const QList<QAbstractButton *> buttons = strip->findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons) {
        QVERIFY2(!button->objectName().isEmpty(), qPrintable(button->toolTip()));
        QVERIFY2(!button->toolTip().isEmpty(), qPrintable(button->objectName()));
        if (button->text().isEmpty())
            QCOMPARE(nameOf(button), button->toolTip());
        ++seen;
    }
    QVERIFY(seen >= 3);
}

void tst_AccessibleNames::addressEditKeepsItsNameInAnyLanguage()
{
    m_folder->writeLanguage(u"English"_s, "[frmMain]\r\nlblAddress=Adresse:\r\n");
    m_frame->translate();
    QWidget *bar = m_frame->findChild<QWidget *>(u"brwURL1"_s);
    QCOMPARE(nameOf(bar->findChild<QLineEdit *>()), u"Address"_s);
    QCOMPARE(bar->findChild<QComboBox *>()->accessibleName(), u"Address"_s);
}

void tst_AccessibleNames::tabsHaveCaptionAndToolTip()
{
    const BrowserWindow *window = open(u"http://two.example/"_s);
    QWidget *tab = m_frame->findChild<TabStrip *>()->tab(window->tabKey());
    QVERIFY(tab);
    QCOMPARE(tab->objectName(), window->tabKey());
    QCOMPARE(nameOf(tab), u"Loading..."_s);
    FakeWebBrowser::made().last()->events->titleChange(u"  fish & chips for everyone "_s);
    QCOMPARE(nameOf(tab), u"Fish & Chi..."_s);
    QCOMPARE(descriptionOf(tab), u"fish & chips for everyone"_s);
}

void tst_AccessibleNames::windowsHaveTheirCaptions()
{
    BrowserWindow *window = open(u"http://two.example/"_s);
    QCOMPARE(nameOf(window), u"http://two.example/"_s);
    FakeWebBrowser::made().last()->events->titleChange(u" A  page "_s);
    QCOMPARE(nameOf(window), u"A  page"_s);
    FakeWebBrowser::made().last()->events->statusTextChange(u"Done"_s);
    QCOMPARE(nameOf(window->statusBar()), u"Done"_s);
}

void tst_AccessibleNames::everyControlHasANameAndSaysWhatItIs()
{
    QList<QAccessibleInterface *> all;
    collect(QAccessible::queryAccessibleInterface(m_frame.get()), all);
    int seen = 0;
    for (QAccessibleInterface *face : std::as_const(all)) {
        if (!isOperated(face->role()))
            continue;
        ++seen;
        const QObject *object = face->object();
        const QString where = object
            ? QString::fromLatin1(object->metaObject()->className()) + u' ' + object->objectName()
            : QString::number(int(face->role()));
        QVERIFY2(!face->text(QAccessible::Name).trimmed().isEmpty(), qPrintable(where));
        // The line inside a combo box is found by its box.
        const bool isPart = object && qobject_cast<QComboBox *>(object->parent());
        if (object && object->isWidgetType() && !isPart)
            QVERIFY2(!object->objectName().isEmpty(), qPrintable(where));
    }
    QVERIFY(seen > 25);
}

void tst_AccessibleNames::namedControlsAreFoundByName_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"CoolBar1", "tbFunctions", "tbBrowser", "tbLinks", "tbWindows", "brwURL1", "cboAddress",
          "FavoritesBar1", "SearchBar1", "frmBrowser", "brwWebBrowser", "StatusBar1"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_AccessibleNames::namedControlsAreFoundByName()
{
    QFETCH(QString, name);
    QVERIFY(m_frame->findChild<QObject *>(name));
}

QTEST_MAIN(tst_AccessibleNames)
#include "tst_accessiblenames.moc"
