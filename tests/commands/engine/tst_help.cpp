#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>

#include "../Session.h"
#include "Answer.h"
#include "EngineAge.h"
#include "EngineTest.h"
#include "ProgramInfo.h"

using namespace Qt::StringLiterals;

/// The commands of the Help menu.
class tst_Help : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_session.reset(); }

    void aboutTwiceShowsOneBox();
    void aboutBoxTellsWhatItIs();
    void oldEngineIsTold();
    void okUnloadsTheBox();
    void closeAllTakesTheBox();
    void versionsCanBeCopied();
    void textsOfTheAboutBoxStayFixed();
    void donatePageOpensInAWindow();
    void makersPageOpensInAWindow();
    void updaterThatDoesNotStart_data();
    void updaterThatDoesNotStart();
    void updaterIsStarted();

private:
    QWidget *about() const;

    std::unique_ptr<Session> m_session;
};

void tst_Help::init()
{
    m_session = std::make_unique<Session>();
    QVERIFY(m_session->folder.write(u"AppData/Drums.wav"_s, "not a sound"));
    m_session->start(m_session->server.url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
}

QWidget *tst_Help::about() const
{
    const QList<QWidget *> boxes = Forms::named("frmAbout");
    return boxes.size() == 1 ? boxes.first() : nullptr;
}

void tst_Help::aboutTwiceShowsOneBox()
{
    m_session->choose("mnuHelpAbout");
    QWidget *first = about();
    QVERIFY(first);
    QVERIFY(first->isVisible());
    QVERIFY2(!first->isModal(), "the frame stays usable");
    m_session->choose("mnuHelpAbout");
    QCOMPARE(about(), first);
}

void tst_Help::aboutBoxTellsWhatItIs()
{
    m_session->choose("mnuHelpAbout");
    const auto text = [this](const char *name) {
        const auto *label = about()->findChild<QLabel *>(QString::fromLatin1(name));
        return label ? label->text() : QString();
    };
    QCOMPARE(about()->windowTitle(), u"About \"Orvane\"..."_s);
    QCOMPARE(text("lblTitle"), u"Orvane"_s);
    QCOMPARE(text("lblVersion"), "Version "_L1 + ProgramInfo::version());
    QVERIFY(
        QRegularExpression(u"^Version \\d+\\.\\d+\\.\\d+$"_s).match(text("lblVersion")).hasMatch());
    QCOMPARE(
        text("lblDescription"),
        u"Orvane is a webbrowser allowing users to open as many windows as they need to inside "
        "a single application task.\r\nThis allows users to have just a single window tab on "
        "their task bar!"_s);
    QCOMPARE(text("lblCopyright"), ProgramInfo::copyright());
    QVERIFY(!about()->findChild<QLabel *>(u"imgIcon"_s)->pixmap(Qt::ReturnByValue).isNull());
    QVERIFY(about()->findChild<QWidget *>(u"Line1"_s));
}

void tst_Help::oldEngineIsTold()
{
    m_session->folder.writeLanguage(u"English"_s, "[frmAbout]\r\nstrOldEngine=Von %1: alt\r\n");
    m_session->choose("mnuHelpAbout");
    const auto *told = about()->findChild<QLabel *>(u"lblOldEngine"_s);
    const QDate released = EngineAge::ofEngine();
    QCOMPARE(told != nullptr, EngineAge::isOld(released, QDate::currentDate()));
    if (told)
        QCOMPARE(told->text(), "Von "_L1 + released.toString(u"yyyy-MM"_s) + ": alt"_L1);
}

void tst_Help::okUnloadsTheBox()
{
    m_session->choose("mnuHelpAbout");
    QTest::mouseClick(about()->findChild<QPushButton *>(u"cmdOK"_s), Qt::LeftButton);
    QTRY_VERIFY(Forms::named("frmAbout").isEmpty());
    m_session->choose("mnuHelpAbout");
    QVERIFY(about()->isVisible());
}

void tst_Help::closeAllTakesTheBox()
{
    m_session->choose("mnuHelpAbout");
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(Forms::named("frmAbout").isEmpty());
    QCOMPARE(m_session->windows(), 0);
    QVERIFY(m_session->frame->isVisible());
}

void tst_Help::versionsCanBeCopied()
{
    m_session->choose("mnuHelpAbout");
    QTest::mouseClick(about()->findChild<QPushButton *>(u"cmdCopyVersions"_s), Qt::LeftButton);
    const QString copied = QApplication::clipboard()->text();
    QVERIFY(copied.contains("Orvane "_L1 + ProgramInfo::version()));
    QVERIFY(copied.contains("Qt "_L1 + QLatin1StringView(qVersion())));
    QVERIFY(copied.contains(u"security patches"_s));
}

void tst_Help::textsOfTheAboutBoxStayFixed()
{
    m_session->folder.writeLanguage(u"English"_s,
                                    "[frmAbout]\r\ncmdCopyVersions=&Kopieren\r\n"
                                    "lblTitle=never\r\nlblDescription=never\r\n");
    m_session->choose("mnuHelpAbout");
    QCOMPARE(about()->findChild<QPushButton *>(u"cmdCopyVersions"_s)->text(), u"&Copy Versions"_s);
    QCOMPARE(about()->findChild<QLabel *>(u"lblTitle"_s)->text(), u"Orvane"_s);
    QVERIFY(about()->findChild<QLabel *>(u"lblDescription"_s)->text().startsWith(u"Orvane is"_s));
}

void tst_Help::donatePageOpensInAWindow()
{
    QVERIFY(m_session->folder.write(u"AppData/Donate.html"_s, "<title>Thank you</title>"));
    m_session->choose("mnuHelpDonate");
    QCOMPARE(m_session->windows(), 2);
    QTRY_COMPARE(m_session->active()->windowTitle(), u"Thank you"_s);
    QVERIFY(m_session->location().endsWith(u"/AppData/Donate.html"_s));
}

void tst_Help::makersPageOpensInAWindow()
{
    m_session->choose("mnuHelpKelmarsh");
    QCOMPARE(m_session->windows(), 2);
    QCOMPARE(m_session->active()->windowTitle(), ProgramInfo::homeUrl());
    QCOMPARE(m_session->address().text(), ProgramInfo::homeUrl());
}

void tst_Help::updaterThatDoesNotStart_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("more");
    QTest::newRow("missing") << false << u"Error 2: No such file or directory"_s
                             << u"No updater came with this Orvane."_s;
    QTest::newRow("not executable") << true << u"Error 13: Permission denied"_s << QString();
}

void tst_Help::updaterThatDoesNotStart()
{
    QFETCH(bool, isThere);
    QFETCH(QString, text);
    QFETCH(const QString, more);
    if (isThere)
        QVERIFY(m_session->folder.write(u"OrvaneUpdater.exe"_s, "#!/bin/sh\n"));
    Answer ok(QMessageBox::Ok);
    m_session->choose("mnuHelpCheckForUpdate");
    QTRY_COMPARE(ok.count(), 1);
    QCOMPARE(ok.text(), text);
    QCOMPARE(ok.more().section(u' ', 0, 5), more);
    QCOMPARE(ok.title(), u"Orvane"_s);
}

void tst_Help::updaterIsStarted()
{
    QVERIFY(m_session->folder.write(u"OrvaneUpdater.exe"_s,
                                    "#!/bin/sh\n: > \"" + m_session->folder.file(u"ran"_s).toUtf8()
                                        + "\"\n"));
    QVERIFY(QFile::setPermissions(m_session->folder.file(u"OrvaneUpdater.exe"_s),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    Answer ok(QMessageBox::Ok);
    m_session->choose("mnuHelpCheckForUpdate");
    QTRY_VERIFY(m_session->folder.exists(u"ran"_s));
    QCOMPARE(ok.count(), 0);
}

ORVANE_ENGINE_TEST_MAIN(tst_Help)
#include "tst_help.moc"
