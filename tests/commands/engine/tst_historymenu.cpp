#include <QMenu>

#include "../Session.h"
#include "EngineTest.h"
#include "ToolBar.h"

using namespace Qt::StringLiterals;

/// The history behind the buttons Back and Forward.
class tst_HistoryMenu : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_session.reset(); }

    void rightClickOnBackListsThePagesNearestFirst();
    void rightClickOnForwardListsThePagesAhead();
    void nothingToGoToShowsNoMenu();
    void withoutAWindowThereIsNoMenu();

private:
    void open(const QString &path);
    void rightClick(int button);
    static QMenu *menu() { return qobject_cast<QMenu *>(QApplication::activePopupWidget()); }
    static QStringList captions();

    static constexpr int back = 1;
    static constexpr int forward = 2;
    std::unique_ptr<Session> m_session;
};

void tst_HistoryMenu::init()
{
    m_session = std::make_unique<Session>();
    m_session->server.page("/three", "<title>Salt & Pepper</title>");
    m_session->start(m_session->server.url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
}

void tst_HistoryMenu::open(const QString &path)
{
    m_session->frame->navigateActive(m_session->server.url(path));
    QTRY_VERIFY(m_session->shows(m_session->server.url(path)));
}

void tst_HistoryMenu::rightClick(int button)
{
    auto *bar = m_session->frame->findChild<ToolBar *>(u"tbBrowser"_s);
    // Through the window: only there does a right click ask for a context menu.
    QTest::mouseClick(m_session->frame->windowHandle(), Qt::RightButton, {},
                      bar->mapTo(m_session->frame.get(), bar->buttonRect(button).center()));
}

QStringList tst_HistoryMenu::captions()
{
    QStringList result;
    const QList<QAction *> items = menu()->actions();
    for (const QAction *item : items)
        result += item->text();
    return result;
}

void tst_HistoryMenu::rightClickOnBackListsThePagesNearestFirst()
{
    open(u"/two"_s);
    open(u"/three"_s);
    rightClick(back);
    QTRY_VERIFY(menu());
    const QStringList expected{u"Two"_s, u"the quick brown fox"_s};
    QCOMPARE(captions(), expected);
    menu()->actions().at(1)->trigger();
    menu()->close();
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
}

void tst_HistoryMenu::rightClickOnForwardListsThePagesAhead()
{
    open(u"/three"_s);
    m_session->choose("mnuNavigationBackwards");
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
    rightClick(forward);
    QTRY_VERIFY(menu());
    QCOMPARE(captions(), QStringList{u"Salt && Pepper"_s});
    menu()->actions().first()->trigger();
    menu()->close();
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/three"_s)));
}

void tst_HistoryMenu::nothingToGoToShowsNoMenu()
{
    rightClick(back);
    QVERIFY(!menu());
}

void tst_HistoryMenu::withoutAWindowThereIsNoMenu()
{
    m_session->choose("mnuFileCloseAll");
    QTRY_COMPARE(m_session->windows(), 0);
    rightClick(back);
    QVERIFY(!menu());
}

ORVANE_ENGINE_TEST_MAIN(tst_HistoryMenu)
#include "tst_historymenu.moc"
