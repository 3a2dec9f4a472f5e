#include "StartSound.h"
#include "TempAppFolder.h"

#include <QFile>
#include <QTest>
#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

class tst_startsound : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void playsTheFileOfTheApplicationFolder();
    void returnsBeforeAnythingIsStarted();
    void isSilentWithoutTheFile();
    void isSilentWithoutThePlayer();

private:
    QString path(const QString &name) const { return m_folder->file(name); }
    void writePlayer() const;
    static bool isLogged(const QString &text);

    std::unique_ptr<TempAppFolder> m_folder;
};

void tst_startsound::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    QVERIFY(m_folder->write(u"AppData/Drums.wav"_s, "RIFF"));
}

void tst_startsound::cleanup()
{
    m_folder.reset();
}

// Plays, and waits for a line of the log that begins with `text`.
bool tst_startsound::isLogged(const QString &text)
{
    static QStringList log;
    log.clear();
    const auto before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &line) { log.append(line); });
    playStartSound();
    const bool found = QTest::qWaitFor([&text] {
        return std::any_of(log.cbegin(), log.cend(),
                           [&text](const QString &line) { return line.startsWith(text); });
    });
    qInstallMessageHandler(before);
    return found;
}

// A player that notes what it was asked to play.
void tst_startsound::writePlayer() const
{
    QVERIFY(m_folder->write(u"orvane-sound"_s,
                            "#!/bin/sh\n"
                            "here=\"${0%/*}\"\n"
                            "printf %s \"$*\" > \"$here/part\"\n"
                            "mv \"$here/part\" \"$here/played\"\n"));
    QFile player(path(u"orvane-sound"_s));
    QVERIFY(player.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
}

void tst_startsound::playsTheFileOfTheApplicationFolder()
{
    writePlayer();
    playStartSound();
    QTRY_VERIFY(QFile::exists(path(u"played"_s)));
    QCOMPARE(m_folder->read(u"played"_s), path(u"AppData/Drums.wav"_s).toUtf8());
}

void tst_startsound::returnsBeforeAnythingIsStarted()
{
    writePlayer();
    playStartSound();
    QCoreApplication::processEvents();
    QVERIFY(!QFile::exists(path(u"played"_s)));
    QTRY_VERIFY(QFile::exists(path(u"played"_s)));
}

void tst_startsound::isSilentWithoutTheFile()
{
    writePlayer();
    QVERIFY(QFile::remove(path(u"AppData/Drums.wav"_s)));
    QVERIFY(isLogged(u"no start sound at"_s));
    QVERIFY(!QFile::exists(path(u"played"_s)));
}

void tst_startsound::isSilentWithoutThePlayer()
{
    QVERIFY(isLogged(u"no start sound:"_s));
}

QTEST_MAIN(tst_startsound)
#include "tst_startsound.moc"
