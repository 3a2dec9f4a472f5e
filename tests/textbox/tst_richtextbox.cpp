#include "RichTextBox.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Everything a document or a toolkit could take for its own.
const QString awkward = u"a\u00a0b\u2028c\u2029d\ufdd0\ufdd1e"_s + QChar(0) + u"f😀"_s
    + QChar(0xd800) + u"x"_s + QChar(0xdc00) + u"\ufffd\ufffc\ufeff\u200d\u202e\u0085\f\v\t"_s;

QByteArray slotsOf(const RichTextBox &box)
{
    QByteArray digits;
    for (qsizetype i = 0; i < box.buffer().text().size(); ++i)
        digits += char('0' + (box.buffer().colourAt(i) & 0xf));
    return digits;
}

}

class tst_richtextbox : public QObject {
    Q_OBJECT

private slots:
    void textIsKeptExactly();
    void lineEndsBecomeCrLf_data();
    void lineEndsBecomeCrLf();
    void positionsCountLineBreaksAsTwo();
    void selectionIsBounded();
    void selTextReplaces();
    void awkwardTextSurvivesUndo();
    void typedTextTakesItsNeighboursColour();
    void undoBringsColoursBack();
    void colouringIsNoUndoStep();
    void typingInOneGoIsOneStep();
    void movingTheCaretEndsWhatIsOneStep();
    void eachLineIsOneStep();
    void erasingInOneGoIsOneStep();
    void composedTextIsPartOfWhatIsTyped();
    void otherEditsAreStepsOfTheirOwn();
    void undoneTypingIsNotGoneOnWith();
    void richTextInAndOut();
    void bufferFollowsRandomEdits();
    void droppedFilesAreTold();
    void copyIsExact();
    void zoomIsBounded();
    void assistiveToolsReadAndEdit();
    void bareArrowsCollapseTheSelection();
    void wordsAndLinesAreDeletedByKey();
    void selectionIsPastedByTheMiddleButton();
};

void tst_richtextbox::textIsKeptExactly()
{
    RichTextBox box;
    box.setText(awkward);
    QCOMPARE(box.text(), awkward);
    box.setSelStart(0);
    box.setSelLength(box.textLength());
    QCOMPARE(box.selText(), awkward);
    box.setText({});
    box.setSelText(awkward);
    QCOMPARE(box.text(), awkward);
    box.setTextRtf(box.textRtf());
    QCOMPARE(box.text(), awkward);
}

void tst_richtextbox::lineEndsBecomeCrLf_data()
{
    QTest::addColumn<QString>("in");
    QTest::addColumn<QString>("out");
    QTest::newRow("lf") << u"a\nb"_s << u"a\r\nb"_s;
    QTest::newRow("cr") << u"a\rb\r"_s << u"a\r\nb\r\n"_s;
    QTest::newRow("crlf") << u"a\r\n\r\nb"_s << u"a\r\n\r\nb"_s;
    QTest::newRow("mixed") << u"\n\r\n\r"_s << u"\r\n\r\n\r\n"_s;
}

void tst_richtextbox::lineEndsBecomeCrLf()
{
    QFETCH(QString, in);
    QFETCH(QString, out);
    RichTextBox box;
    box.setText(in);
    QCOMPARE(box.text(), out);
    QCOMPARE(box.textLength(), out.size());
    box.setText(u"x"_s);
    box.setSelStart(1);
    box.setSelText(in);
    QCOMPARE(box.text(), u'x' + out);
}

void tst_richtextbox::positionsCountLineBreaksAsTwo()
{
    RichTextBox box;
    box.setText(u"ab\r\ncd\r\n\r\ne"_s);
    const QString text = box.text();
    for (int start = 0; start <= text.size(); ++start) {
        // Between CR and LF there is no place for the caret.
        if (start > 0 && text.at(start - 1) == u'\r')
            continue;
        box.setSelStart(start);
        QCOMPARE(box.selStart(), start);
        for (int length = 0; start + length <= text.size(); ++length) {
            if (length > 0 && text.at(start + length - 1) == u'\r')
                continue;
            box.setSelStart(start);
            box.setSelLength(length);
            QCOMPARE(box.selLength(), length);
            QCOMPARE(box.selText(), text.mid(start, length));
        }
    }
    box.setSelStart(3);
    QCOMPARE(box.selStart(), 2);
}

void tst_richtextbox::selectionIsBounded()
{
    RichTextBox box;
    box.setText(u"abc"_s);
    box.setSelStart(99);
    QCOMPARE(box.selStart(), 3);
    box.setSelStart(-5);
    QCOMPARE(box.selStart(), 0);
    box.setSelLength(std::numeric_limits<int>::max());
    QCOMPARE(box.selLength(), 3);
    box.setSelLength(-1);
    QCOMPARE(box.selLength(), 0);
}

void tst_richtextbox::selTextReplaces()
{
    RichTextBox box;
    box.setText(u"one two"_s);
    QSignalSpy changed(&box, &RichTextBox::changed);
    box.setSelStart(4);
    box.setSelLength(3);
    box.setSelText(u"2\n3"_s);
    QCOMPARE(box.text(), u"one 2\r\n3"_s);
    QCOMPARE(box.selStart(), 8);
    QCOMPARE(box.selLength(), 0);
    QCOMPARE(changed.size(), 1);
}

void tst_richtextbox::awkwardTextSurvivesUndo()
{
    RichTextBox box;
    box.setText(u"<>"_s);
    box.setSelStart(1);
    box.setSelText(awkward);
    QCOMPARE(box.text(), u'<' + awkward + u'>');
    box.undo();
    QCOMPARE(box.text(), u"<>"_s);
    box.redo();
    QCOMPARE(box.text(), u'<' + awkward + u'>');
}

void tst_richtextbox::typedTextTakesItsNeighboursColour()
{
    RichTextBox box;
    box.setText(u"ab\ncd"_s);
    box.setSelStart(0);
    box.setSelLength(2);
    box.setSelColor(1);
    QCOMPARE(box.selColor(), 1);
    box.setSelStart(2);
    QCOMPARE(box.selColor(), 1);
    QTest::keyClicks(&box, u"x"_s);
    QCOMPARE(slotsOf(box), QByteArray("111000"));
    box.setSelColor(2);
    QCOMPARE(box.selColor(), 2);
    QTest::keyClicks(&box, u"yz"_s);
    QCOMPARE(slotsOf(box), QByteArray("11122000"));
    box.setSelColor(3);
    box.setSelStart(0);
    QTest::keyClicks(&box, u"q"_s);
    QCOMPARE(slotsOf(box), QByteArray("111122000"));
}

void tst_richtextbox::undoBringsColoursBack()
{
    RichTextBox box;
    box.setText(u"abcdef"_s);
    box.setSelStart(1);
    box.setSelLength(2);
    box.setSelColor(5);
    box.setSelStart(0);
    box.setSelLength(4);
    box.setSelText({});
    QCOMPARE(box.text(), u"ef"_s);
    box.undo();
    QCOMPARE(box.text(), u"abcdef"_s);
    QCOMPARE(slotsOf(box), QByteArray("055000"));
}

void tst_richtextbox::colouringIsNoUndoStep()
{
    RichTextBox box;
    box.setText(u"abc"_s);
    box.setSelStart(3);
    box.type(u"d"_s);
    box.setSelStart(0);
    box.setSelLength(4);
    box.setSelColor(3);
    box.undo();
    QCOMPARE(box.text(), u"abc"_s);
    QCOMPARE(slotsOf(box), QByteArray("333"));
}

void tst_richtextbox::typingInOneGoIsOneStep()
{
    RichTextBox box;
    box.setText(u"old"_s);
    box.select(3, 1);
    QTest::keyClicks(&box, u"a<b c"_s);
    QCOMPARE(box.text(), u"oa<b c"_s);
    box.undo();
    QCOMPARE(box.text(), u"old"_s);
    QCOMPARE(box.anchor(), 3);
    QCOMPARE(box.caret(), 1);
    QVERIFY(!box.canUndo());
    box.redo();
    QCOMPARE(box.text(), u"oa<b c"_s);
    QCOMPARE(box.caret(), 6);
}

void tst_richtextbox::movingTheCaretEndsWhatIsOneStep()
{
    RichTextBox box;
    QTest::keyClicks(&box, u"ab"_s);
    QTest::keyClick(&box, Qt::Key_Left);
    QTest::keyClick(&box, Qt::Key_Right);
    QTest::keyClicks(&box, u"cd"_s);
    box.undo();
    QCOMPARE(box.text(), u"ab"_s);
    box.undo();
    QCOMPARE(box.text(), QString());
}

void tst_richtextbox::eachLineIsOneStep()
{
    RichTextBox box;
    QTest::keyClicks(&box, u"ab"_s);
    QTest::keyClick(&box, Qt::Key_Return);
    QTest::keyClicks(&box, u"cd"_s);
    QTest::keyClick(&box, Qt::Key_Return);
    box.undo();
    QCOMPARE(box.text(), u"ab\r\ncd"_s);
    box.undo();
    QCOMPARE(box.text(), u"ab"_s);
    box.undo();
    QCOMPARE(box.text(), QString());
}

void tst_richtextbox::erasingInOneGoIsOneStep()
{
    RichTextBox box;
    box.setText(u"abcdef"_s);
    box.setSelStart(0);
    box.setSelLength(3);
    box.setSelColor(5);
    box.setSelStart(4);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(&box, Qt::Key_Backspace);
    QCOMPARE(box.text(), u"aef"_s);
    for (int i = 0; i < 2; ++i)
        QTest::keyClick(&box, Qt::Key_Delete);
    QCOMPARE(box.text(), u"a"_s);
    QTest::keyClicks(&box, u"x"_s);
    box.undo();
    QCOMPARE(box.text(), u"a"_s);
    box.undo();
    QCOMPARE(box.text(), u"aef"_s);
    box.undo();
    QCOMPARE(box.text(), u"abcdef"_s);
    QCOMPARE(slotsOf(box), QByteArray("555000"));
    QCOMPARE(box.caret(), 4);
    QVERIFY(!box.canUndo());
    box.redo();
    box.redo();
    QCOMPARE(box.text(), u"a"_s);
}

void tst_richtextbox::composedTextIsPartOfWhatIsTyped()
{
    RichTextBox box;
    QTest::keyClicks(&box, u"a"_s);
    for (const QString &text : {u"\u6f22\u5b57"_s, u"b"_s, u"\U0001f600"_s}) {
        QInputMethodEvent event;
        event.setCommitString(text);
        QCoreApplication::sendEvent(&box, &event);
    }
    QCOMPARE(box.text(), u"a\u6f22\u5b57b\U0001f600"_s);
    box.undo();
    QCOMPARE(box.text(), QString());
    QVERIFY(!box.canUndo());
}

void tst_richtextbox::otherEditsAreStepsOfTheirOwn()
{
    RichTextBox box;
    QTest::keyClicks(&box, u"ab"_s);
    box.setSelText(u"put"_s);
    QTest::keyClicks(&box, u"cd"_s);
    QTest::keyClick(&box, Qt::Key_Backspace, Qt::ControlModifier);
    QCOMPARE(box.text(), QString());
    box.undo();
    QCOMPARE(box.text(), u"abputcd"_s);
    box.undo();
    QCOMPARE(box.text(), u"abput"_s);
    box.undo();
    QCOMPARE(box.text(), u"ab"_s);
    box.undo();
    QCOMPARE(box.text(), QString());
}

void tst_richtextbox::undoneTypingIsNotGoneOnWith()
{
    RichTextBox box;
    QTest::keyClicks(&box, u"ab"_s);
    box.setSelText(u"put"_s);
    box.undo();
    QTest::keyClicks(&box, u"cd"_s);
    QCOMPARE(box.text(), u"abcd"_s);
    QVERIFY(!box.canRedo());
    box.undo();
    QCOMPARE(box.text(), u"ab"_s);
    box.redo();
    QTest::keyClicks(&box, u"e"_s);
    box.undo();
    QCOMPARE(box.text(), u"abcd"_s);
}

void tst_richtextbox::richTextInAndOut()
{
    RichTextBox box;
    box.setTextRtf(u"{\\rtf1{\\colortbl;\\red1\\green0\\blue0;}a\\cf1 b\\par c\\cf0 d}"_s);
    QCOMPARE(box.text(), u"ab\r\ncd"_s);
    QCOMPARE(slotsOf(box), QByteArray("01110"));
    box.setSelStart(1);
    box.setSelLength(4);
    const QString part = box.selRtf();
    RichTextBox other;
    other.setTextRtf(part);
    QCOMPARE(other.text(), u"b\r\nc"_s);
    QCOMPARE(slotsOf(other), QByteArray("111"));
    box.setSelLength(0);
    QCOMPARE(box.selRtf(), QString());
    box.setTextRtf(u"plain {text}"_s);
    QCOMPARE(box.text(), u"plain {text}"_s);
}

void tst_richtextbox::bufferFollowsRandomEdits()
{
    QRandomGenerator random(3);
    RichTextBox box;
    QString expected;
    for (int i = 0; i < 2000; ++i) {
        const int start = random.bounded(int(expected.size()) + 1);
        const int length = random.bounded(qMin(6, int(expected.size()) - start) + 1);
        QString text;
        for (int n = random.bounded(4); n > 0; --n)
            text += awkward.at(random.bounded(int(awkward.size())));
        if (random.bounded(5) == 0)
            text += u'\n';
        box.select(start, start + length);
        box.setSelText(text);
        expected.replace(start, length, text);
        if (random.bounded(4) == 0) {
            box.undo();
            box.redo();
        }
        QCOMPARE(box.buffer().text(), expected);
        QCOMPARE(box.buffer().colours().size(), expected.size());
    }
    while (box.canUndo())
        box.undo();
    QCOMPARE(box.text(), QString());
}

void tst_richtextbox::droppedFilesAreTold()
{
    RichTextBox box;
    box.resize(300, 200);
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    QSignalSpy dropped(&box, &RichTextBox::fileDropped);
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(u"/a/one.html"_s), QUrl::fromLocalFile(u"/a/two.html"_s),
                   QUrl::fromLocalFile(u"/a/three.html"_s)});
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(box.viewport(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(box.viewport(), &drop);
    QCOMPARE(dropped.size(), 1);
    QCOMPARE(dropped.at(0).at(0).toString(), u"/a/one.html"_s);
    QCOMPARE(box.text(), QString());
}

void tst_richtextbox::copyIsExact()
{
    RichTextBox box;
    box.setText(u"a\u00a0b\u2028c\r\nd"_s);
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"a\u00a0b\u2028c\nd"_s);
    QCOMPARE(box.selText(), u"a\u00a0b\u2028c\r\nd"_s);
    QTest::keyClick(&box, Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"a\u00a0b\u2028c\nd"_s);
    QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(box.text(), u"a\u00a0b\u2028c\r\nd"_s);
}

void tst_richtextbox::zoomIsBounded()
{
    RichTextBox box;
    const qreal before = box.font().pointSizeF();
    box.zoom(2);
    QCOMPARE(box.font().pointSizeF(), before + 2);
    box.zoom(1000);
    QCOMPARE(box.font().pointSizeF(), qreal(RichTextBox::largestFont));
    box.zoom(-1000);
    QCOMPARE(box.font().pointSizeF(), qreal(RichTextBox::smallestFont));
}

void tst_richtextbox::assistiveToolsReadAndEdit()
{
    RichTextBox box;
    box.setAccessibleName(u"Source"_s);
    box.setText(u"one\r\ntwo"_s);
    QAccessibleInterface *face = QAccessible::queryAccessibleInterface(&box);
    QVERIFY(face);
    QCOMPARE(face->role(), QAccessible::EditableText);
    QCOMPARE(face->text(QAccessible::Name), u"Source"_s);
    QCOMPARE(face->text(QAccessible::Value), u"one\ntwo"_s);
    QVERIFY(face->state().editable && face->state().multiLine);
    QAccessibleTextInterface *text = face->textInterface();
    QAccessibleEditableTextInterface *edit = face->editableTextInterface();
    QVERIFY(text && edit);
    QCOMPARE(text->characterCount(), 7);
    QCOMPARE(text->text(4, 7), u"two"_s);
    text->setCursorPosition(4);
    QCOMPARE(box.selStart(), 5);
    text->setSelection(0, 0, 3);
    QCOMPARE(box.selText(), u"one"_s);
    QCOMPARE(text->selectionCount(), 1);
    edit->insertText(7, u"!"_s);
    edit->replaceText(0, 3, u"1"_s);
    edit->deleteText(2, 3);
    QCOMPARE(box.text(), u"1\r\nwo!"_s);
    box.undo();
    QCOMPARE(box.text(), u"1\r\ntwo!"_s);
    face->setText(QAccessible::Value, u"new"_s);
    QCOMPARE(box.text(), u"new"_s);
}

void tst_richtextbox::bareArrowsCollapseTheSelection()
{
    RichTextBox box;
    box.setText(u"abcdef"_s);
    box.select(2, 4);
    QTest::keyClick(&box, Qt::Key_Right);
    QCOMPARE(box.selStart(), 4);
    QCOMPARE(box.selLength(), 0);
    box.select(4, 2);
    QTest::keyClick(&box, Qt::Key_Left);
    QCOMPARE(box.selStart(), 2);
    box.select(4, 2);
    QTest::keyClick(&box, Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(box.selText(), u"bcd"_s);
}

void tst_richtextbox::wordsAndLinesAreDeletedByKey()
{
    RichTextBox box;
    box.setText(u"one two\r\nthree"_s);
    box.setSelStart(7);
    QTest::keyClick(&box, Qt::Key_Backspace, Qt::ControlModifier);
    QCOMPARE(box.text(), u"one \r\nthree"_s);
    box.setSelStart(0);
    QTest::keyClick(&box, Qt::Key_Delete, Qt::ControlModifier);
    QCOMPARE(box.text(), u"\r\nthree"_s);
    QTest::keyClick(&box, Qt::Key_Delete);
    QCOMPARE(box.text(), u"three"_s);
    box.setText(u"a😀e\u0301"_s);
    box.setSelStart(5);
    QTest::keyClick(&box, Qt::Key_Backspace);
    QCOMPARE(box.text(), u"a😀e"_s);
    QTest::keyClick(&box, Qt::Key_Left);
    QTest::keyClick(&box, Qt::Key_Backspace);
    QCOMPARE(box.text(), u"ae"_s);
    QTest::keyClick(&box, Qt::Key_Backspace);
    QTest::keyClick(&box, Qt::Key_Backspace);
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClick(&box, Qt::Key_Delete);
    QCOMPARE(box.text(), QString());
}

void tst_richtextbox::selectionIsPastedByTheMiddleButton()
{
    if (!QGuiApplication::clipboard()->supportsSelection())
        QSKIP("no clipboard for selections here");
    RichTextBox box;
    box.resize(300, 200);
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    box.setText(u"abcdef"_s);
    QTest::mouseDClick(box.viewport(), Qt::LeftButton, {}, box.caretArea(3).center());
    QTest::mouseRelease(box.viewport(), Qt::LeftButton, {}, box.caretArea(3).center());
    QCOMPARE(QGuiApplication::clipboard()->text(QClipboard::Selection), u"abcdef"_s);
    QTest::mouseClick(box.viewport(), Qt::MiddleButton, {}, box.caretArea(6).center());
    QCOMPARE(box.text(), u"abcdefabcdef"_s);
}

QTEST_MAIN(tst_richtextbox)
#include "tst_richtextbox.moc"
