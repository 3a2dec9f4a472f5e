#include "DraggedUrls.h"

#include <QFile>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <sys/inotify.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
/// Knows whether a file is opened, by whomever.
class OpenedFile {
public:
    explicit OpenedFile(const QString &path)
        : m_watch(inotify_init1(IN_NONBLOCK))
    {
        m_isWatched = inotify_add_watch(m_watch, QFile::encodeName(path).constData(), IN_OPEN) >= 0;
    }
    ~OpenedFile() { close(m_watch); }
    Q_DISABLE_COPY_MOVE(OpenedFile)

    bool isWatched() const { return m_isWatched; }
    bool wasOpened() const
    {
        alignas(inotify_event) char events[4096];
        return read(m_watch, events, sizeof events) > 0;
    }

private:
    int m_watch;
    bool m_isWatched = false;
};
}

/// What a page lets be dragged is its word, and no way into this machine.
class tst_DraggedUrls : public QObject {
    Q_OBJECT

private slots:
    void markupReadsNoFile_data();
    void markupReadsNoFile();
};

void tst_DraggedUrls::markupReadsNoFile_data()
{
    QTest::addColumn<QString>("form");
    QTest::newRow("link") << uR"(<link rel="stylesheet" type="text/css" href="%1"></link>)"_s;
    QTest::newRow("import") << uR"(<style>@import '%1';</style>)"_s;
    QTest::newRow("background") << uR"(<p style='background-image: url(%1)'>)"_s;
}

void tst_DraggedUrls::markupReadsNoFile()
{
    QFETCH(QString, form);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    QFile file(folder.filePath(u"a.css"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    const QUrl url = QUrl::fromLocalFile(file.fileName());
    const OpenedFile opened(file.fileName());
    QVERIFY(opened.isWatched());
    QVERIFY(file.open(QIODevice::ReadOnly));
    file.close();
    QVERIFY(opened.wasOpened());

    QMimeData data;
    data.setHtml(form.arg(url.toString()) + uR"(<b>Title</b><img src="http://127.0.0.1/a.png">)"_s);
    QCOMPARE(draggedTitle(data), u"Title"_s);
    QVERIFY(!opened.wasOpened());

    data.setUrls({url});
    QCOMPARE(pageAddressesDragged(data), QStringList{u"http://127.0.0.1/a.png"_s});
    QVERIFY(!opened.wasOpened());
}

QTEST_MAIN(tst_DraggedUrls)
#include "tst_draggedurls.moc"
