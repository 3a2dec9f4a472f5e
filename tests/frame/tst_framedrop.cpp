#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QtTest>

#include "TempAppFolder.h"
#include "frmMain.h"

using namespace Qt::StringLiterals;

/// Files dragged onto the frame and let go there.
class tst_FrameDrop : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void profileIsOpenedAsItIsSpelled();
    void onlyTheFirstFileIsOpened();
    void otherFileIsRefused();
    void folderShowsCopyAndDoesNothing();
    void addressIsNoFile();

private:
    bool dragShowsCopy(const QList<QUrl> &urls);
    void drop(const QList<QUrl> &urls);
    QUrl fileNamed(const QString &name) const;

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<frmMain> m_frame;
    QStringList m_opened;
};

void tst_FrameDrop::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_frame = std::make_unique<frmMain>();
    m_opened.clear();
    m_frame->setProfileOpener([this](const QString &file, bool quiet) {
        m_opened.append(quiet ? "quiet "_L1 + file : file);
        return true;
    });
}

void tst_FrameDrop::cleanup()
{
    m_frame.reset();
    m_folder.reset();
}

QUrl tst_FrameDrop::fileNamed(const QString &name) const
{
    return QUrl::fromLocalFile(m_folder->file(name));
}

bool tst_FrameDrop::dragShowsCopy(const QList<QUrl> &urls)
{
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter({5, 5}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(m_frame.get(), &enter);
    return enter.isAccepted() && enter.dropAction() == Qt::CopyAction;
}

void tst_FrameDrop::drop(const QList<QUrl> &urls)
{
    QVERIFY2(dragShowsCopy(urls), "a drop goes to whoever took the drag");
    QMimeData data;
    data.setUrls(urls);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(m_frame.get(), &drop);
    QCoreApplication::processEvents();
}

void tst_FrameDrop::profileIsOpenedAsItIsSpelled()
{
    m_folder->write(u"Profiles/Day.ORP"_s, "[URL_Count]\r\nCount=0\r\n");
    drop({fileNamed(u"Profiles/Day.ORP"_s)});
    QTRY_COMPARE(m_opened, QStringList{m_folder->file(u"Profiles/Day.ORP"_s)});
}

void tst_FrameDrop::onlyTheFirstFileIsOpened()
{
    m_folder->write(u"one.orp"_s, "1");
    m_folder->write(u"two.orp"_s, "2");
    drop({fileNamed(u"one.orp"_s), fileNamed(u"two.orp"_s)});
    QTRY_COMPARE(m_opened, QStringList{m_folder->file(u"one.orp"_s)});
}

void tst_FrameDrop::otherFileIsRefused()
{
    m_folder->write(u"page.html"_s, "<p>");
    QVERIFY(!dragShowsCopy({fileNamed(u"page.html"_s)}));
}

void tst_FrameDrop::folderShowsCopyAndDoesNothing()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"folder.orp"_s));
    drop({fileNamed(u"folder.orp"_s)});
    QCoreApplication::processEvents();
    QVERIFY(m_opened.isEmpty());
}

void tst_FrameDrop::addressIsNoFile()
{
    const QUrl address(u"http://one.example/day.orp"_s);
    QVERIFY(!dragShowsCopy({address}));
    QVERIFY(!dragShowsCopy({}));
}

QTEST_MAIN(tst_FrameDrop)
#include "tst_framedrop.moc"
