#include "DownloadStage.h"
#include "FileWriter.h"
#include "TempAppFolder.h"
#include "Unlogged.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

/// Where downloads are until they are whole.
class tst_downloadstage : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_folder.reset(); }
    void goesWithTheObject();
    void keptOneIsTakenOnce();
    void noStageAtAll_data();
    void noStageAtAll();
    void bytesUnderEitherName();
    void setAsideKeepsWhatIsThere();
    void whereNothingCanBeMade();

private:
    QString place() const { return m_folder->file(u"Profiles"_s); }
    QStringList entries() const
    {
        return QDir(place()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    static bool write(const QString &path, const QByteArray &bytes)
    {
        return bool(FileWriter::write(path, bytes));
    }
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<TempAppFolder> m_folder;
    const Unlogged m_unlogged;
};

void tst_downloadstage::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
}

void tst_downloadstage::goesWithTheObject()
{
    {
        const DownloadStage stage(place());
        QVERIFY(stage.isValid());
        QCOMPARE(QFileInfo(stage.path()).path(), place());
        QVERIFY(QFileInfo(stage.path()).isHidden());
        QCOMPARE(QFile::permissions(stage.path())
                     & (QFile::ReadGroup | QFile::ReadOther | QFile::ExeOther),
                 QFile::Permissions());
        QCOMPARE(stage.arrived(), QString());
        QVERIFY(write(stage.file(), "x"));
    }
    QCOMPARE(entries(), QStringList());
    auto stage = std::make_unique<DownloadStage>(place());
    QVERIFY(write(stage->file(), "x"));
    DownloadStage::drop(std::move(stage));
    DownloadStage::drop(nullptr);
    QTRY_COMPARE(entries(), QStringList());
}

void tst_downloadstage::keptOneIsTakenOnce()
{
    QString path;
    {
        DownloadStage stage(place());
        path = stage.path();
        QVERIFY(write(stage.file(), "bytes"));
        QVERIFY(!DownloadStage::take(path));
        stage.keep();
    }
    {
        const auto taken = DownloadStage::take(path);
        QVERIFY(taken && taken->isValid());
        QCOMPARE(taken->path(), path);
        QCOMPARE(read(taken->arrived()), "bytes");
        QVERIFY(!DownloadStage::take(path));
    }
    QVERIFY(!DownloadStage::take(path));
    QCOMPARE(entries(), QStringList());
}

void tst_downloadstage::noStageAtAll_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"", "photos", ".orvane-abcdef", ".orvane-download-abcdefg",
                             ".orvane-download-abcdefg1", ".orvane-download-abcdefgh/.."})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_downloadstage::noStageAtAll()
{
    QFETCH(QString, name);
    const QString path = place() + u'/' + name;
    QVERIFY(QDir().mkpath(path) && write(place() + u"/mine"_s, "x"));
    QVERIFY(!DownloadStage::take(path));
    QVERIFY(!DownloadStage::take(name));
    QVERIFY(QFileInfo::exists(place() + u"/mine"_s));
}

void tst_downloadstage::bytesUnderEitherName()
{
    DownloadStage stage(place());
    QVERIFY(write(stage.file() + u".download"_s, "some"));
    QCOMPARE(read(stage.arrived()), "some");
    stage.setAside();
    QCOMPARE(read(stage.file()), "some");
    QCOMPARE(stage.arrived(), stage.file());
    QVERIFY(QFile::remove(stage.file()));
    QVERIFY(QFile::link(u"/etc/hostname"_s, stage.file()));
    QCOMPARE(stage.arrived(), QString());
}

void tst_downloadstage::setAsideKeepsWhatIsThere()
{
    DownloadStage stage(place());
    stage.setAside();
    QCOMPARE(stage.arrived(), QString());
    QVERIFY(write(stage.file(), "whole"));
    QVERIFY(write(stage.file() + u".download"_s, "some"));
    stage.setAside();
    QCOMPARE(read(stage.arrived()), "whole");
}

void tst_downloadstage::whereNothingCanBeMade()
{
    const DownloadStage nowhere(m_folder->file(u"none"_s));
    QVERIFY(!nowhere.isValid());
    QVERIFY(nowhere.error() == std::errc::no_such_file_or_directory);
    QVERIFY(m_folder->write(u"Profiles/file"_s, "x"));
    const DownloadStage inFile(m_folder->file(u"Profiles/file"_s));
    QVERIFY(inFile.error() == std::errc::not_a_directory);
}

QTEST_GUILESS_MAIN(tst_downloadstage)
#include "tst_downloadstage.moc"
