#include "MsgBox.h"
#include "ProgramInfo.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <memory>

using namespace Qt::StringLiterals;
using MsgBox::Answer;

class tst_msgbox : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void answersToClicks_data();
    void answersToClicks();
    void answersToKeys_data();
    void answersToKeys();
    void closingTheBoxIsNo();
    void ownerGoingAwayIsNo();
    void answersOnce();
    void hasGivenTitleElseTheProgramsTitle();
    void showsTextAsItIs();
    void waits_data();
    void waits();
    void waitingEndsWithTheOwner();
    void informs();
    void tells();
    void needsNoOwner();

private:
    QMessageBox *box() const;
    QMessageBox *ask(const QString &text = u"Close?"_s, const QString &title = {});

    std::unique_ptr<QWidget> m_owner;
    QList<Answer> m_answers;
};

void tst_msgbox::init()
{
    m_answers.clear();
    m_owner = std::make_unique<QWidget>();
    m_owner->resize(400, 300);
    m_owner->show();
    QVERIFY(QTest::qWaitForWindowActive(m_owner.get()));
}

void tst_msgbox::cleanup()
{
    m_owner.reset();
}

QMessageBox *tst_msgbox::box() const
{
    return m_owner->findChild<QMessageBox *>(u"MsgBox"_s);
}

QMessageBox *tst_msgbox::ask(const QString &text, const QString &title)
{
    MsgBox::ask(m_owner.get(), text, title, [this](Answer answer) { m_answers.append(answer); });
    QMessageBox *shown = box();
    return shown && QTest::qWaitForWindowActive(shown) ? shown : nullptr;
}

void tst_msgbox::answersToClicks_data()
{
    QTest::addColumn<QMessageBox::StandardButton>("button");
    QTest::addColumn<Answer>("answer");
    QTest::newRow("yes") << QMessageBox::Yes << Answer::Yes;
    QTest::newRow("no") << QMessageBox::No << Answer::No;
}

void tst_msgbox::answersToClicks()
{
    QFETCH(QMessageBox::StandardButton, button);
    QFETCH(Answer, answer);
    QMessageBox *shown = ask();
    QVERIFY(shown);
    QCOMPARE(shown->icon(), QMessageBox::Question);
    QCOMPARE(shown->standardButtons(), QMessageBox::Yes | QMessageBox::No);
    QVERIFY(m_answers.isEmpty());
    QTest::mouseClick(shown->button(button), Qt::LeftButton);
    QCOMPARE(m_answers, QList<Answer>{answer});
    QTRY_VERIFY(!box());
}

void tst_msgbox::answersToKeys_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Answer>("answer");
    QTest::newRow("Return") << Qt::Key_Return << Answer::Yes;
    QTest::newRow("Escape") << Qt::Key_Escape << Answer::No;
}

void tst_msgbox::answersToKeys()
{
    QFETCH(Qt::Key, key);
    QFETCH(Answer, answer);
    QMessageBox *shown = ask();
    QVERIFY(shown);
    QTest::keyClick(shown->windowHandle(), key);
    QTRY_COMPARE(m_answers, QList<Answer>{answer});
}

void tst_msgbox::closingTheBoxIsNo()
{
    QMessageBox *shown = ask();
    QVERIFY(shown);
    shown->close();
    QCOMPARE(m_answers, QList<Answer>{Answer::No});
}

void tst_msgbox::ownerGoingAwayIsNo()
{
    QVERIFY(ask());
    m_owner.reset();
    QCOMPARE(m_answers, QList<Answer>{Answer::No});
}

void tst_msgbox::answersOnce()
{
    QMessageBox *shown = ask();
    QVERIFY(shown);
    QTest::mouseClick(shown->button(QMessageBox::Yes), Qt::LeftButton);
    m_owner.reset();
    QCOMPARE(m_answers, QList<Answer>{Answer::Yes});
}

void tst_msgbox::hasGivenTitleElseTheProgramsTitle()
{
    QMessageBox *shown = ask(u"Close?"_s, u"Allow?"_s);
    QVERIFY(shown);
    QCOMPARE(shown->windowTitle(), u"Allow?"_s);
    shown->close();
    QTRY_VERIFY(!box());
    shown = ask();
    QVERIFY(shown);
    QCOMPARE(shown->windowTitle(), ProgramInfo::title());
}

void tst_msgbox::showsTextAsItIs()
{
    QMessageBox *shown = ask(u"<b>one</b> & \u00e9\r\ntwo"_s);
    QVERIFY(shown);
    QCOMPARE(shown->text(), u"<b>one</b> & \u00e9\ntwo"_s);
    QCOMPARE(shown->textFormat(), Qt::PlainText);
}

void tst_msgbox::waits_data()
{
    answersToClicks_data();
}

void tst_msgbox::waits()
{
    QFETCH(QMessageBox::StandardButton, button);
    QFETCH(Answer, answer);
    QTimer::singleShot(0, this, [this, button] {
        QVERIFY(box());
        QTest::mouseClick(box()->button(button), Qt::LeftButton);
    });
    QCOMPARE(MsgBox::askAndWait(m_owner.get(), u"Exit?"_s), answer);
    QTRY_VERIFY(!box());
}

void tst_msgbox::waitingEndsWithTheOwner()
{
    QTimer::singleShot(0, this, [this] { m_owner.reset(); });
    QCOMPARE(MsgBox::askAndWait(m_owner.get(), u"Exit?"_s), Answer::No);
}

void tst_msgbox::informs()
{
    MsgBox::inform(m_owner.get(), u"Nothing there"_s);
    QMessageBox *shown = box();
    QVERIFY(shown);
    QVERIFY(shown->isVisible());
    QCOMPARE(shown->icon(), QMessageBox::Information);
    QCOMPARE(shown->standardButtons(), QMessageBox::Ok);
    QCOMPARE(shown->windowTitle(), ProgramInfo::title());
    QTest::mouseClick(shown->button(QMessageBox::Ok), Qt::LeftButton);
    QTRY_VERIFY(!box());
}

void tst_msgbox::tells()
{
    MsgBox::tell(m_owner.get(), u"Error 2"_s);
    QMessageBox *shown = box();
    QVERIFY(shown);
    QCOMPARE(shown->icon(), QMessageBox::NoIcon);
    QCOMPARE(shown->standardButtons(), QMessageBox::Ok);
    QVERIFY(QTest::qWaitForWindowActive(shown));
    QTest::keyClick(shown, Qt::Key_Escape);
    QTRY_VERIFY(!box());
}

void tst_msgbox::needsNoOwner()
{
    MsgBox::ask(nullptr, u"Go on?"_s, {}, [this](Answer answer) { m_answers.append(answer); });
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto found = std::find_if(windows.begin(), windows.end(), [](const QWidget *window) {
        return window->objectName() == "MsgBox"_L1;
    });
    QVERIFY(found != windows.end());
    (*found)->close();
    QCOMPARE(m_answers, QList<Answer>{Answer::No});
}

QTEST_MAIN(tst_msgbox)
#include "tst_msgbox.moc"
