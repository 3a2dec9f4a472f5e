#include "DesktopSession.h"
#include "ProgramColours.h"

#include <QApplication>
#include <QPalette>
#include <QtTest>

using namespace Qt::StringLiterals;

/// The program's colours beside a desktop that wishes for some, on a real bus.
class tst_ProgramColours : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void darkDesktopMakesTheProgramDark();
    void changesAreFollowed();
    void paletteThatIsDarkStays();
    void otherSettingsAreNone();
    void nobodyWaitsForASilentService();
    void withoutAServiceNothingChanges();

private:
    static bool isDark()
    {
        return QApplication::palette().color(QPalette::Window).lightness() < 128;
    }
    void answerWith(uint scheme)
    {
        m_session->colours.scheme = scheme;
        m_session->colours.asked = 0;
        m_session->setColouring(true);
    }

    std::unique_ptr<DesktopSession> m_session;
};

void tst_ProgramColours::initTestCase()
{
    m_session = std::make_unique<DesktopSession>();
    QVERIFY(m_session->isRunning());
    QVERIFY(!isDark());
}

void tst_ProgramColours::cleanup()
{
    QApplication::setPalette(QPalette());
    m_session->colours.isSilent = false;
    m_session->setColouring(false);
}

void tst_ProgramColours::darkDesktopMakesTheProgramDark()
{
    answerWith(1);
    const ProgramColours colours(nullptr);
    QVERIFY(!isDark());
    QTRY_VERIFY(isDark());
    const QPalette now = QApplication::palette();
    for (const auto &[ink, ground] : {std::pair{QPalette::WindowText, QPalette::Window},
                                      {QPalette::Text, QPalette::Base},
                                      {QPalette::ButtonText, QPalette::Button},
                                      {QPalette::PlaceholderText, QPalette::Base},
                                      {QPalette::HighlightedText, QPalette::Highlight},
                                      {QPalette::Link, QPalette::Base}})
        QVERIFY(qGray(now.color(ink).rgb()) - qGray(now.color(ground).rgb()) > 80);
}

void tst_ProgramColours::changesAreFollowed()
{
    answerWith(0);
    const ProgramColours colours(nullptr);
    QTRY_VERIFY(m_session->colours.asked > 0);
    const QPalette before = QApplication::palette();
    for (int i = 0; i < 3; ++i) {
        m_session->colours.change(1);
        QTRY_VERIFY(isDark());
        m_session->colours.change(i % 2 == 0 ? 0 : 2);
        QTRY_VERIFY(!isDark());
    }
    QCOMPARE(QApplication::palette().color(QPalette::Base), before.color(QPalette::Base));
}

/// The desktop's own is not for the program to change.
void tst_ProgramColours::paletteThatIsDarkStays()
{
    QPalette own(QColor(10, 40, 10));
    QApplication::setPalette(own);
    answerWith(1);
    const ProgramColours colours(nullptr);
    QTRY_VERIFY(m_session->colours.asked > 0);
    m_session->colours.change(2);
    m_session->colours.change(1);
    DesktopColours last;
    QTRY_COMPARE(last.wish(), DesktopColours::Wish::Dark);
    QCOMPARE(QApplication::palette().color(QPalette::Window), own.color(QPalette::Window));
}

void tst_ProgramColours::otherSettingsAreNone()
{
    answerWith(0);
    DesktopColours colours;
    const QSignalSpy changed(&colours, &DesktopColours::changed);
    QTRY_VERIFY(m_session->colours.asked > 0);
    emit m_session->colours.SettingChanged(u"org.freedesktop.appearance"_s, u"contrast"_s,
                                           QDBusVariant(1U));
    emit m_session->colours.SettingChanged(u"org.freedesktop.appearance"_s, u"color-scheme"_s,
                                           QDBusVariant(u"dark"_s));
    emit m_session->colours.SettingChanged(u"org.freedesktop.appearance"_s, u"color-scheme"_s,
                                           QDBusVariant(7U));
    m_session->colours.change(2);
    QTRY_COMPARE(colours.wish(), DesktopColours::Wish::Light);
    QCOMPARE(changed.size(), 1);
}

void tst_ProgramColours::nobodyWaitsForASilentService()
{
    m_session->colours.isSilent = true;
    answerWith(1);
    const ProgramColours colours(nullptr);
    QTRY_VERIFY(m_session->colours.asked > 0);
    QVERIFY(!isDark());
    m_session->colours.change(1);
    QTRY_VERIFY(isDark());
}

void tst_ProgramColours::withoutAServiceNothingChanges()
{
    const DesktopColours colours;
    QCOMPARE(colours.wish(), DesktopColours::Wish::None);
    QVERIFY(!isDark());
}

QTEST_MAIN(tst_ProgramColours)
#include "tst_programcolours.moc"
