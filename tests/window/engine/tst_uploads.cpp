// Files that pages ask for, chosen in a dialog that nothing but the page waits for.
#include "AppFolder.h"
#include "DesktopFileDialog.h"
#include "EngineTest.h"
#include "FolderCount.h"
#include "PageAsks.h"
#include "PopupScene.h"
#include "Settings.h"
#include "StatusStrip.h"

#include <QAccessible>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {
/// Does something each time a dialog for files comes up, while the engine waits for it.
class WhenChoosing : public QObject {

public:
    explicit WhenChoosing(const std::function<void(QFileDialog *dialog)> &act)
    {
        connect(&m_look, &QTimer::timeout, this, [this, act] {
            QFileDialog *dialog = shown();
            if (!dialog || dialog == m_last)
                return;
            m_last = dialog;
            ++m_count;
            act(dialog);
        });
        m_look.start(10);
    }
    int count() const { return m_count; }

    static QFileDialog *shown() { return allShown().value(0); }
    static QList<QFileDialog *> allShown()
    {
        QList<QFileDialog *> dialogs;
        const QWidgetList all = QApplication::topLevelWidgets();
        for (QWidget *each : all) {
            auto *dialog = qobject_cast<QFileDialog *>(each);
            if (dialog && dialog->isVisible())
                dialogs.append(dialog);
        }
        return dialogs;
    }

private:
    QPointer<QFileDialog> m_last;
    QTimer m_look;
    int m_count = 0;
};

void choose(QFileDialog *dialog, const QStringList &paths)
{
    QStringList names;
    for (const QString &path : paths)
        names.append(u'"' + path + u'"');
    auto *edit = dialog->findChild<QLineEdit *>(u"fileNameEdit"_s);
    edit->setText(paths.size() == 1 ? paths.first() : names.join(u' '));
    QMetaObject::invokeMethod(dialog, "accept");
}
}

class tst_uploads : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void oneFile();
    void pageIsNotNamedForItsFrames();
    void severalFiles();
    void onlyFilesAreGiven();
    void fileThatChangesIsNotSent_data();
    void fileThatChangesIsNotSent();
    void cancelGivesNothing();
    void folderIsAskedAboutOnceMore_data();
    void folderIsAskedAboutOnceMore();
    void folderWithoutEnd();
    void typesAreFilters();
    void folderIsRemembered();
    void aThousandClicksAreOneDialog();
    void dialogGoesWithThePage_data();
    void dialogGoesWithThePage();
    void dialogIsUnknownOnceItIsGone();
    void othersGoOnMeanwhile();
    void dialogGoesThoughAnotherStands();
    void closedAndReopenedAgainAndAgain();

private:
    QString path(const QString &name) const { return m_files->filePath(name); }
    QString file(const QString &name) const
    {
        QDir().mkpath(QFileInfo(path(name)).absolutePath());
        QFile made(path(name));
        return made.open(QIODevice::WriteOnly) && made.write("bytes") == 5 ? path(name) : QString();
    }
    void open(const QByteArray &attributes)
    {
        m_form = m_scene->openPage(
            "<input type=file id=f " + attributes
                + "><button id=b onclick='for (let i = 0; i < 1000; ++i) f.click()'>b</button>"
                  "<script>f.onchange = async () => { let t = []; for (const each of f.files)"
                  "t.push((each.webkitRelativePath || each.name) + '=' + await each.text().catch(e "
                  "=> e.name));"
                  "document.title = t.sort().join(' ') };"
                  "f.oncancel = () => document.title = 'cancelled'</script>",
            true);
    }
    QString title() const { return m_form->windowTitle(); }
    void run(const QString &code) const { PopupScene::script(m_form, code + u"; 1"_s); }

    std::unique_ptr<PopupScene> m_scene;
    std::unique_ptr<QTemporaryDir> m_files;
    QPointer<BrowserWindow> m_form;
};

void tst_uploads::init()
{
    m_scene = std::make_unique<PopupScene>();
    m_files = std::make_unique<QTemporaryDir>();
    QVERIFY(m_scene->isReady() && m_files->isValid());
    m_scene->server.page("/other", "<title>other</title>");
}

void tst_uploads::cleanup()
{
    m_scene.reset();
    QVERIFY(!WhenChoosing::shown());
}

void tst_uploads::oneFile()
{
    const QString one = file(u"one.txt"_s);
    open({});
    QString caption;
    const WhenChoosing choosing([&](QFileDialog *dialog) {
        caption = dialog->windowTitle();
        QVERIFY(!dialog->isModal());
        QCOMPARE(dialog->fileMode(), QFileDialog::ExistingFile);
        choose(dialog, {one});
    });
    PopupScene::click(m_form, u"f"_s);
    QTRY_COMPARE(title(), u"one.txt=bytes"_s);
    QCOMPARE(caption, u"Choose files for http://127.0.0.1:%1"_s.arg(m_scene->server.port()));
    QCOMPARE(choosing.count(), 1);
}

void tst_uploads::pageIsNotNamedForItsFrames()
{
    m_scene->server.page("/frame",
                         "<body style=height:120px onclick=f.click()><input id=f type=file>");
    m_form = m_scene->openPage("<iframe id=f src='"
                                   + m_scene->server.url(u"/frame"_s, u"localhost"_s).toUtf8()
                                   + "'></iframe>",
                               true);
    QString caption;
    const WhenChoosing choosing([&](QFileDialog *dialog) {
        caption = dialog->windowTitle();
        dialog->reject();
    });
    // A frame of another process takes clicks only once it is painted.
    QTRY_VERIFY((PopupScene::click(m_form, u"f"_s), !caption.isEmpty()));
    QCOMPARE(caption,
             u"Choose files for this page or a frame in it: http://127.0.0.1:%1"_s.arg(
                 m_scene->server.port()));
}

void tst_uploads::severalFiles()
{
    const QStringList both{file(u"one.txt"_s), file(u".hidden"_s)};
    open("multiple");
    const WhenChoosing choosing([&](QFileDialog *dialog) {
        QCOMPARE(dialog->fileMode(), QFileDialog::ExistingFiles);
        choose(dialog, both);
    });
    PopupScene::click(m_form, u"f"_s);
    QTRY_COMPARE(title(), u".hidden=bytes one.txt=bytes"_s);
}

/// What has no end, or would be waited for, is none; the user is told.
void tst_uploads::onlyFilesAreGiven()
{
    const QString one = file(u"one.txt"_s);
    const QString pipe = path(u"pipe"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QStringList chosen;
    open("multiple");
    const WhenChoosing choosing([&](QFileDialog *dialog) { choose(dialog, chosen); });
    for (const QString &other : {pipe, u"/dev/zero"_s}) {
        chosen = {other, one};
        run(u"document.title = 'again'"_s);
        QTRY_COMPARE(title(), u"again"_s);
        PopupScene::click(m_form, u"f"_s);
        QTRY_COMPARE(title(), u"one.txt=bytes"_s);
        QCOMPARE(m_form->statusBar()->text().trimmed(),
                 u"Not given, as it is no file that can be read: "_s + other);
        run(u"f.value = ''"_s);
    }
    chosen = {pipe};
    PopupScene::click(m_form, u"f"_s);
    QTRY_VERIFY(m_form->statusBar()->text().endsWith(pipe));
    QCOMPARE(PopupScene::script(m_form, u"f.files.length"_s).toInt(), 0);
}

void tst_uploads::fileThatChangesIsNotSent_data()
{
    QTest::addColumn<bool>("grows");
    QTest::newRow("grown") << true;
    QTest::newRow("removed") << false;
}

/// The page is told, goes on, and is given what there is then when it asks anew.
void tst_uploads::fileThatChangesIsNotSent()
{
    QFETCH(const bool, grows);
    const QString one = file(u"one.txt"_s);
    const QString two = file(u"two.txt"_s);
    m_scene->server.page("/take", "taken");
    open({});
    QString given = one;
    const WhenChoosing choosing([&](QFileDialog *dialog) { choose(dialog, {given}); });
    const auto send = [this] {
        run(u"fetch('/take', {method: 'POST', body: f.files[0]}).then(() => document.title = "
            "'sent', e => document.title = e.name)"_s);
    };
    PopupScene::click(m_form, u"f"_s);
    QTRY_COMPARE(title(), u"one.txt=bytes"_s);
    if (grows) {
        QFile file(one);
        QVERIFY(file.open(QIODevice::Append) && file.write("more") == 4 && file.flush());
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(60),
                                 QFileDevice::FileModificationTime));
    } else {
        QVERIFY(QFile::remove(one));
    }
    send();
    QTRY_COMPARE(title(), u"TypeError"_s);
    given = two;
    PopupScene::click(m_form, u"f"_s);
    QTRY_COMPARE(title(), u"two.txt=bytes"_s);
    send();
    QTRY_COMPARE(title(), u"sent"_s);
}

void tst_uploads::cancelGivesNothing()
{
    open({});
    const WhenChoosing choosing([&](QFileDialog *dialog) { dialog->reject(); });
    for (int i = 1; i <= 2; ++i) {
        PopupScene::click(m_form, u"f"_s);
        QTRY_COMPARE(choosing.count(), i);
    }
    QCOMPARE(PopupScene::script(m_form, u"f.files.length"_s).toInt(), 0);
}

void tst_uploads::folderIsAskedAboutOnceMore_data()
{
    QTest::addColumn<bool>("gives");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
}

void tst_uploads::folderIsAskedAboutOnceMore()
{
    QFETCH(const bool, gives);
    file(u"folder/one.txt"_s);
    file(u"folder/.hidden"_s);
    file(u"folder/sub/two.txt"_s);
    QVERIFY(QFile::link(path(u"folder/one.txt"_s), path(u"folder/link.txt"_s)));
    open("webkitdirectory");
    const WhenChoosing choosing([&](QFileDialog *dialog) { choose(dialog, {path(u"folder"_s)}); });
    QString words;
    bool isDialogThere = true;
    const WhenAsked asked(m_form, [&](PageQuestionBox *box) {
        words = PageAsks::textOf(box);
        const QWidgetList all = QApplication::allWidgets();
        // Also hidden, it would list files, and propose names over the question.
        isDialogThere = std::any_of(all.begin(), all.end(), [](const QWidget *each) {
            return qobject_cast<const QFileDialog *>(each);
        });
        QTimer::singleShot(0, box, [box, gives] {
            PageAsks::press(gives ? PageAsks::yes(box) : PageAsks::no(box));
        });
    });
    PopupScene::click(m_form, u"f"_s);
    QTRY_COMPARE(asked.count(), 1);
    QVERIFY(!isDialogThere);
    QVERIFY2(words.contains("Files: 3"_L1) && words.endsWith("\nfolder"_L1), qPrintable(words));
    if (gives)
        QTRY_VERIFY2(title().endsWith("folder/.hidden=bytes folder/one.txt=bytes "
                                      "folder/sub/two.txt=bytes"_L1),
                     qPrintable(title()));
    else
        QCOMPARE(PopupScene::script(m_form, u"f.files.length"_s).toInt(), 0);
}

/// Its links lead back into it, twice at each turn.
void tst_uploads::folderWithoutEnd()
{
    file(u"folder/one.txt"_s);
    QVERIFY(QFile::link(path(u"folder"_s), path(u"folder/a"_s)));
    QVERIFY(QFile::link(path(u"folder"_s), path(u"folder/b"_s)));
    open("webkitdirectory");
    const WhenChoosing choosing([&](QFileDialog *dialog) { choose(dialog, {path(u"folder"_s)}); });
    PopupScene::click(m_form, u"f"_s);
    QTRY_VERIFY(
        m_form->statusBar()->text().startsWith(" The folder holds too many files for a page: "_L1));
    QCOMPARE(PageAsks::countIn(m_form), 0);
    QCOMPARE(PopupScene::script(m_form, u"f.files.length"_s).toInt(), 0);
}

void tst_uploads::typesAreFilters()
{
    open("accept='.txt,image/png,nonsense,.a;b*,text/x-no-such'");
    QStringList filters;
    const WhenChoosing choosing([&](QFileDialog *dialog) {
        filters = dialog->nameFilters();
        dialog->reject();
    });
    PopupScene::click(m_form, u"f"_s);
    QTRY_COMPARE(choosing.count(), 1);
    QCOMPARE(filters,
             QStringList({u"Files that the page takes (*.png *.txt)"_s, u"All Files (*)"_s}));
}

void tst_uploads::folderIsRemembered()
{
    // The same one chosen again is no change.
    const QStringList files{file(u"deep/one.txt"_s), file(u"deep/two.txt"_s)};
    open({});
    QStringList folders;
    const WhenChoosing choosing([&](QFileDialog *dialog) {
        folders.append(dialog->directory().absolutePath());
        choose(dialog, {files.at(folders.size() - 1)});
    });
    for (int i = 1; i <= 2; ++i) {
        PopupScene::click(m_form, u"f"_s);
        QTRY_COMPARE(choosing.count(), i);
        QTRY_COMPARE(title(), QFileInfo(files.at(i - 1)).fileName() + u"=bytes"_s);
    }
    QVERIFY(folders.first() != path(u"deep"_s));
    QCOMPARE(folders.last(), path(u"deep"_s));
    QCOMPARE(Settings::uploadFolder.read(), path(u"deep"_s));
}

void tst_uploads::aThousandClicksAreOneDialog()
{
    open({});
    const WhenChoosing choosing([&](QFileDialog *dialog) { dialog->reject(); });
    PopupScene::click(m_form, u"b"_s);
    QTRY_COMPARE(choosing.count(), 1);
    run(u"document.title = 'through'"_s);
    QTRY_COMPARE(title(), u"through"_s);
    QTRY_VERIFY(!WhenChoosing::shown());
    QCOMPARE(choosing.count(), 1);
    PopupScene::click(m_form, u"f"_s);
    QTRY_COMPARE(choosing.count(), 2);
}

void tst_uploads::dialogGoesWithThePage_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("another page") << 0;
    QTest::newRow("page that leaves by itself") << 1;
    QTest::newRow("window closed") << 2;
    QTest::newRow("page that closes itself") << 3;
    QTest::newRow("page's process killed") << 4;
}

void tst_uploads::dialogGoesWithThePage()
{
    QFETCH(const int, way);
    open({});
    const WhenChoosing choosing([&](QFileDialog *) {
        WebPage *page = PopupScene::control(m_form)->page();
        if (way == 0)
            m_form->browser()->navigate(m_scene->server.url(u"/other"_s));
        else if (way == 1)
            page->runJavaScript(u"location = '/other'"_s);
        else if (way == 2)
            m_form->close();
        else if (way == 3)
            m_form->unload();
        else
            ::kill(pid_t(page->renderProcessPid()), SIGKILL);
    });
    PopupScene::click(m_form, u"f"_s);
    QTRY_COMPARE(choosing.count(), 1);
    QTRY_VERIFY(!WhenChoosing::shown());
    if (way < 2)
        QTRY_COMPARE(title(), u"other"_s);
    else if (way < 4)
        QTRY_VERIFY(!m_form);
}

/// What screen readers know of a dialog goes with it: one made later at its place in memory would
/// be taken for it.
void tst_uploads::dialogIsUnknownOnceItIsGone()
{
    open({});
    QPointer<QFileDialog> last;
    QAccessible::Id known = 0;
    const WhenChoosing choosing([&](QFileDialog *dialog) {
        last = dialog;
        known = QAccessible::uniqueId(QAccessible::queryAccessibleInterface(dialog));
        m_form->browser()->navigate(m_scene->server.url(u"/other"_s));
    });
    PopupScene::click(m_form, u"f"_s);
    QTRY_VERIFY(known != 0 && !last);
    QVERIFY(!QAccessible::accessibleInterface(known));
}

void tst_uploads::othersGoOnMeanwhile()
{
    const QPointer<BrowserWindow> other = m_scene->frame.open(m_scene->server.url(u"/other"_s));
    QTRY_COMPARE(other->windowTitle(), u"other"_s);
    // In front, as what is clicked on has to be painted.
    open({});
    m_scene->server.page("/next", "<title>next</title>");
    bool wentOn = false;
    QTimer look;
    const WhenChoosing choosing([&](QFileDialog *dialog) {
        other->browser()->navigate(m_scene->server.url(u"/next"_s));
        connect(&look, &QTimer::timeout, dialog, [&, dialog] {
            if (other->windowTitle() != "next"_L1)
                return;
            wentOn = true;
            dialog->reject();
        });
        look.start(10);
    });
    PopupScene::click(m_form, u"f"_s);
    QTRY_VERIFY(wentOn);
}

/// The engine gets the answers one inside the other.
void tst_uploads::dialogGoesThoughAnotherStands()
{
    m_scene->server.page("/second", "<title>second</title><body><input type=file id=f>");
    m_form = m_scene->openPage("<input type=file id=f>");
    QPointer<BrowserWindow> second;
    QPointer<QFileDialog> dialog;
    bool isClicked = false;
    bool isClosed = false;
    bool isGone = false;
    QTimer look;
    connect(&look, &QTimer::timeout, this, [&] {
        const QList<QFileDialog *> shown = WhenChoosing::allShown();
        if (!second && !shown.isEmpty()) {
            dialog = shown.first();
            second = m_scene->frame.open(m_scene->server.url(u"/second"_s));
        } else if (second && !isClicked && second->windowTitle() == "second"_L1) {
            isClicked = true;
            PopupScene::click(second, u"f"_s);
        } else if (shown.size() == 2 && !std::exchange(isClosed, true)) {
            m_form->unload();
        } else if (isClosed && shown.size() == 1) {
            isGone = !dialog || !dialog->isVisible();
            shown.first()->reject();
        }
    });
    look.start(10);
    PopupScene::click(m_form, u"f"_s);
    QTRY_VERIFY_WITH_TIMEOUT(isGone, 20000);
    QTRY_VERIFY(!WhenChoosing::shown());
}

void tst_uploads::closedAndReopenedAgainAndAgain()
{
    const WhenChoosing choosing([&](QFileDialog *) { m_form->unload(); });
    for (int i = 1; i <= 5; ++i) {
        open({});
        PopupScene::click(m_form, u"f"_s);
        QTRY_COMPARE(choosing.count(), i);
        QTRY_VERIFY(!m_form);
        QTRY_VERIFY(!WhenChoosing::shown());
    }
}

ORVANE_ENGINE_TEST_MAIN(tst_uploads)
#include "tst_uploads.moc"
