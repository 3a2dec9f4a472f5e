#include "OpenAddressDialog.h"

#include <QDesktopServices>
#include <QGroupBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QUrl>
#include <memory>

#include "FakeFrame.h"
#include "FakeWebBrowser.h"
#include "Forms.h"
#include "TempAppFolder.h"

using namespace Qt::StringLiterals;

/// A program of the desktop's.
class Starter : public QObject {
    Q_OBJECT

public slots:
    void start(const QUrl &url) { emit started(url); }

signals:
    void started(const QUrl &url);
};

/// The dialog in which an address is typed, and what it hands on.
class tst_OpenUrl : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void captionsAsDesigned();
    void captionsAreLookedUp();
    void enterOpensOnce_data();
    void enterOpensOnce();
    void textGoesAsItStands_data();
    void textGoesAsItStands();
    void mailAddressGoesToTheMailProgram();
    void cancelOpensNothing_data();
    void cancelOpensNothing();
    void typingStartsInTheField();

private:
    void show();
    QPushButton *button(const char *name) const
    {
        return m_dialog->findChild<QPushButton *>(QString::fromLatin1(name));
    }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FakeFrame> m_frame;
    QPointer<OpenAddressDialog> m_dialog;
    QPointer<QLineEdit> m_field;
};

void tst_OpenUrl::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_frame = std::make_unique<FakeFrame>();
}

void tst_OpenUrl::cleanup()
{
    delete m_dialog;
    m_frame.reset();
    m_folder.reset();
}

void tst_OpenUrl::show()
{
    m_dialog = new OpenAddressDialog(*m_frame);
    m_dialog->open();
    m_field = m_dialog->findChild<QLineEdit *>(u"txtOpenURL"_s);
    QVERIFY(QTest::qWaitForWindowActive(m_dialog));
}

void tst_OpenUrl::captionsAsDesigned()
{
    show();
    QCOMPARE(m_dialog->windowTitle(), u"Open URL"_s);
    QCOMPARE(button("cmdOpenURL")->text(), u"&Open"_s);
    QCOMPARE(button("cmdCancel")->text(), u"&Cancel"_s);
    QCOMPARE(m_field->text(), u"http://"_s);
    QVERIFY(m_dialog->findChild<QGroupBox *>(u"Frame1"_s));
    QCOMPARE(Forms::named("frmOpenURL").size(), 1);
    QVERIFY(m_dialog->isModal());
}

void tst_OpenUrl::captionsAreLookedUp()
{
    m_folder->writeLanguage(u"English"_s,
                            "[frmOpenURL]\r\nCaption=Adresse\r\ncmdOpenURL=&Los\r\n"
                            "cmdCancel=&Nichts\r\ntxtOpenURL=never looked up\r\n");
    show();
    QCOMPARE(m_dialog->windowTitle(), u"Adresse"_s);
    QCOMPARE(button("cmdOpenURL")->text(), u"&Los"_s);
    QCOMPARE(button("cmdCancel")->text(), u"&Nichts"_s);
    QCOMPARE(m_field->text(), u"http://"_s);
}

void tst_OpenUrl::enterOpensOnce_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("keypad Enter") << Qt::Key_Enter;
}

void tst_OpenUrl::enterOpensOnce()
{
    QFETCH(Qt::Key, key);
    show();
    QTest::keyClick(m_field, key);
    QTRY_VERIFY(!m_dialog);
    QCOMPARE(m_frame->navigated, QStringList{u"http://"_s});
    QVERIFY(Forms::named("frmOpenURL").isEmpty());
}

void tst_OpenUrl::textGoesAsItStands_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("blanks around") << u"  a b  "_s;
    QTest::newRow("no scheme") << u"example.com"_s;
}

void tst_OpenUrl::textGoesAsItStands()
{
    QFETCH(QString, text);
    show();
    m_field->setText(text);
    QTest::mouseClick(button("cmdOpenURL"), Qt::LeftButton);
    QTRY_VERIFY(!m_dialog);
    QCOMPARE(m_frame->navigated, QStringList{text});
}

void tst_OpenUrl::mailAddressGoesToTheMailProgram()
{
    QList<QUrl> started;
    Starter starter;
    connect(&starter, &Starter::started, this,
            [&started](const QUrl &url) { started.append(url); });
    QDesktopServices::setUrlHandler(u"mailto"_s, &starter, "start");
    QDesktopServices::setUrlHandler(u"other"_s, &starter, "start");
    for (const QString &typed : {u"MailTo:a@b.example"_s, u"other:x"_s}) {
        show();
        m_field->setText(typed);
        button("cmdOpenURL")->click();
        QTRY_VERIFY(!m_dialog || !m_dialog->isVisible());
        delete m_dialog;
    }
    QDesktopServices::unsetUrlHandler(u"mailto"_s);
    QDesktopServices::unsetUrlHandler(u"other"_s);
    QCOMPARE(started, QList<QUrl>{QUrl(u"mailto:a@b.example"_s)});
    QCOMPARE(m_frame->navigated, QStringList{u"other:x"_s});
}

void tst_OpenUrl::cancelOpensNothing_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("button") << false;
    QTest::newRow("Escape") << true;
}

void tst_OpenUrl::cancelOpensNothing()
{
    QFETCH(bool, byKey);
    show();
    QTest::keyClicks(m_field, u"host"_s);
    if (byKey)
        QTest::keyClick(m_field, Qt::Key_Escape);
    else
        QTest::mouseClick(button("cmdCancel"), Qt::LeftButton);
    QTRY_VERIFY(!m_dialog);
    QCOMPARE(m_frame->navigated, QStringList());
}

void tst_OpenUrl::typingStartsInTheField()
{
    show();
    QTRY_COMPARE(QApplication::focusWidget(), m_field.data());
    QCOMPARE(m_field->selectedText(), u"http://"_s);
    QTest::keyClicks(m_field, u"host"_s);
    QCOMPARE(m_field->text(), u"host"_s);
    QVERIFY(!m_field->accessibleName().isEmpty());
}

QTEST_MAIN(tst_OpenUrl)
#include "tst_openurl.moc"
