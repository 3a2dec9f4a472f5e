#include "HtmlColourer.h"
#include "HtmlFixups.h"
#include "RealPages.h"
#include "RichTextBox.h"
#include "Rtf.h"
#include "SmallDisk.h"
#include "SourceEditor.h"

#include <QClipboard>
#include <QDropEvent>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// One digit per character of the buffer: the slot whose colour it has.
QString slotsOf(const ColouredBuffer &buffer)
{
    const auto &all = HtmlColouring::defaultColours;
    QString digits(buffer.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < buffer.size(); ++i)
        digits[i] = QChar(
            char16_t(u'0' + (std::find(all.begin(), all.end(), buffer.colourAt(i)) - all.begin())));
    return digits;
}

QString slotsOf(const SourceEditor &editor)
{
    return slotsOf(editor.box().buffer());
}

/// The colours as the document and its fix-ups give them.
QByteArray coloursByDocument(QString text)
{
    using namespace HtmlFixups;
    ColouredText read =
        Rtf::read(HtmlColouring::colouredDocument(QString(text).replace(u'\n', u"\r\n"_s)));
    QByteArray colours;
    for (const char index : read.colours) {
        const auto &all = HtmlColouring::defaultColours;
        colours +=
            char(std::find(all.begin(), all.end(), read.palette.at(uchar(index))) - all.begin());
    }
    for (Range r = nextPlainText(text, 0); r.found(); r = nextPlainText(text, r.end))
        std::fill(colours.begin() + r.start + 1, colours.begin() + r.end - 1, char(0));
    for (Range r = nextComment(text, 0); r.found(); r = nextComment(text, r.end))
        std::fill(colours.begin() + r.start, colours.begin() + r.end, char(4));
    return colours;
}

QByteArray coloursByColourer(const QString &text)
{
    HtmlColourer colourer(text, {0, 1, 2, 3, 4});
    while (!colourer.run(QDeadlineTimer(0))) { }
    return colourer.colours();
}

/// A page that is not coloured within one slice of time.
QString longPage()
{
    return u"<p class=\"a\">x=1 <!-- <b> --> text</p>\r\n"_s.repeated(200'000);
}

}

class tst_sourceeditor : public QObject {
    Q_OBJECT

private slots:
    void textIsColouredAtOnce();
    void emptySelectionChangesNothing();
    void textBetweenTagsIsReset();
    void commentsAreOneColour();
    void colouringNeverAltersText();
    void slicesGiveTheSameColours();
    void partOfTheTextIsColoured();
    void highlightSelected();
    void unHighlight();
    void pasteLeavesTheCaretAfterTheFirstCharacter();
    void pasteKeyGoesThroughPaste();
    void pasteCanBeUndone();
    void cutAndCopyClearTheClipboard();
    void selTextIsColoured();
    void selectAllAndDelete();
    void clicksAreTold();
    void droppedFileIsTold();
    void changesAreTold();
    void typing_data();
    void typing();
    void tabIndentsTheSelection();
    void openerOfACommentIsColoured();
    void longTextIsColouredInSlices();
    void typingWhileColouring();
    void filesKeepTheirForm_data();
    void filesKeepTheirForm();
    void filesThatFail();
    void fullDiskKeepsTheOldFile();
    void longTextsAreWrittenWhole_data();
    void longTextsAreWrittenWhole();
    void longUtf16TextsAreWrittenWhole();
    void anotherFileBringsItsOwnForm();
    void boxFillsTheControl();
};

void tst_sourceeditor::textIsColouredAtOnce()
{
    SourceEditor editor;
    editor.setText(u"<b>x</b>"_s);
    QCOMPARE(slotsOf(editor), u"11101111"_s);
    QCOMPARE(editor.selStart(), 8);
    QCOMPARE(editor.selLength(), 0);
    QCOMPARE(editor.text(), u"<b>x</b>"_s);
}

void tst_sourceeditor::emptySelectionChangesNothing()
{
    SourceEditor editor;
    editor.box().setText(u"<b>x</b>"_s);
    editor.colourHtml();
    QCOMPARE(slotsOf(editor), u"00000000"_s);
    editor.setText({});
    editor.highlightAll();
    QCOMPARE(editor.text(), QString());
}

void tst_sourceeditor::textBetweenTagsIsReset()
{
    SourceEditor editor;
    editor.setText(u"<p align=\"left\">x=1</p>"_s);
    QCOMPARE(slotsOf(editor), u"112222222333333"_s + u"1"_s + u"000"_s + u"1111"_s);
    editor.box().setSelStart(0);
    editor.box().setSelLength(editor.box().textLength());
    editor.colourHtml();
    // The last match stays selected.
    QCOMPARE(editor.selText(), u"x=1"_s);
}

void tst_sourceeditor::commentsAreOneColour()
{
    SourceEditor editor;
    editor.setText(u"a<!-- <b c=\"d\"> -->e"_s);
    QCOMPARE(slotsOf(editor), u'0' + QString(18, u'4') + u'0');
}

void tst_sourceeditor::colouringNeverAltersText()
{
    QRandomGenerator random(11);
    const QString pieces =
        u"<>=\"' ab1!-/{}\\\r\n\t\u00a0\u2028\u2029\ufdd0é😀"_s + QChar(0) + QChar(0xd801);
    SourceEditor editor;
    for (int round = 0; round < 300; ++round) {
        QString text;
        for (int n = random.bounded(60); n > 0; --n)
            text += pieces.at(random.bounded(int(pieces.size())));
        editor.box().setText(text);
        const QString before = editor.text();
        editor.highlightAll();
        QCOMPARE(editor.text(), before);
        const QString once = slotsOf(editor);
        editor.highlightAll();
        QCOMPARE(slotsOf(editor), once);
        QCOMPARE(once.size(), editor.box().buffer().text().size());
        editor.removeHighlight();
        QCOMPARE(editor.text(), before);
        QCOMPARE(slotsOf(editor), QString(once.size(), u'0'));
    }
}

void tst_sourceeditor::slicesGiveTheSameColours()
{
    QRandomGenerator random(5);
    const QStringList pieces = {u"<"_s,  u">"_s, u" a="_s,  u" "_s,   u"="_s,
                                u"\""_s, u"'"_s, u"1"_s,    u"<b>"_s, u"x"_s,
                                u"\n"_s, u"{"_s, u"<!--"_s, u"-->"_s, u"-"_s};
    for (int round = 0; round < 4000; ++round) {
        QString text;
        for (int n = random.bounded(50); n > 0; --n)
            text += pieces.at(random.bounded(int(pieces.size())));
        QVERIFY2(coloursByColourer(text) == coloursByDocument(text), qPrintable(text));
    }
    for (const QString &file : RealPages::find(1000)) {
        const QString text =
            RealPages::read(file).replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
        QVERIFY2(coloursByColourer(text) == coloursByDocument(text), qPrintable(file));
    }
}

void tst_sourceeditor::partOfTheTextIsColoured()
{
    SourceEditor editor;
    editor.box().setText(u"<i>\r\n<b>\r\n<u>"_s);
    editor.setSelStart(5);
    editor.setSelLength(3);
    editor.colourHtml();
    QCOMPARE(slotsOf(editor), u"00001110000"_s);
    QCOMPARE(editor.selText(), u"<b>"_s);
    editor.setSelStart(10);
    editor.setSelLength(3);
    editor.colourHtml();
    QCOMPARE(slotsOf(editor), u"00001110111"_s);
    QCOMPARE(editor.text(), u"<i>\r\n<b>\r\n<u>"_s);
}

void tst_sourceeditor::highlightSelected()
{
    SourceEditor editor;
    editor.show();
    editor.box().setText(u"<i><b>"_s);
    editor.setSelStart(3);
    editor.setSelLength(3);
    editor.highlightSelected();
    QCOMPARE(slotsOf(editor), u"000111"_s);
    QCOMPARE(editor.selLength(), 0);
    QVERIFY(editor.box().isVisible());
}

void tst_sourceeditor::unHighlight()
{
    SourceEditor editor;
    const QString text = u"{\\rtf1 <b>}"_s;
    editor.setText(text);
    QCOMPARE(editor.text(), text);
    editor.removeHighlight();
    QCOMPARE(editor.text(), text);
    QCOMPARE(slotsOf(editor), QString(text.size(), u'0'));
}

void tst_sourceeditor::pasteLeavesTheCaretAfterTheFirstCharacter()
{
    SourceEditor editor;
    QGuiApplication::clipboard()->setText(u"abc"_s);
    editor.paste();
    QCOMPARE(editor.text(), u"abc"_s);
    QCOMPARE(editor.selStart(), 1);
    QGuiApplication::clipboard()->setText(u"<b>"_s);
    editor.setSelStart(3);
    editor.paste();
    QCOMPARE(editor.text(), u"abc<b>"_s);
    QCOMPARE(slotsOf(editor), u"000111"_s);
    QCOMPARE(editor.selStart(), 1);
}

void tst_sourceeditor::pasteKeyGoesThroughPaste()
{
    SourceEditor editor;
    QGuiApplication::clipboard()->setText(u"<i>z"_s);
    QTest::keyClick(&editor.box(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(slotsOf(editor), u"1110"_s);
    QCOMPARE(editor.selStart(), 1);
}

void tst_sourceeditor::pasteCanBeUndone()
{
    SourceEditor editor;
    editor.setText(u"abc"_s);
    QVERIFY(!editor.canUndo());
    QGuiApplication::clipboard()->setText(u"<i>"_s);
    editor.paste();
    QVERIFY(editor.canUndo());
    editor.undo();
    QCOMPARE(editor.text(), u"abc"_s);
    QVERIFY(!editor.canUndo());
}

void tst_sourceeditor::cutAndCopyClearTheClipboard()
{
    SourceEditor editor;
    editor.setText(u"<b>x"_s);
    editor.setSelStart(3);
    editor.setSelLength(1);
    editor.copy();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"x"_s);
    QCOMPARE(editor.text(), u"<b>x"_s);
    editor.cut();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"x"_s);
    QCOMPARE(editor.text(), u"<b>"_s);
    editor.copy();
    QCOMPARE(QGuiApplication::clipboard()->text(), QString());
    QGuiApplication::clipboard()->setText(u"kept?"_s);
    editor.cut();
    QCOMPARE(QGuiApplication::clipboard()->text(), QString());
}

void tst_sourceeditor::selTextIsColoured()
{
    SourceEditor editor;
    editor.box().setText(u"a<c>"_s);
    editor.setSelStart(1);
    editor.setSelText(u"<b>\n"_s);
    QCOMPARE(editor.text(), u"a<b>\r\n<c>"_s);
    QCOMPARE(slotsOf(editor), u"01110000"_s);
    QCOMPARE(editor.selStart(), 6);
    QCOMPARE(editor.selLength(), 0);
}

void tst_sourceeditor::selectAllAndDelete()
{
    SourceEditor editor;
    editor.show();
    editor.setText(u"a\r\nb"_s);
    editor.selectAll();
    QCOMPARE(editor.selStart(), 0);
    QCOMPARE(editor.selLength(), 4);
    QCOMPARE(editor.focusWidget(), &editor.box());
    editor.deleteSelection();
    QCOMPARE(editor.text(), QString());
}

void tst_sourceeditor::clicksAreTold()
{
    SourceEditor editor;
    editor.resize(200, 100);
    QSignalSpy left(&editor, &SourceEditor::leftClicked);
    QSignalSpy right(&editor, &SourceEditor::rightClicked);
    QTest::mouseClick(editor.box().viewport(), Qt::RightButton);
    QCOMPARE(right.size(), 1);
    QTest::mouseClick(editor.box().viewport(), Qt::LeftButton);
    QCOMPARE(left.size(), 1);
    QTest::mouseClick(editor.box().viewport(), Qt::BackButton);
    QCOMPARE(left.size() + right.size(), 2);
}

void tst_sourceeditor::droppedFileIsTold()
{
    SourceEditor editor;
    editor.resize(300, 200);
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    QSignalSpy dropped(&editor, &SourceEditor::fileDropped);
    QMimeData three;
    three.setUrls({QUrl::fromLocalFile(u"/a/one.html"_s), QUrl::fromLocalFile(u"/a/two.html"_s),
                   QUrl::fromLocalFile(u"/a/three.html"_s)});
    QMimeData noFile;
    noFile.setUrls({QUrl(u"http://a.example/"_s)});
    for (const QMimeData *data : {&three, &noFile}) {
        QWidget *viewport = editor.box().viewport();
        QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(viewport, &enter);
        QDropEvent drop(QPointF(20, 20), Qt::CopyAction, data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(viewport, &drop);
    }
    QCOMPARE(dropped.size(), 1);
    QCOMPARE(dropped.at(0).at(0).toString(), u"/a/one.html"_s);
}

void tst_sourceeditor::changesAreTold()
{
    SourceEditor editor;
    QSignalSpy change(&editor, &SourceEditor::changed);
    editor.setText(u"<b>"_s);
    QCOMPARE(change.size(), 1);
    QTest::keyClick(&editor.box(), Qt::Key_A);
    QCOMPARE(change.size(), 2);
    editor.setSelStart(0);
    editor.highlightAll();
    QCOMPARE(change.size(), 2);
}

void tst_sourceeditor::typing_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("colours");
    QTest::newRow("plain") << u"ab = c"_s << u"000000"_s;
    QTest::newRow("tag") << u"a<b>c"_s << u"01110"_s;
    QTest::newRow("attribute") << u"<a b=\"c\">d"_s << u"1122233310"_s;
    QTest::newRow("two attributes") << u"<a b=\"c d\" e=1>"_s << u"112223333322231"_s;
    QTest::newRow("outside a tag") << u"a=b> c"_s << u"000000"_s;
    QTest::newRow("greater in a comment") << u"<!-- a>b"_s << u"44444400"_s;
}

void tst_sourceeditor::typing()
{
    QFETCH(QString, typed);
    QFETCH(QString, colours);
    SourceEditor editor;
    QTest::keyClicks(&editor.box(), typed);
    QCOMPARE(editor.text(), typed);
    QCOMPARE(slotsOf(editor), colours);
    QVERIFY(editor.canUndo());
    editor.undo();
    QCOMPARE(editor.text(), QString());
    QVERIFY(!editor.canUndo());
}

void tst_sourceeditor::tabIndentsTheSelection()
{
    SourceEditor editor;
    editor.setText(u"ab\r\ncd\r\nef"_s);
    editor.setSelStart(1);
    editor.setSelLength(5);
    QTest::keyClick(&editor.box(), Qt::Key_Tab);
    QCOMPARE(editor.text(), u"a\tb\r\n\tcd\r\nef"_s);
    QCOMPARE(editor.selStart(), 1);
    QCOMPARE(editor.selText(), u"\tb\r\n\tcd"_s);
    editor.undo();
    QCOMPARE(editor.text(), u"ab\r\ncd\r\nef"_s);
    editor.setSelStart(10);
    QTest::keyClick(&editor.box(), Qt::Key_Tab);
    QCOMPARE(editor.text(), u"ab\r\ncd\r\nef\t"_s);
}

void tst_sourceeditor::openerOfACommentIsColoured()
{
    SourceEditor editor;
    QTest::keyClicks(&editor.box(), u"<!-"_s);
    QCOMPARE(slotsOf(editor), u"111"_s);
    QTest::keyClicks(&editor.box(), u"-"_s);
    QCOMPARE(slotsOf(editor), u"4444"_s);
    QTest::keyClicks(&editor.box(), u" <b>"_s);
    // Only ">" has a colour of its own in a comment: black.
    QCOMPARE(slotsOf(editor), u"44444440"_s);
}

void tst_sourceeditor::longTextIsColouredInSlices()
{
    SourceEditor editor;
    editor.show();
    const QString page = longPage();
    QSignalSpy progress(&editor, &SourceEditor::progress);
    editor.setText(page);
    QCOMPARE(editor.text(), page);
    QVERIFY(editor.isBusy());
    editor.setSelStart(0);
    QCOMPARE(editor.selStart(), 0);
    QTRY_VERIFY(!editor.isBusy());
    QCOMPARE(progress.constLast().at(0).toInt(), 100);
    QCOMPARE(editor.selStart(), 0);
    const QString shown = slotsOf(editor);
    QVERIFY(shown.startsWith(u"112222222333"_s));
    QByteArray expected = coloursByDocument(editor.box().buffer().text());
    for (char &slot : expected)
        slot += '0';
    QVERIFY(shown.toLatin1() == expected);
}

void tst_sourceeditor::typingWhileColouring()
{
    SourceEditor editor;
    editor.show();
    const QString page = longPage();
    editor.setText(page);
    editor.setSelStart(0);
    QTest::keyClicks(&editor.box(), u"z"_s);
    QCOMPARE(editor.text(), u'z' + page);
    QTRY_VERIFY(!editor.isBusy());
    QVERIFY(slotsOf(editor).startsWith(u"?112222222333"_s.replace(u'?', slotsOf(editor).at(0))));
    QVERIFY(editor.canUndo());
}

void tst_sourceeditor::filesKeepTheirForm_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("crlf") << QByteArray("a\r\nb\r\n") << QByteArray("!a\r\nb\r\n");
    QTest::newRow("lf") << QByteArray("a\nb\n") << QByteArray("!a\nb\n");
    QTest::newRow("cr") << QByteArray("a\rb") << QByteArray("!a\rb");
    QTest::newRow("utf-8") << QByteArray("\xc3\xa9\n") << QByteArray("!\xc3\xa9\n");
    QTest::newRow("mark") << QByteArray("\xef\xbb\xbf\xc3\xa9\n")
                          << QByteArray("\xef\xbb\xbf!\xc3\xa9\n");
    QTest::newRow("1252") << QByteArray("caf\xe9\n") << QByteArray("!caf\xe9\n");
    const auto big = [](const QByteArray &units) { return QByteArray("\xfe\xff") + units; };
    const auto little = [](const QByteArray &units) { return QByteArray("\xff\xfe") + units; };
    QTest::newRow("utf-16 little, crlf")
        << little(QByteArray("\xe9\0\r\0\n\0", 6)) << little(QByteArray("!\0\xe9\0\r\0\n\0", 8));
    QTest::newRow("utf-16 big, lf")
        << big(QByteArray("\0\xe9\0\n", 4)) << big(QByteArray("\0!\0\xe9\0\n", 6));
    QTest::newRow("utf-16 big, cr")
        << big(QByteArray("\0a\0\r\0b", 6)) << big(QByteArray("\0!\0a\0\r\0b", 8));
    // Bytes that would be line ends if they were looked at one by one.
    QTest::newRow("utf-16 little, hair space")
        << little("\x0a\x20") << little(QByteArray("!\0\x0a\x20", 4));
    QTest::newRow("utf-16, lone halves") << little(QByteArray("\x00\xd8"
                                                              "a\0\x00\xdc",
                                                              6))
                                         << little(QByteArray("!\0\x00\xd8"
                                                              "a\0\x00\xdc",
                                                              8));
    QTest::newRow("utf-16, odd byte")
        << little(QByteArray("a\0\xe9", 3)) << little(QByteArray("!\0a\0\xe9", 5));
    QTest::newRow("utf-16, only a mark") << big({}) << big(QByteArray("\0!", 2));
    QTest::newRow("utf-16, mark and a byte") << big("\x0d") << big(QByteArray("\0!\x0d", 3));
    QTest::newRow("utf-16, two marks") << big("\xfe\xff") << big(QByteArray("\0!\xfe\xff", 4));
    QTest::newRow("utf-16, nul") << little(QByteArray(4, '\0'))
                                 << little(QByteArray("!\0\0\0\0\0", 6));
    QTest::newRow("half a mark") << QByteArray("\xff") << QByteArray("!\xff");
    QTest::newRow("no end") << QByteArray("a") << QByteArray("!a");
    QTest::newRow("empty") << QByteArray() << QByteArray("!");
    QTest::newRow("nul") << QByteArray("a\0b\n", 4) << QByteArray("!a\0b\n", 5);
    QTest::newRow("mixed") << QByteArray("a\nb\r\nc\n\r") << QByteArray("!a\nb\nc\n\n");
}

void tst_sourceeditor::filesKeepTheirForm()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QTemporaryDir dir;
    const QString name = dir.filePath(u"page.html"_s);
    const auto bytes = [&name] {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
    };
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(before);
    file.close();
    SourceEditor editor;
    QVERIFY(editor.openFile(name));
    QCOMPARE(editor.selStart(), editor.box().textLength());
    QVERIFY(editor.saveFile(name));
    QCOMPARE(bytes(), before);
    editor.setSelStart(0);
    QTest::keyClicks(&editor.box(), u"!"_s);
    QVERIFY(editor.saveFile(name));
    QCOMPARE(bytes(), after);
}

void tst_sourceeditor::filesThatFail()
{
    QTemporaryDir dir;
    SourceEditor editor;
    editor.setText(u"kept"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read"_s));
    QVERIFY(!editor.openFile(dir.filePath(u"missing.html"_s)));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read"_s));
    QVERIFY(!editor.openFile(dir.path()));
    QCOMPARE(editor.text(), u"kept"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot write"_s));
    QVERIFY(!editor.saveFile(dir.filePath(u"nowhere/page.html"_s)));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot write"_s));
    QVERIFY(!editor.saveFile(dir.path()));
}

void tst_sourceeditor::fullDiskKeepsTheOldFile()
{
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("only the superuser can have a small disk");
    const QString name = disk.path() + u"/page.html"_s;
    SourceEditor editor;
    editor.setText(u"old"_s);
    QVERIFY(editor.saveFile(name));
    editor.setText(QString(1'000'000, u'x'));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot write"_s));
    QVERIFY(!editor.saveFile(name));
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("old"));
}

void tst_sourceeditor::longTextsAreWrittenWhole_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("utf-8") << u"<p>\u00e9\U0001f600</p>\n"_s.repeated(60'000).toUtf8();
    // Pairs of units that no round number of them parts evenly.
    QTest::newRow("pairs") << (u'x' + u"\U0001f600"_s.repeated(150'000)).toUtf8();
    QTest::newRow("mark") << "\xef\xbb\xbf" + u"\u00e9\r\n"_s.repeated(100'000).toUtf8();
    QTest::newRow("1252") << QByteArray("caf\xe9\r").repeated(60'000);
    QTest::newRow("only a mark") << QByteArray("\xef\xbb\xbf");
}

void tst_sourceeditor::longTextsAreWrittenWhole()
{
    QFETCH(QByteArray, bytes);
    QTemporaryDir dir;
    const QString name = dir.filePath(u"page.html"_s);
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    SourceEditor editor;
    QVERIFY(editor.openFile(name));
    editor.finish();
    editor.setSelStart(editor.box().textLength());
    editor.box().setSelText(u"!"_s);
    QVERIFY(editor.saveFile(name));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll() == bytes + '!');
}

void tst_sourceeditor::longUtf16TextsAreWrittenWhole()
{
    // Pairs of units and line ends that no round number of them parts evenly.
    const QString text = u"\u00e9\U0001f600\r\nx"_s.repeated(70'000);
    QByteArray bytes = "\xfe\xff";
    for (const QChar unit : text)
        bytes.append(char(unit.row())).append(char(unit.cell()));
    QTemporaryDir dir;
    const QString name = dir.filePath(u"page.html"_s);
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    SourceEditor editor;
    QVERIFY(editor.openFile(name));
    editor.finish();
    QVERIFY(editor.text() == text);
    editor.setSelStart(editor.box().textLength());
    editor.box().setSelText(u"\u6f22"_s);
    QVERIFY(editor.saveFile(name));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll() == bytes + "\x6f\x22");
}

void tst_sourceeditor::anotherFileBringsItsOwnForm()
{
    QTemporaryDir dir;
    const auto write = [&dir](const QString &name, const QByteArray &bytes) {
        QFile file(dir.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    };
    QVERIFY(write(u"wide"_s,
                  QByteArray("\xff\xfe"
                             "a\0\xe9",
                             5)));
    QVERIFY(write(u"plain"_s, "b\n"));
    SourceEditor editor;
    QVERIFY(editor.openFile(dir.filePath(u"wide"_s)));
    QVERIFY(editor.openFile(dir.filePath(u"plain"_s)));
    QTest::keyClicks(&editor.box(), u"!"_s);
    QVERIFY(editor.saveFile(dir.filePath(u"plain"_s)));
    QFile file(dir.filePath(u"plain"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("b\n!"));
}

void tst_sourceeditor::boxFillsTheControl()
{
    SourceEditor editor;
    editor.resize(321, 123);
    editor.show();
    QCOMPARE(editor.box().geometry(), QRect(0, 0, 321, 123));
    SourceEditor other;
    QVERIFY(editor.hWnd() != 0);
    QVERIFY(editor.hWnd() != other.hWnd());
}

QTEST_MAIN(tst_sourceeditor)
#include "tst_sourceeditor.moc"
