#include "ToolBar.h"
#include "ToolBarButton.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <memory>

using namespace Qt::StringLiterals;

// Two fields with a tool bar between them; the bar has six items, two of them separators.
class tst_toolbar : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void itemsByIndexAndKey();
    void badIndexesAndKeys();
    void clickTellsKeyAndIndex();
    void clickDoesNotPress();
    void setPressed();
    void toolTips();

    void dropDown();
    void dropDownShowsWhileItsMenuDoes();
    void rightClick();
    void longPress();
    void holdWithoutListenerIsAClick();

    void tabStopsOnce();
    void arrowKeys();
    void keysThatClick();
    void keysThatDropDown();

    void accessibleNames();
    void accessibleStates();
    void accessibleActions();

    void onlyWholeButtonsShow();
    void overflowActions();
    void clearInsideAClick();
    void refill();
    void thousandsOfButtons();
    void longAndForeignTexts();

private:
    bool activate();
    ToolBarButton *button(int index1) const;
    QAccessibleInterface *accessible(int index1) const;

    std::unique_ptr<QWidget> m_window;
    QLineEdit *m_before = nullptr;
    QLineEdit *m_after = nullptr;
    ToolBar *m_bar = nullptr;
};

void tst_toolbar::init()
{
    QPixmap picture(20, 20);
    picture.fill(Qt::red);
    m_window = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(m_window.get());
    m_before = new QLineEdit;
    m_after = new QLineEdit;
    m_bar = new ToolBar;
    m_bar->addButton(u"New"_s, u"New Window"_s, picture, ToolBar::Style::DropDown);
    m_bar->addSeparator();
    m_bar->addButton(u"Killer"_s, u"Popup Killer"_s, picture, ToolBar::Style::Check);
    m_bar->addButton(u"Save"_s, u"Save Profile"_s, picture);
    m_bar->addButton(u"News"_s, u"http://example.com/"_s, {}, ToolBar::Style::Push, u"News"_s);
    m_bar->addSeparator();
    layout->addWidget(m_before);
    layout->addWidget(m_bar);
    layout->addWidget(m_after);
    m_window->resize(500, 200);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QVERIFY(!m_bar->buttonRect(5).isNull());
}

void tst_toolbar::cleanup()
{
    m_window.reset();
}

// The keyboard's focus is in active windows only.
bool tst_toolbar::activate()
{
    m_window->activateWindow();
    return QTest::qWaitForWindowActive(m_window.get());
}

ToolBarButton *tst_toolbar::button(int index1) const
{
    return qobject_cast<ToolBarButton *>(m_bar->childAt(m_bar->buttonRect(index1).center()));
}

QAccessibleInterface *tst_toolbar::accessible(int index1) const
{
    return QAccessible::queryAccessibleInterface(button(index1));
}

void tst_toolbar::itemsByIndexAndKey()
{
    QCOMPARE(m_bar->buttonCount(), 6);
    QCOMPARE(m_bar->buttonKey(1), u"New"_s);
    QCOMPARE(m_bar->buttonKey(2), QString());
    QCOMPARE(m_bar->buttonKey(3), u"Killer"_s);
    QCOMPARE(m_bar->toolTip(4), u"Save Profile"_s);
    QCOMPARE(m_bar->text(5), u"News"_s);
    QVERIFY(m_bar->buttonRect(1).right() < m_bar->buttonRect(3).left() - 4); // the separator
    QCOMPARE(m_bar->buttonRect(3).right() + 1, m_bar->buttonRect(4).left());
}

void tst_toolbar::badIndexesAndKeys()
{
    for (const int index : {0, -1, 7, 2}) {
        QCOMPARE(m_bar->buttonKey(index), QString());
        QCOMPARE(m_bar->toolTip(index), QString());
        QCOMPARE(m_bar->text(index), QString());
        QVERIFY(m_bar->buttonRect(index).isNull());
        m_bar->setToolTip(index, u"nothing"_s);
        QCOMPARE(m_bar->toolTip(index), QString());
    }
    m_bar->setPressed(u"save"_s, true);
    m_bar->setPressed(QString(), true); // separators have no key to be found by
    for (const QString &key : {u"New"_s, u"Killer"_s, u"Save"_s, u"News"_s, QString()})
        QVERIFY(!m_bar->isPressed(key));
}

void tst_toolbar::clickTellsKeyAndIndex()
{
    QSignalSpy clicked(m_bar, &ToolBar::buttonClicked);
    QTest::mouseClick(button(4), Qt::LeftButton);
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked.at(0).at(0).toString(), u"Save"_s);
    QCOMPARE(clicked.at(0).at(1).toInt(), 4);
}

void tst_toolbar::clickDoesNotPress()
{
    QSignalSpy clicked(m_bar, &ToolBar::buttonClicked);
    QTest::mouseClick(button(3), Qt::LeftButton);
    QCOMPARE(clicked.size(), 1);
    QVERIFY(!m_bar->isPressed(u"Killer"_s));
    m_bar->setPressed(u"Killer"_s, true);
    QTest::mouseClick(button(3), Qt::LeftButton);
    QCOMPARE(clicked.size(), 2);
    QVERIFY(m_bar->isPressed(u"Killer"_s));
}

void tst_toolbar::setPressed()
{
    const QImage up = button(3)->grab().toImage();
    m_bar->setPressed(u"Killer"_s, true);
    QVERIFY(m_bar->isPressed(u"Killer"_s));
    QVERIFY(button(3)->grab().toImage() != up);
    m_bar->setPressed(u"Killer"_s, false);
    QVERIFY(!m_bar->isPressed(u"Killer"_s));
    QCOMPARE(button(3)->grab().toImage(), up);
}

void tst_toolbar::toolTips()
{
    m_bar->setToolTip(4, u"Profil speichern"_s);
    QCOMPARE(m_bar->toolTip(4), u"Profil speichern"_s);
    QCOMPARE(button(4)->toolTip(), u"Profil speichern"_s);
    QCOMPARE(button(4)->accessibleName(), u"Profil speichern"_s);
}

void tst_toolbar::dropDown()
{
    QSignalSpy clicked(m_bar, &ToolBar::buttonClicked);
    QSignalSpy dropped(m_bar, &ToolBar::dropDown);
    ToolBarButton *fresh = button(1);
    QTest::mouseClick(fresh, Qt::LeftButton, {}, QPoint(10, 10));
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(dropped.size(), 0);
    QTest::mouseClick(fresh, Qt::LeftButton, {}, QPoint(fresh->width() - 5, 10));
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(dropped.size(), 1);
    QCOMPARE(dropped.at(0).at(0).toString(), u"New"_s);
    QCOMPARE(dropped.at(0).at(1).toPoint(), fresh->mapToGlobal(QPoint(0, fresh->height())));
    // A plain button has no arrow.
    QTest::mouseClick(button(4), Qt::LeftButton, {}, QPoint(button(4)->width() - 3, 10));
    QCOMPARE(dropped.size(), 1);
    QCOMPARE(clicked.size(), 2);
}

void tst_toolbar::dropDownShowsWhileItsMenuDoes()
{
    QMenu menu;
    menu.addAction(u"Blank Page"_s);
    connect(m_bar, &ToolBar::dropDown, &menu,
            [&menu](const QString &, QPoint below) { menu.popup(below); });
    const QImage up = button(1)->grab().toImage();
    QTest::mousePress(button(1), Qt::LeftButton, {}, QPoint(button(1)->width() - 5, 10));
    QTRY_VERIFY(menu.isVisible());
    QVERIFY(button(1)->grab().toImage() != up);
    menu.close();
    QCOMPARE(button(1)->grab().toImage(), up);
}

void tst_toolbar::rightClick()
{
    QSignalSpy right(m_bar, &ToolBar::rightClicked);
    QSignalSpy clicked(m_bar, &ToolBar::buttonClicked);
    const QPoint global = button(4)->mapToGlobal(QPoint(4, 4));
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(4, 4), global);
    QApplication::sendEvent(button(4), &event);
    QCOMPARE(right.size(), 1);
    QCOMPARE(right.at(0).at(0).toString(), u"Save"_s);
    QCOMPARE(right.at(0).at(1).toPoint(), global);
    QVERIFY(clicked.isEmpty());
}

void tst_toolbar::longPress()
{
    QSignalSpy held(m_bar, &ToolBar::longPressed);
    QSignalSpy clicked(m_bar, &ToolBar::buttonClicked);
    QTest::mousePress(button(4), Qt::LeftButton);
    QTRY_COMPARE(held.size(), 1);
    QTest::mouseRelease(button(4), Qt::LeftButton);
    QVERIFY(clicked.isEmpty());
    QCOMPARE(held.at(0).at(0).toString(), u"Save"_s);
    QTest::mouseClick(button(4), Qt::LeftButton);
    QCOMPARE(clicked.size(), 1);
}

void tst_toolbar::holdWithoutListenerIsAClick()
{
    QSignalSpy clicked(m_bar, &ToolBar::buttonClicked);
    QTest::mousePress(button(4), Qt::LeftButton);
    // The time of a long press, told by a long press on another bar.
    ToolBar other;
    other.addButton(u"A"_s, u"A"_s, {});
    other.show();
    QSignalSpy held(&other, &ToolBar::longPressed);
    QTest::mousePress(other.childAt(other.buttonRect(1).center()), Qt::LeftButton);
    QTRY_COMPARE(held.size(), 1);
    QVERIFY(button(4)->isDown());
    QTest::mouseRelease(button(4), Qt::LeftButton);
    QCOMPARE(clicked.size(), 1);
}

void tst_toolbar::tabStopsOnce()
{
    QVERIFY(activate());
    m_before->setFocus();
    QTest::keyClick(m_before, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), button(1));
    QTest::keyClick(button(1), Qt::Key_Right);
    QCOMPARE(QApplication::focusWidget(), button(3));
    QTest::keyClick(button(3), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_after);
    QTest::keyClick(m_after, Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget(), button(3)); // where it was left
    QTest::keyClick(button(3), Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget(), m_before);
    // A mouse click leaves the focus where it is.
    QTest::mouseClick(button(4), Qt::LeftButton);
    QCOMPARE(QApplication::focusWidget(), m_before);
}

void tst_toolbar::arrowKeys()
{
    QVERIFY(activate());
    button(1)->setFocus(Qt::TabFocusReason);
    const auto after = [](Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key);
        return QApplication::focusWidget();
    };
    QCOMPARE(after(Qt::Key_Right), button(3)); // past the separator
    QCOMPARE(after(Qt::Key_Right), button(4));
    QCOMPARE(after(Qt::Key_Right), button(5));
    QCOMPARE(after(Qt::Key_Right), button(1));
    QCOMPARE(after(Qt::Key_Left), button(5));
    QCOMPARE(after(Qt::Key_Home), button(1));
    QCOMPARE(after(Qt::Key_End), button(5));
    QCOMPARE(after(Qt::Key_Up), button(5));
    QCOMPARE(after(Qt::Key_Down), button(5));
}

void tst_toolbar::keysThatClick()
{
    QVERIFY(activate());
    QSignalSpy clicked(m_bar, &ToolBar::buttonClicked);
    button(3)->setFocus(Qt::TabFocusReason);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        QTest::keyClick(QApplication::focusWidget(), key);
    QCOMPARE(clicked.size(), 3);
    QVERIFY(!m_bar->isPressed(u"Killer"_s));
}

void tst_toolbar::keysThatDropDown()
{
    QVERIFY(activate());
    QSignalSpy dropped(m_bar, &ToolBar::dropDown);
    button(1)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(dropped.size(), 2);
}

void tst_toolbar::accessibleNames()
{
    QCOMPARE(accessible(1)->text(QAccessible::Name), u"New Window"_s);
    QCOMPARE(accessible(4)->text(QAccessible::Name), u"Save Profile"_s);
    QCOMPARE(accessible(5)->text(QAccessible::Name), u"News"_s);
    QCOMPARE(accessible(5)->text(QAccessible::Description), u"http://example.com/"_s);
    QCOMPARE(accessible(4)->object()->objectName(), u"Save"_s);
}

void tst_toolbar::accessibleStates()
{
    QAccessibleInterface *bar = QAccessible::queryAccessibleInterface(m_bar);
    QCOMPARE(bar->role(), QAccessible::ToolBar);
    QCOMPARE(bar->childCount(), 4);
    QCOMPARE(accessible(4)->role(), QAccessible::Button);
    QVERIFY(accessible(3)->state().checkable);
    QVERIFY(!accessible(4)->state().checkable);
    QVERIFY(accessible(1)->state().hasPopup);
    QVERIFY(accessible(5)->state().focusable);
    QVERIFY(!accessible(3)->state().checked);
    m_bar->setPressed(u"Killer"_s, true);
    QVERIFY(accessible(3)->state().checked);
}

void tst_toolbar::accessibleActions()
{
    QVERIFY(activate());
    QSignalSpy clicked(m_bar, &ToolBar::buttonClicked);
    QSignalSpy dropped(m_bar, &ToolBar::dropDown);
    QAccessibleActionInterface *killer = accessible(3)->actionInterface();
    QVERIFY(killer->actionNames().contains(QAccessibleActionInterface::pressAction()));
    QVERIFY(!killer->actionNames().contains(QAccessibleActionInterface::showMenuAction()));
    killer->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(clicked.size(), 1);
    killer->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(!m_bar->isPressed(u"Killer"_s));
    accessible(1)->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    QCOMPARE(dropped.size(), 1);
    accessible(5)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    QCOMPARE(QApplication::focusWidget(), button(5));
}

void tst_toolbar::onlyWholeButtonsShow()
{
    const int right = m_bar->buttonRect(4).right();
    m_bar->resize(right, m_bar->height()); // one pixel too narrow
    QVERIFY(!m_bar->buttonRect(3).isNull());
    QVERIFY(m_bar->buttonRect(4).isNull());
    QVERIFY(m_bar->buttonRect(5).isNull());
    m_bar->resize(right + 1, m_bar->height());
    QVERIFY(!m_bar->buttonRect(4).isNull());
    m_bar->resize(0, m_bar->height());
    QVERIFY(m_bar->buttonRect(1).isNull());
    m_bar->resize(m_bar->fullWidth(), m_bar->height());
    QVERIFY(!m_bar->buttonRect(5).isNull());
}

void tst_toolbar::overflowActions()
{
    QObject owner;
    QVERIFY(m_bar->overflowActions(&owner).isEmpty());
    m_bar->setPressed(u"Killer"_s, true);
    m_bar->resize(5, m_bar->height());
    const QList<QAction *> actions = m_bar->overflowActions(&owner);
    QStringList texts;
    for (const QAction *action : actions)
        texts += action->text();
    QCOMPARE(texts,
             QStringList({u"New Window"_s, u"New Window…"_s, u"Popup Killer"_s, u"Save Profile"_s,
                          u"News"_s}));
    QVERIFY(actions.at(2)->isChecked());

    QSignalSpy clicked(m_bar, &ToolBar::buttonClicked);
    QSignalSpy dropped(m_bar, &ToolBar::dropDown);
    actions.at(1)->trigger();
    QCOMPARE(dropped.size(), 1);
    QVERIFY(clicked.isEmpty());
    actions.at(2)->trigger();
    actions.at(4)->trigger();
    QCOMPARE(clicked.size(), 2);
    QCOMPARE(clicked.at(1).at(1).toInt(), 5);
    QVERIFY(m_bar->isPressed(u"Killer"_s));
}

void tst_toolbar::clearInsideAClick()
{
    connect(m_bar, &ToolBar::buttonClicked, m_window.get(), [this] { m_bar->clear(); });
    QTest::mouseClick(button(4), Qt::LeftButton);
    QCOMPARE(m_bar->buttonCount(), 0);
    QTRY_VERIFY(m_bar->findChildren<ToolBarButton *>().isEmpty());
    QCOMPARE(m_bar->fullWidth(), 0);
}

void tst_toolbar::refill()
{
    QVERIFY(activate());
    m_bar->clear();
    m_bar->addButton(u"Only"_s, u"Only one"_s, {}, ToolBar::Style::Push, u"Only"_s);
    QSignalSpy clicked(m_bar, &ToolBar::buttonClicked);
    QTest::mouseClick(button(1), Qt::LeftButton);
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked.at(0).at(0).toString(), u"Only"_s);
    m_before->setFocus();
    QTest::keyClick(m_before, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), button(1));
}

void tst_toolbar::thousandsOfButtons()
{
    m_bar->clear();
    for (int i = 0; i < 5000; ++i) {
        const QString name = u"Link %1"_s.arg(i);
        m_bar->addButton({}, u"http://example.com/"_s + name, {}, ToolBar::Style::Push, name);
        m_bar->addSeparator();
    }
    QCOMPARE(m_bar->buttonCount(), 10000);
    QTRY_VERIFY(!m_bar->buttonRect(1).isNull());
    QVERIFY(m_bar->findChildren<ToolBarButton *>().size() < 50);
    QObject owner;
    const QList<QAction *> rest = m_bar->overflowActions(&owner);
    QVERIFY(rest.size() > 4950);
    QCOMPARE(rest.constLast()->text(), u"Link 4999"_s);
    QVERIFY(m_bar->buttonRect(9999).isNull());
}

void tst_toolbar::longAndForeignTexts()
{
    m_bar->clear();
    const QStringList texts{
        QString(250, u'w'), u"日本語のニュース"_s, u"أخبار"_s, u"חדשות"_s, u"ข่าว"_s,
        u"A & B"_s,         u"\U0001F600"_s};
    for (const QString &text : texts)
        m_bar->addButton({}, text, {}, ToolBar::Style::Push, text);
    m_window->resize(1500, 200);
    QTRY_VERIFY(!m_bar->buttonRect(7).isNull());
    QVERIFY(m_bar->buttonRect(1).width() < 250);
    for (int i = 1; i <= 7; ++i)
        QCOMPARE(accessible(i)->text(QAccessible::Name), texts.at(i - 1));
    m_bar->resize(0, 20);
    QObject owner;
    QVERIFY(m_bar->overflowActions(&owner).constFirst()->text().size() < 100);
    QCOMPARE(m_bar->overflowActions(&owner).at(5)->text(), u"A && B"_s);
}

QTEST_MAIN(tst_toolbar)
#include "tst_toolbar.moc"
