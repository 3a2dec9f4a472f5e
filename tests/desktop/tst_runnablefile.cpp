#include "RunnableFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

class tst_RunnableFile : public QObject {
    Q_OBJECT

private slots:
    void files_data();
    void files();
    void onesThatAreNotThereAreToldByTheirName();

private:
    QTemporaryDir m_folder;
};

void tst_RunnableFile::files_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("expected");
    const auto row = [](const char *name, const QByteArray &bytes, bool expected) {
        QTest::addRow("%s, %s", name, bytes.left(16).toPercentEncoding(" #!/[]").constData())
            << QString::fromUtf8(name) << bytes << expected;
    };
    // By the name, whatever is in it.
    for (const char *name :
         {"a.desktop", "a.sh", "a.SH", "a.run", "a.py", "a.pl", "a.rb", "a.jar", "a.AppImage",
          "a.exe", "a.msi", "a.bat", "a.bin", "a.jnlp", "a.js", "picture.png.desktop"})
        row(name, "text", true);
    // By what is in it, whatever the name.
    row("picture.png", "#!/bin/sh\necho", true);
    row("letter.txt", "#! /usr/bin/env anything\n", true);
    row("noname", "[Desktop Entry]\nType=Application\nExec=x\n", true);
    row("letter.pdf",
        QByteArray("\x7f"
                   "ELF\x02\x01\x01\0",
                   8)
            + QByteArray(56, '\0'),
        true);
    row("picture.jpg", QByteArray("MZ\x90\0", 4) + QByteArray(60, '\0'), true);
    // What a program shows.
    row("page.html", "<!DOCTYPE html><title>x</title>", false);
    row("letter.pdf", "%PDF-1.4\n", false);
    row("picture.png", QByteArray("\x89PNG\r\n\x1a\n", 8), false);
    row("words.txt", "just words", false);
    row("empty", "", false);
    row("archive.zip", QByteArray("PK\x03\x04", 4), false);
    row("archive.tar.gz", QByteArray("\x1f\x8b\x08", 3), false);
    row("sound.mp3", "ID3", false);
}

void tst_RunnableFile::files()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(bool, expected);
    QFile file(m_folder.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    QCOMPARE(isRunnable(file.fileName()), expected);
}

void tst_RunnableFile::onesThatAreNotThereAreToldByTheirName()
{
    QVERIFY(isRunnable(m_folder.filePath(u"gone.desktop"_s)));
    QVERIFY(!isRunnable(m_folder.filePath(u"gone.txt"_s)));
}

QTEST_GUILESS_MAIN(tst_RunnableFile)
#include "tst_runnablefile.moc"
