#include "FileDialogRequest.h"
#include "FindBar.h"
#include "Forms.h"
#include "RecoveredText.h"
#include "RichTextBox.h"
#include "SourceEditor.h"
#include "SourceWindow.h"
#include "TempAppFolder.h"
#include "Unlogged.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPointer>
#include <QRegularExpression>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

QStringList namesOf(const QMenu *menu)
{
    QStringList names;
    for (const QAction *action : menu->actions())
        names += action->objectName() + u'=' + (action->isSeparator() ? u"-"_s : action->text());
    return names;
}

}

class tst_sourcewindow : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void menus();
    void isALoadedForm();
    void showsThePage();
    void captionIsShownAsItStands();
    void opensAndSavesFiles();
    void cancelAndMissingFilesDoNothing();
    void unreadableFilesAreTold();
    void droppedFolderIsTold();
    void openingOverEditedTextKeepsIt();
    void editCommands();
    void editMenuActsInTheFindBar();
    void rightClickShowsTheEditMenu();
    void dropOpensTheFile();
    void editedTextIsKept();
    void savedTextIsNotKept();
    void textThatCannotBeKeptIsTold();
    void olderCopiesMakeRoom();
    void aboutIsHandedOn();
    void finding();
    void goesToALine();
    void wrapsAndZooms();
    void windowsAreIndependent();
    void minimizedAndClosed();

private:
    void trigger(const char *name);
    void answer(const QString &file);
    void drop(const QMimeData &data);
    QStringList copies() const;

    std::unique_ptr<TempAppFolder> m_folder;
    QPointer<SourceWindow> m_window;
    QList<FileDialogRequest> m_asked;
};

void tst_sourcewindow::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_asked.clear();
    m_window = new SourceWindow;
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
}

void tst_sourcewindow::cleanup()
{
    setFileDialogAnswerer({});
    delete m_window;
    // Before the next one is made: each gives back the paths that it found.
    m_folder.reset();
    QCOMPARE(Forms::named("frmSource").size(), 0);
}

void tst_sourcewindow::trigger(const char *name)
{
    auto *action = m_window->findChild<QAction *>(QLatin1String(name));
    QVERIFY2(action, name);
    action->trigger();
}

void tst_sourcewindow::answer(const QString &file)
{
    setFileDialogAnswerer(
        [this, file](const FileDialogRequest &request) -> std::optional<FileDialogAnswer> {
            m_asked.append(request);
            if (file.isEmpty())
                return {};
            return FileDialogAnswer{file, 1};
        });
}

void tst_sourcewindow::drop(const QMimeData &data)
{
    QWidget *viewport = m_window->editor().box().viewport();
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(viewport, &enter);
    QDropEvent event(QPointF(20, 20), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(viewport, &event);
}

QStringList tst_sourcewindow::copies() const
{
    return QDir(RecoveredText::folder()).entryList(QDir::Files);
}

void tst_sourcewindow::menus()
{
    const auto bar = m_window->menuBar()->actions();
    QCOMPARE(bar.size(), 3);
    QCOMPARE(bar.at(0)->text(), u"&File"_s);
    QCOMPARE(bar.at(1)->text(), u"&Edit"_s);
    QCOMPARE(bar.at(2)->text(), u"&Help"_s);
    QCOMPARE(namesOf(bar.at(0)->menu()),
             QStringList({u"mnuFileOpen=&Open"_s, u"mnuFileSave=&Save"_s, u"mnuFileBar0=-"_s,
                          u"mnuFileExit=E&xit"_s}));
    QCOMPARE(namesOf(bar.at(1)->menu()),
             QStringList({u"mnuEditUndo=Undo"_s, u"mnuEditBar0=-"_s, u"mnuEditCut=Cu&t"_s,
                          u"mnuEditCopy=&Copy"_s, u"mnuEditPaste=&Paste"_s, u"mnuEditBar1=-"_s,
                          u"mnuEditSelectAll=Select &All"_s}));
    QCOMPARE(namesOf(bar.at(2)->menu()), QStringList({u"mnuHelpAbout=&About"_s}));
}

void tst_sourcewindow::isALoadedForm()
{
    QCOMPARE(Forms::named("frmSource"), QList<QWidget *>({m_window}));
    QVERIFY(m_window->isWindow());
    QCOMPARE(m_window->editor().objectName(), u"txtHTML1"_s);
}

void tst_sourcewindow::showsThePage()
{
    QPointer<SourceWindow> window =
        SourceWindow::openOn(u"<html>\n<b>x</b></html>"_s, u"http://a.example/x"_s);
    QVERIFY(window->isVisible());
    QCOMPARE(window->windowTitle(), u"http://a.example/x - Document HTML"_s);
    QCOMPARE(window->editor().text(), u"<html>\r\n<b>x</b></html>"_s);
    QCOMPARE(window->editor().selStart(), 0);
    QCOMPARE(window->editor().selLength(), 0);
    QCOMPARE(window->editor().box().buffer().colourAt(0), 0xFF0000);
    window->close();
    QTRY_VERIFY(!window);
    QCOMPARE(copies(), QStringList());
    m_window->setSubject(QString(100'000, u'x'));
    QVERIFY(m_window->windowTitle().size() < 400);
}

void tst_sourcewindow::captionIsShownAsItStands()
{
    QPointer<SourceWindow> window = SourceWindow::openOn(u"x"_s, u"http://a.example/?a[*]=b"_s);
    QCOMPARE(window->windowTitle(), u"http://a.example/?a[*]=b - Document HTML"_s);
    QCOMPARE(window->windowHandle()->title(), window->windowTitle());
    window->setSubject(u"[*][*]"_s);
    QCOMPARE(window->windowHandle()->title(), u"[*][*] - Document HTML"_s);
    window->setSubject(u"c"_s);
    QCOMPARE(window->windowHandle()->title(), u"c - Document HTML"_s);
    window->close();
    QTRY_VERIFY(!window);
}

void tst_sourcewindow::opensAndSavesFiles()
{
    QVERIFY(m_folder->write(u"page.html"_s, "<b>\nx\n"));
    answer(m_folder->file(u"page.html"_s));
    trigger("mnuFileOpen");
    QCOMPARE(m_asked.size(), 1);
    QCOMPARE(m_asked.at(0).title, u"Open an HTML Source File...."_s);
    QCOMPARE(m_asked.at(0).filters.size(), 3);
    QCOMPARE(m_asked.at(0).filters.at(1).description, u"HTM Files (*.htm)"_s);
    QCOMPARE(m_asked.at(0).filterIndex, 1);
    QCOMPARE(m_asked.at(0).owner, m_window);
    QCOMPARE(m_window->editor().text(), u"<b>\r\nx\r\n"_s);
    QVERIFY(m_window->windowTitle().startsWith(m_folder->file(u"page.html"_s)));

    m_window->editor().setSelStart(0);
    QTest::keyClicks(&m_window->editor().box(), u"!"_s);
    answer(m_folder->file(u"other.html"_s));
    trigger("mnuFileSave");
    QCOMPARE(m_asked.constLast().title, u"Save HTML Source File...."_s);
    QCOMPARE(m_asked.constLast().kind, FileDialogRequest::Kind::Save);
    QCOMPARE(m_folder->read(u"other.html"_s), QByteArray("!<b>\nx\n"));
    QCOMPARE(m_folder->read(u"page.html"_s), QByteArray("<b>\nx\n"));
}

void tst_sourcewindow::cancelAndMissingFilesDoNothing()
{
    m_window->editor().setText(u"kept"_s);
    answer({});
    trigger("mnuFileOpen");
    trigger("mnuFileSave");
    answer(m_folder->file(u"missing.html"_s));
    trigger("mnuFileOpen");
    QCOMPARE(m_asked.size(), 3);
    QCOMPARE(m_window->editor().text(), u"kept"_s);
    QVERIFY(!m_window->findChild<QMessageBox *>());
}

void tst_sourcewindow::unreadableFilesAreTold()
{
    m_window->editor().setText(u"kept"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot write"_s));
    setFileDialogAnswerer([](const FileDialogRequest &) -> std::optional<FileDialogAnswer> {
        // A folder in which no file can be made.
        return FileDialogAnswer{u"/proc/page.html"_s, 1};
    });
    trigger("mnuFileSave");
    QTRY_VERIFY(QApplication::activeModalWidget());
    QApplication::activeModalWidget()->close();
    QCOMPARE(m_window->editor().text(), u"kept"_s);
}

void tst_sourcewindow::droppedFolderIsTold()
{
    m_window->editor().setText(u"kept"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read"_s));
    QMimeData folder;
    folder.setUrls({QUrl::fromLocalFile(m_folder->path())});
    drop(folder);
    QTRY_VERIFY(QApplication::activeModalWidget());
    QApplication::activeModalWidget()->close();
    QCOMPARE(m_window->editor().text(), u"kept"_s);
}

void tst_sourcewindow::openingOverEditedTextKeepsIt()
{
    QVERIFY(m_folder->write(u"page.html"_s, "<b>"));
    QTest::keyClicks(&m_window->editor().box(), u"mine"_s);
    answer(m_folder->file(u"page.html"_s));
    trigger("mnuFileOpen");
    QCOMPARE(m_window->editor().text(), u"<b>"_s);
    QCOMPARE(copies().size(), 1);
    QCOMPARE(m_folder->read(u"AppData/Recovered/"_s + copies().constFirst()), QByteArray("mine"));
}

void tst_sourcewindow::editCommands()
{
    SourceEditor &editor = m_window->editor();
    editor.setText(u"<b>x"_s);
    trigger("mnuEditSelectAll");
    QCOMPARE(editor.selLength(), 4);
    trigger("mnuEditCopy");
    QCOMPARE(QGuiApplication::clipboard()->text(), u"<b>x"_s);
    trigger("mnuEditCut");
    QCOMPARE(editor.text(), QString());
    trigger("mnuEditPaste");
    QCOMPARE(editor.text(), u"<b>x"_s);
    QCOMPARE(editor.selStart(), 1);
    trigger("mnuEditUndo");
    QCOMPARE(editor.text(), QString());
}

void tst_sourcewindow::editMenuActsInTheFindBar()
{
    SourceEditor &editor = m_window->editor();
    editor.setText(u"<b>x"_s);
    QTest::keyClicks(&editor.box(), u"y"_s);
    m_window->show();
    m_window->activateWindow();
    QTRY_VERIFY(m_window->isActiveWindow());
    QTest::keyClick(m_window, Qt::Key_F, Qt::ControlModifier);
    auto *field = m_window->findChild<QLineEdit *>(u"txtFind"_s);
    QTRY_VERIFY(field->hasFocus());
    QTest::keyClicks(field, u"sought"_s);
    trigger("mnuEditUndo");
    QCOMPARE(field->text(), QString());
    QGuiApplication::clipboard()->setText(u"words"_s);
    trigger("mnuEditPaste");
    QCOMPARE(field->text(), u"words"_s);
    trigger("mnuEditSelectAll");
    trigger("mnuEditCut");
    QCOMPARE(field->text(), QString());
    QCOMPARE(QGuiApplication::clipboard()->text(), u"words"_s);
    QCOMPARE(editor.text(), u"<b>xy"_s);
    editor.box().setFocus();
    trigger("mnuEditUndo");
    QCOMPARE(editor.text(), u"<b>x"_s);
}

void tst_sourcewindow::rightClickShowsTheEditMenu()
{
    QTest::mouseClick(m_window->editor().box().viewport(), Qt::RightButton);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QCOMPARE(QApplication::activePopupWidget()->objectName(), u"mnuEdit"_s);
    QApplication::activePopupWidget()->close();
}

void tst_sourcewindow::dropOpensTheFile()
{
    QVERIFY(m_folder->write(u"dropped.html"_s, "<i>"));
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(m_folder->file(u"dropped.html"_s)),
                   QUrl::fromLocalFile(m_folder->file(u"second.html"_s))});
    drop(files);
    QCOMPARE(m_window->editor().text(), u"<i>"_s);
}

void tst_sourcewindow::editedTextIsKept()
{
    auto *state = m_window->findChild<QLabel *>(u"lblState"_s);
    QCOMPARE(state->text(), QString());
    QTest::keyClicks(&m_window->editor().box(), u"mine"_s);
    QVERIFY(state->text().contains(RecoveredText::folder()));
    m_window->close();
    QTRY_VERIFY(!m_window);
    QCOMPARE(copies().size(), 1);
    QCOMPARE(m_folder->read(u"AppData/Recovered/"_s + copies().constFirst()), QByteArray("mine"));
}

void tst_sourcewindow::savedTextIsNotKept()
{
    QTest::keyClicks(&m_window->editor().box(), u"mine"_s);
    answer(m_folder->file(u"saved.html"_s));
    trigger("mnuFileSave");
    trigger("mnuFileExit");
    QTRY_VERIFY(!m_window);
    QCOMPARE(copies(), QStringList());
    QCOMPARE(m_folder->read(u"saved.html"_s), QByteArray("mine"));
}

void tst_sourcewindow::textThatCannotBeKeptIsTold()
{
    const Unlogged unlogged;
    // In the way of the folder for copies.
    QVERIFY(m_folder->write(u"AppData/Recovered"_s, "x"));
    QVERIFY(m_folder->write(u"dropped.html"_s, "<i>"));
    QTest::keyClicks(&m_window->editor().box(), u"mine"_s);
    const auto isTold = [this] {
        auto *message = m_window->findChild<QMessageBox *>();
        const bool told = message && message->text().contains(RecoveredText::folder());
        delete message;
        return told;
    };
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(m_folder->file(u"dropped.html"_s))});
    drop(files);
    QVERIFY(isTold());
    QCOMPARE(m_window->editor().text(), u"mine"_s);
    m_window->close();
    QVERIFY(m_window && m_window->isVisible());
    QVERIFY(isTold());
    QTest::keyClicks(&m_window->editor().box(), u"2"_s);
    m_window->close();
    QVERIFY2(m_window && isTold(), "what is new is told of anew");
    m_window->close();
    QTRY_VERIFY2(!m_window, "nobody is kept");
}

void tst_sourcewindow::olderCopiesMakeRoom()
{
    QString last;
    SourceFile source;
    for (int i = 0; i < 35; ++i) {
        source.setText(QString::number(i));
        QVERIFY(RecoveredText::keep(source, &last));
    }
    QCOMPARE(copies().size(), 30);
    QVERIFY(QFile::exists(last));
}

void tst_sourcewindow::aboutIsHandedOn()
{
    QWidget *over = nullptr;
    SourceWindow::setAboutHandler([&over](QWidget *owner) { over = owner; });
    trigger("mnuHelpAbout");
    QCOMPARE(over, m_window);
    SourceWindow::setAboutHandler({});
    trigger("mnuHelpAbout");
}

void tst_sourcewindow::finding()
{
    SourceEditor &editor = m_window->editor();
    editor.setText(u"one Two\r\nthree two\r\nTWO"_s);
    editor.setSelStart(0);
    trigger("cmdFind");
    auto *bar = m_window->findChild<FindBar *>();
    QVERIFY(bar->isVisible());
    auto *text = bar->findChild<QLineEdit *>(u"txtFind"_s);
    auto *count = bar->findChild<QLabel *>(u"lblCount"_s);
    QTest::keyClicks(text, u"two"_s);
    QCOMPARE(editor.selText(), u"Two"_s);
    QCOMPARE(count->text(), u"3 found"_s);
    QTest::keyClick(text, Qt::Key_Return);
    QCOMPARE(editor.selStart(), 15);
    bar->findNext();
    QCOMPARE(editor.selText(), u"TWO"_s);
    bar->findNext();
    QCOMPARE(editor.selStart(), 4);
    bar->findPrevious();
    QCOMPARE(editor.selText(), u"TWO"_s);
    text->setText(u"absent"_s);
    QCOMPARE(count->text(), u"0 found"_s);
    QTest::keyClick(text, Qt::Key_Escape);
    QVERIFY(!bar->isVisible());
}

void tst_sourcewindow::goesToALine()
{
    m_window->editor().setText(u"a\nb\nc\nd"_s);
    trigger("cmdGoToLine");
    QPointer<QInputDialog> dialog = m_window->findChild<QInputDialog *>();
    QVERIFY(dialog);
    QCOMPARE(dialog->intMaximum(), 4);
    dialog->setIntValue(3);
    dialog->accept();
    QCOMPARE(m_window->editor().selStart(), 6);
    QTRY_VERIFY(!dialog);
}

void tst_sourcewindow::wrapsAndZooms()
{
    RichTextBox &box = m_window->editor().box();
    QVERIFY(box.isWrapping());
    trigger("cmdWrap");
    QVERIFY(!box.isWrapping());
    const qreal before = box.font().pointSizeF();
    QWheelEvent wheel(QPointF(5, 5), box.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, 120),
                      Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(box.viewport(), &wheel);
    QCOMPARE(box.font().pointSizeF(), before + 1);
}

void tst_sourcewindow::windowsAreIndependent()
{
    QPointer<SourceWindow> other = SourceWindow::openOn(u"other"_s, {});
    QCOMPARE(Forms::named("frmSource").size(), 2);
    m_window->editor().setText(u"mine"_s);
    QCOMPARE(other->editor().text(), u"other"_s);
    other->close();
    QTRY_VERIFY(!other);
    QCOMPARE(m_window->editor().text(), u"mine"_s);
}

void tst_sourcewindow::minimizedAndClosed()
{
    m_window->setWindowState(Qt::WindowMinimized);
    m_window->close();
    QTRY_VERIFY(!m_window);
    QCOMPARE(Forms::named("frmSource").size(), 0);
}

QTEST_MAIN(tst_sourcewindow)
#include "tst_sourcewindow.moc"
