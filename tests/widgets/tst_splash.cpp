#include "AppFolder.h"
#include "Forms.h"
#include "ProgramInfo.h"
#include "Splash.h"
#include "TempAppFolder.h"

#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <memory>

using namespace Qt::StringLiterals;

class tst_splash : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void isModelessAndOwned();
    void fillsItsLabels();
    void centresThreeLabels();
    void showsTheLogo();
    void closesWithoutHarmWhenTheLogoIsUnusable_data();
    void closesWithoutHarmWhenTheLogoIsUnusable();
    void scalesALargeLogo();
    void closesByItself();
    void closesAtAClick_data();
    void closesAtAClick();
    void closesAtAnyKey_data();
    void closesAtAnyKey();
    void staysWhileOthersHaveTheFocus();
    void goesWithTheFrame();
    void leavesTheFormsWhenItCloses();

private:
    QString text(const char *label) const;
    void writeLogo(QSize size) const;

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<QWidget> m_frame;
    QPointer<Splash> m_splash;
};

void tst_splash::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    writeLogo(QSize(120, 60));
    m_frame = std::make_unique<QWidget>();
    m_frame->resize(800, 600);
    m_frame->show();
    QVERIFY(QTest::qWaitForWindowActive(m_frame.get()));
}

void tst_splash::cleanup()
{
    m_frame.reset();
    m_folder.reset();
}

QString tst_splash::text(const char *label) const
{
    const auto *found = m_splash->findChild<QLabel *>(QLatin1String(label));
    return found ? found->text() : u"(no such label)"_s;
}

void tst_splash::writeLogo(QSize size) const
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QVERIFY(image.save(AppFolder::appData(u"Logo.jpg"_s)));
}

void tst_splash::isModelessAndOwned()
{
    m_splash = showSplash(m_frame.get());
    QVERIFY(m_splash->isVisible());
    QVERIFY(m_splash->isWindow());
    QVERIFY(!m_splash->isModal());
    QCOMPARE(m_splash->parentWidget(), m_frame.get());
    QCOMPARE(m_splash->objectName(), u"frmSplash"_s);
    QCOMPARE(Forms::named("frmSplash"), QList<QWidget *>{m_splash});
}

void tst_splash::fillsItsLabels()
{
    m_splash = showSplash(m_frame.get());
    QCOMPARE(text("lblTitle"), ProgramInfo::title());
    QCOMPARE(text("lblDescription"), ProgramInfo::fileDescription());
    QCOMPARE(text("lblVersion"), "Version "_L1 + ProgramInfo::version());
    QCOMPARE(text("lblLegal"), ProgramInfo::copyright() + "\n\n"_L1 + ProgramInfo::trademarks());
    QCOMPARE(text("lblContactInformation"),
             "Website URL: "_L1 + ProgramInfo::makerUrl() + "\nEMail Address: "_L1
                 + ProgramInfo::makerEmail());
}

void tst_splash::centresThreeLabels()
{
    m_splash = showSplash(m_frame.get());
    for (const char *name : {"lblTitle", "lblDescription", "lblVersion"}) {
        const auto *label = m_splash->findChild<QLabel *>(QLatin1String(name));
        QVERIFY2(label, name);
        const QRect inner = m_splash->contentsRect();
        const int left = inner.left() + inner.width() / 2 - label->width() / 2;
        QVERIFY2(qAbs(label->x() - left) <= 1, name);
        QVERIFY2(inner.contains(label->geometry()), name);
    }
}

void tst_splash::showsTheLogo()
{
    m_splash = showSplash(m_frame.get());
    const auto *logo = m_splash->findChild<QLabel *>(u"imgLogo"_s);
    QVERIFY(logo->isVisible());
    QCOMPARE(logo->pixmap(Qt::ReturnByValue).size(), QSize(120, 60));
}

void tst_splash::closesWithoutHarmWhenTheLogoIsUnusable_data()
{
    QTest::addColumn<bool>("present");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("missing") << false << QByteArray();
    QTest::newRow("empty") << true << QByteArray();
    QTest::newRow("no picture") << true << QByteArray("\xff\xd8\xff\xe0 not a picture at all");
}

void tst_splash::closesWithoutHarmWhenTheLogoIsUnusable()
{
    QFETCH(bool, present);
    QFETCH(QByteArray, bytes);
    if (present)
        QVERIFY(m_folder->write(u"AppData/Logo.jpg"_s, bytes));
    else
        QVERIFY(QFile::remove(AppFolder::appData(u"Logo.jpg"_s)));
    m_splash = showSplash(m_frame.get());
    QVERIFY(m_splash->isVisible());
    QVERIFY(!m_splash->findChild<QLabel *>(u"imgLogo"_s)->isVisible());
    QCOMPARE(text("lblTitle"), ProgramInfo::title());
    QTest::mouseClick(m_splash, Qt::LeftButton);
    QTRY_VERIFY(!m_splash);
}

void tst_splash::scalesALargeLogo()
{
    writeLogo(QSize(4000, 1000));
    m_splash = showSplash(m_frame.get());
    const auto *logo = m_splash->findChild<QLabel *>(u"imgLogo"_s);
    QCOMPARE(logo->pixmap(Qt::ReturnByValue).deviceIndependentSize().toSize(), QSize(480, 120));
}

void tst_splash::closesByItself()
{
    QElapsedTimer elapsed;
    elapsed.start();
    m_splash = showSplash(m_frame.get());
    QCOMPARE(m_splash->findChild<QTimer *>(u"tmrExit"_s)->interval(), 3000);
    QTRY_VERIFY_WITH_TIMEOUT(!m_splash, 10000);
    QVERIFY(elapsed.elapsed() >= 2800);
}

void tst_splash::closesAtAClick_data()
{
    QTest::addColumn<QString>("on");
    QTest::newRow("form") << QString();
    QTest::newRow("logo") << u"imgLogo"_s;
    QTest::newRow("label") << u"lblLegal"_s;
}

void tst_splash::closesAtAClick()
{
    QFETCH(QString, on);
    m_splash = showSplash(m_frame.get());
    QWidget *target = on.isEmpty() ? m_splash.data() : m_splash->findChild<QWidget *>(on);
    QTest::mouseClick(target, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!m_splash, 1500);
}

void tst_splash::closesAtAnyKey_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("letter") << Qt::Key_A;
    QTest::newRow("Escape") << Qt::Key_Escape;
    QTest::newRow("Tab") << Qt::Key_Tab;
    QTest::newRow("function key") << Qt::Key_F5;
    QTest::newRow("modifier") << Qt::Key_Shift;
}

void tst_splash::closesAtAnyKey()
{
    QFETCH(Qt::Key, key);
    m_splash = showSplash(m_frame.get());
    QVERIFY(QTest::qWaitForWindowActive(m_splash));
    QTest::keyClick(m_splash->windowHandle(), key);
    QTRY_VERIFY_WITH_TIMEOUT(!m_splash, 1500);
}

void tst_splash::staysWhileOthersHaveTheFocus()
{
    m_splash = showSplash(m_frame.get());
    QVERIFY(QTest::qWaitForWindowActive(m_splash));
    m_frame->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_frame.get()));
    QTest::keyClick(m_frame->windowHandle(), Qt::Key_A);
    QVERIFY(m_splash);
    QVERIFY(m_splash->isVisible());
}

void tst_splash::goesWithTheFrame()
{
    m_splash = showSplash(m_frame.get());
    m_frame.reset();
    QVERIFY(!m_splash);
    QVERIFY(Forms::named("frmSplash").isEmpty());
}

void tst_splash::leavesTheFormsWhenItCloses()
{
    m_splash = showSplash(m_frame.get());
    m_splash->close();
    QVERIFY(Forms::named("frmSplash").isEmpty());
}

QTEST_MAIN(tst_splash)
#include "tst_splash.moc"
