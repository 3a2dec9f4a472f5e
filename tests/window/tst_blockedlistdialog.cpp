// The dialog in which the list of blocked popup addresses is edited.
#include "BlockedList.h"
#include "BlockedListDialog.h"
#include "FakeFrame.h"
#include "Forms.h"
#include "PopupCommands.h"
#include "TempAppFolder.h"

#include <QClipboard>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {
const QString listName = u"AppData/PopupURLs.txt"_s;
}

class tst_blockedlistdialog : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void opensModalWithEveryButtonDisabled();
    void captionsAsDesigned();
    void captionsFromTheLanguageFile();
    void listHoldsEveryLineButEmptyOnes();
    void withoutAFileTheListIsEmpty();
    void blockIsEnabledWhileThereIsText();
    void removeIsEnabledWithASelection();
    void enterInTheTextBoxAdds();
    void enterInTheListDoesNothing();
    void enterInTheEmptyTextBoxDoesNothing();
    void addingSelectsTheNewEntry();
    void wideAfterNarrowIsRefused();
    void narrowAfterWideIsAccepted();
    void exactDuplicateIsRefused();
    void bracketListDoesNotMatchItself();
    void errorInThePatternMatchesNothing();
    void refusalsTextIsLookedUp();
    void linesPutInAreAPatternEach_data();
    void linesPutInAreAPatternEach();
    void linesThatAreRefusedAreTold();
    void manyLinesAreAllTaken();
    void moreLinesThanCanBeTakenAtOnce();
    void removing();
    void deleteKeyRemoves();
    void deleteKeyGoesOnFromTheNextEntry();
    void savingIsInForceAtOnce();
    void savingAnEmptiedList();
    void whatCannotBeSavedIsTold();
    void closingThrowsChangesAway();
    void escapeCloses();
    void namesForOtherPrograms();
    void canBeResized();
    void hundredThousandEntries();

private:
    void openOn(const QByteArray &bytes);
    QStringList entries() const;
    template <typename Control> Control *control(const QString &name) const
    {
        return m_dialog->findChild<Control *>(name);
    }
    QPushButton *button(const QString &name) const { return control<QPushButton>(name); }
    QLineEdit *box() const { return control<QLineEdit>(u"txtBlockURL"_s); }
    QListWidget *list() const { return control<QListWidget>(u"lstBlockedURLs"_s); }
    QMessageBox *message() const { return m_dialog->findChild<QMessageBox *>(); }
    void type(const QString &pattern);

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FakeFrame> m_frame;
    QPointer<BlockedListDialog> m_dialog;
};

void tst_blockedlistdialog::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_frame = std::make_unique<FakeFrame>();
    registerPopupCommands(*m_frame);
}

void tst_blockedlistdialog::cleanup()
{
    delete m_dialog;
    m_frame.reset();
    m_folder.reset();
}

void tst_blockedlistdialog::openOn(const QByteArray &bytes)
{
    QVERIFY(m_folder->write(listName, bytes));
    loadBlockedList();
    m_frame->run(u"mnuToolsSmartPopupBlockerList"_s);
    const QList<QWidget *> forms = Forms::named("frmBlockedURLs");
    QCOMPARE(forms.size(), 1);
    m_dialog = qobject_cast<BlockedListDialog *>(forms.first());
    QVERIFY(m_dialog);
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog));
}

QStringList tst_blockedlistdialog::entries() const
{
    QStringList result;
    for (int row = 0; row < list()->count(); ++row)
        result.append(list()->item(row)->text());
    return result;
}

void tst_blockedlistdialog::type(const QString &pattern)
{
    box()->clear();
    QTest::keyClicks(box(), pattern);
    QTest::keyClick(box(), Qt::Key_Return);
}

void tst_blockedlistdialog::opensModalWithEveryButtonDisabled()
{
    openOn("a\r\n");
    QVERIFY(m_dialog->isModal());
    QCOMPARE(m_dialog->parentWidget(), m_frame->window());
    for (const QString &name : {u"cmdBlock"_s, u"cmdRemove"_s, u"cmdSaveList"_s})
        QVERIFY2(!button(name)->isEnabled(), qPrintable(name));
    QVERIFY(list()->selectedItems().isEmpty());
    QCOMPARE(box()->text(), QString());
}

void tst_blockedlistdialog::captionsAsDesigned()
{
    openOn("");
    QCOMPARE(m_dialog->windowTitle(), u"Smart Popup Blocker URLs"_s);
    QCOMPARE(button(u"cmdBlock"_s)->text(), u"&Block"_s);
    QCOMPARE(button(u"cmdRemove"_s)->text(), u"&Remove"_s);
    QCOMPARE(button(u"cmdSaveList"_s)->text(), u"&Save List"_s);
}

void tst_blockedlistdialog::captionsFromTheLanguageFile()
{
    QVERIFY(m_folder->writeLanguage(u"English"_s,
                                    "[frmBlockedURLs]\r\ncmdBlock=&Sperren\r\n"
                                    "cmdRemove=&Entfernen\r\n"));
    openOn("");
    QCOMPARE(button(u"cmdBlock"_s)->text(), u"&Sperren"_s);
    QCOMPARE(button(u"cmdRemove"_s)->text(), u"&Entfernen"_s);
    QCOMPARE(button(u"cmdSaveList"_s)->text(), u"&Save List"_s);
}

void tst_blockedlistdialog::listHoldsEveryLineButEmptyOnes()
{
    openOn("b\r\n\r\na\nc");
    QCOMPARE(entries(), (QStringList{u"b"_s, u"a"_s, u"c"_s}));
}

void tst_blockedlistdialog::withoutAFileTheListIsEmpty()
{
    loadBlockedList();
    m_frame->run(u"mnuToolsSmartPopupBlockerList"_s);
    m_dialog = qobject_cast<BlockedListDialog *>(Forms::named("frmBlockedURLs").value(0));
    QVERIFY(m_dialog);
    QCOMPARE(list()->count(), 0);
}

void tst_blockedlistdialog::blockIsEnabledWhileThereIsText()
{
    openOn("");
    box()->setText(u" "_s);
    QVERIFY(button(u"cmdBlock"_s)->isEnabled());
    box()->clear();
    QVERIFY(!button(u"cmdBlock"_s)->isEnabled());
}

void tst_blockedlistdialog::removeIsEnabledWithASelection()
{
    openOn("a\r\nb\r\n");
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                      list()->visualItemRect(list()->item(1)).center());
    QVERIFY(button(u"cmdRemove"_s)->isEnabled());
    QVERIFY(!button(u"cmdSaveList"_s)->isEnabled());
    list()->clearSelection();
    QVERIFY(!button(u"cmdRemove"_s)->isEnabled());
}

void tst_blockedlistdialog::enterInTheTextBoxAdds()
{
    openOn("");
    type(u"*//ads.*"_s);
    QCOMPARE(entries(), QStringList{u"*//ads.*"_s});
    QVERIFY(m_dialog && m_dialog->isVisible());
}

void tst_blockedlistdialog::enterInTheListDoesNothing()
{
    openOn("a\r\n");
    QTest::keyClicks(box(), u"b"_s);
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Return);
    QCOMPARE(entries(), QStringList{u"a"_s});
    QVERIFY(m_dialog->isVisible());
}

void tst_blockedlistdialog::enterInTheEmptyTextBoxDoesNothing()
{
    openOn("a\r\n");
    QTest::keyClick(box(), Qt::Key_Return);
    QCOMPARE(entries(), QStringList{u"a"_s});
    QVERIFY(!button(u"cmdSaveList"_s)->isEnabled());
    QVERIFY(m_dialog->isVisible());
}

void tst_blockedlistdialog::addingSelectsTheNewEntry()
{
    openOn("b\r\n");
    QTest::keyClicks(box(), u" x "_s);
    QTest::mouseClick(button(u"cmdBlock"_s), Qt::LeftButton);
    QCOMPARE(entries(), (QStringList{u"b"_s, u" x "_s}));
    QCOMPARE(list()->selectedItems().value(0), list()->item(1));
    QCOMPARE(box()->text(), QString());
    QVERIFY(button(u"cmdSaveList"_s)->isEnabled());
    QVERIFY(button(u"cmdRemove"_s)->isEnabled());
    QVERIFY(!button(u"cmdBlock"_s)->isEnabled());
}

void tst_blockedlistdialog::wideAfterNarrowIsRefused()
{
    openOn("http://ads.example/*\r\n");
    type(u"http://*"_s);
    QVERIFY(message());
    QCOMPARE(message()->text(), u"There is already a pattern match for this url in the list!"_s);
    QCOMPARE(message()->icon(), QMessageBox::Information);
    QCOMPARE(message()->windowTitle(), u"Orvane"_s);
    QCOMPARE(entries(), QStringList{u"http://ads.example/*"_s});
    QCOMPARE(box()->text(), u"http://*"_s);
    QVERIFY(!button(u"cmdSaveList"_s)->isEnabled());
}

void tst_blockedlistdialog::narrowAfterWideIsAccepted()
{
    openOn("http://*\r\n");
    type(u"http://ads.example/*"_s);
    QVERIFY(!message());
    QCOMPARE(list()->count(), 2);
}

void tst_blockedlistdialog::exactDuplicateIsRefused()
{
    openOn("http://a?.#/*\r\nhttp://x/\r\n");
    type(u"http://x/"_s);
    QVERIFY(message());
    QCOMPARE(list()->count(), 2);
}

void tst_blockedlistdialog::bracketListDoesNotMatchItself()
{
    openOn("http://[ab]/\r\n");
    type(u"http://[ab]/"_s);
    QVERIFY(!message());
    QCOMPARE(list()->count(), 2);
}

void tst_blockedlistdialog::errorInThePatternMatchesNothing()
{
    openOn("[a\r\n");
    type(u"[a"_s);
    QVERIFY(!message());
    QCOMPARE(entries(), (QStringList{u"[a"_s, u"[a"_s}));
}

void tst_blockedlistdialog::refusalsTextIsLookedUp()
{
    QVERIFY(
        m_folder->writeLanguage(u"English"_s, "[frmBlockedURLs]\r\nsPatternMatch=Schon da!\r\n"));
    openOn("a\r\n");
    type(u"*"_s);
    QVERIFY(message());
    QCOMPARE(message()->text(), u"Schon da!"_s);
}

void tst_blockedlistdialog::linesPutInAreAPatternEach_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("pasted");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<QString>("left");
    const QStringList three{u"*//a.*"_s, u" b "_s, u"c"_s};
    QTest::newRow("lf") << QString() << u"*//a.*\n b \nc"_s << three << QString();
    QTest::newRow("crlf") << QString() << u"*//a.*\r\n b \r\nc\r\n"_s << three << QString();
    QTest::newRow("cr") << QString() << u"*//a.*\r b \rc"_s << three << QString();
    QTest::newRow("empty lines") << QString() << u"\n\n*//a.*\n\n b \nc\n\n"_s << three
                                 << QString();
    QTest::newRow("typed before") << u"*//"_s << u"a.*\n b \nc"_s << three << QString();
    QTest::newRow("one line") << QString() << u"one"_s << QStringList() << u"one"_s;
    QTest::newRow("one line and its end") << QString() << u"one\r\n"_s << QStringList() << u"one"_s;
    QTest::newRow("line ends only") << QString() << u"\r\n\n"_s << QStringList() << QString();
}

void tst_blockedlistdialog::linesPutInAreAPatternEach()
{
    QFETCH(QString, before);
    QFETCH(QString, pasted);
    QFETCH(QStringList, rows);
    QFETCH(QString, left);
    openOn("");
    QTest::keyClicks(box(), before);
    QGuiApplication::clipboard()->setText(pasted);
    QTest::keyClick(box(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(entries(), rows);
    QCOMPARE(box()->text(), left);
    QCOMPARE(button(u"cmdBlock"_s)->isEnabled(), !left.isEmpty());
    QCOMPARE(button(u"cmdSaveList"_s)->isEnabled(), !rows.isEmpty());
    QVERIFY(!message());
    QTest::mouseClick(button(u"cmdSaveList"_s), Qt::LeftButton);
    QStringList inForce = blockedList();
    inForce.removeAll(QString());
    QCOMPARE(inForce, rows);
}

void tst_blockedlistdialog::linesThatAreRefusedAreTold()
{
    openOn("http://ads.example/\r\n");
    QGuiApplication::clipboard()->setText(u"new\nhttp://ads*\nnew\nother"_s);
    box()->paste();
    QCOMPARE(entries(), (QStringList{u"http://ads.example/"_s, u"new"_s, u"other"_s}));
    QVERIFY(message());
    QCOMPARE(message()->text(),
             u"There is already a pattern match for this url in the list!\n\nhttp://ads*\nnew"_s);
    QCOMPARE(box()->text(), QString());
}

void tst_blockedlistdialog::manyLinesAreAllTaken()
{
    QStringList lines;
    for (int i = 0; i < 3000; ++i)
        lines.append(u"*//ads%1.example.com/*"_s.arg(i));
    openOn("");
    QGuiApplication::clipboard()->setText(lines.join(u'\n'));
    box()->paste();
    QTRY_COMPARE(list()->count(), lines.size());
    QCOMPARE(entries(), lines);
    QTRY_VERIFY(!box()->isReadOnly());
    box()->setText(QString(100'000, u'x'));
    QCOMPARE(box()->text().size(), 32767);
}

void tst_blockedlistdialog::moreLinesThanCanBeTakenAtOnce()
{
    QStringList lines;
    for (int i = 0; i < 200'000; ++i)
        lines.append(u"http://ads%1.example.com/"_s.arg(i));
    openOn("http://ads7.example.com/\r\n");
    QGuiApplication::clipboard()->setText(lines.join(u'\n'));
    box()->paste();
    QVERIFY2(list()->count() < lines.size(), "the rest comes as there is time");
    QVERIFY(box()->isReadOnly() && box()->text().isEmpty());
    QVERIFY(!button(u"cmdSaveList"_s)->isEnabled());
    list()->setCurrentRow(0);
    QTest::mouseClick(button(u"cmdRemove"_s), Qt::LeftButton);
    QVERIFY(!button(u"cmdSaveList"_s)->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(!box()->isReadOnly(), 60000);
    lines.removeAt(7);
    QCOMPARE(entries(), lines);
    QVERIFY(message());
    QVERIFY(message()->text().endsWith("http://ads7.example.com/"_L1));
    QVERIFY(button(u"cmdSaveList"_s)->isEnabled());
}

void tst_blockedlistdialog::removing()
{
    openOn("a\r\nb\r\nc\r\n");
    list()->setCurrentRow(1);
    QTest::mouseClick(button(u"cmdRemove"_s), Qt::LeftButton);
    QCOMPARE(entries(), (QStringList{u"a"_s, u"c"_s}));
    QVERIFY(list()->selectedItems().isEmpty());
    QVERIFY(button(u"cmdSaveList"_s)->isEnabled());
    QVERIFY(!button(u"cmdRemove"_s)->isEnabled());
}

void tst_blockedlistdialog::deleteKeyRemoves()
{
    openOn("a\r\nb\r\n");
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Delete);
    QCOMPARE(list()->count(), 2);
    list()->setCurrentRow(0);
    QTest::keyClick(list(), Qt::Key_Delete);
    QCOMPARE(entries(), QStringList{u"b"_s});
    QVERIFY(button(u"cmdSaveList"_s)->isEnabled());
}

void tst_blockedlistdialog::deleteKeyGoesOnFromTheNextEntry()
{
    openOn("a\r\nb\r\nc\r\nd\r\n");
    list()->setCurrentRow(1);
    for (int i = 0; i < 2; ++i) {
        QTest::keyClick(list(), Qt::Key_Delete);
        QTest::keyClick(list(), Qt::Key_Down);
    }
    QCOMPARE(entries(), (QStringList{u"a"_s, u"d"_s}));
    QCOMPARE(list()->selectedItems().value(0), list()->item(1));
    QTest::keyClick(list(), Qt::Key_Up);
    QCOMPARE(list()->selectedItems().value(0), list()->item(0));
}

void tst_blockedlistdialog::savingIsInForceAtOnce()
{
    openOn("a\r\n");
    type(u"*//ads.*"_s);
    bool cancel = false;
    QVERIFY(isPopupAllowed(u"http://ads.example/"_s, cancel));
    QTest::mouseClick(button(u"cmdSaveList"_s), Qt::LeftButton);
    QCOMPARE(m_folder->read(listName), QByteArray("a\r\n*//ads.*\r\n"));
    QVERIFY(!isPopupAllowed(u"http://ads.example/"_s, cancel));
    QVERIFY(!button(u"cmdSaveList"_s)->isEnabled());
    QVERIFY(list()->selectedItems().isEmpty());
    QVERIFY(!button(u"cmdRemove"_s)->isEnabled());
    QVERIFY(m_dialog->isVisible());
}

void tst_blockedlistdialog::savingAnEmptiedList()
{
    openOn("a\r\n");
    list()->setCurrentRow(0);
    QTest::mouseClick(button(u"cmdRemove"_s), Qt::LeftButton);
    QTest::mouseClick(button(u"cmdSaveList"_s), Qt::LeftButton);
    QVERIFY(m_folder->exists(listName));
    QCOMPARE(m_folder->read(listName), QByteArray(""));
    QCOMPARE(blockedList(), QStringList{u""_s});
}

void tst_blockedlistdialog::whatCannotBeSavedIsTold()
{
    openOn("");
    QVERIFY(QFile::remove(m_folder->file(listName)));
    QVERIFY(QDir().mkpath(m_folder->file(listName)));
    type(u"a"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot"_s));
    QTest::mouseClick(button(u"cmdSaveList"_s), Qt::LeftButton);
    QVERIFY(m_dialog->isVisible());
    QVERIFY(message() && message()->isVisible());
    QVERIFY(message()->text().contains(m_folder->file(listName)));
    QVERIFY2(button(u"cmdSaveList"_s)->isEnabled(), "it can be tried again");
    QCOMPARE(entries(), QStringList{u"a"_s});
    // What could not be saved is not in force either.
    QCOMPARE(blockedList(), QStringList{u""_s});
}

void tst_blockedlistdialog::closingThrowsChangesAway()
{
    openOn("a\r\n");
    type(u"b"_s);
    m_dialog->close();
    QTRY_VERIFY(!m_dialog);
    QCOMPARE(m_folder->read(listName), QByteArray("a\r\n"));
    QVERIFY(m_frame->window()->findChildren<QMessageBox *>().isEmpty());
    openOn("a\r\n");
    QCOMPARE(entries(), QStringList{u"a"_s});
}

void tst_blockedlistdialog::escapeCloses()
{
    openOn("a\r\n");
    QTest::keyClick(m_dialog, Qt::Key_Escape);
    QTRY_VERIFY(!m_dialog);
    QCOMPARE(Forms::named("frmBlockedURLs").size(), 0);
}

void tst_blockedlistdialog::namesForOtherPrograms()
{
    openOn("");
    QCOMPARE(m_dialog->objectName(), u"frmBlockedURLs"_s);
    QVERIFY(!box()->accessibleName().isEmpty());
    QVERIFY(!list()->accessibleName().isEmpty());
}

void tst_blockedlistdialog::canBeResized()
{
    openOn("a\r\n");
    const int before = list()->height();
    m_dialog->resize(m_dialog->width() + 200, m_dialog->height() + 150);
    QTRY_COMPARE(list()->height(), before + 150);
}

void tst_blockedlistdialog::hundredThousandEntries()
{
    QByteArray bytes;
    for (int i = 0; i < 100000; ++i)
        bytes += "*//ad" + QByteArray::number(i) + ".example/*\r\n";
    openOn(bytes);
    QCOMPARE(list()->count(), 100000);
    type(u"*//new.example/*"_s);
    QTest::mouseClick(button(u"cmdSaveList"_s), Qt::LeftButton);
    QCOMPARE(m_folder->read(listName), bytes + "*//new.example/*\r\n");
}

QTEST_MAIN(tst_blockedlistdialog)
#include "tst_blockedlistdialog.moc"
