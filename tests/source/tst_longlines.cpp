#include "HtmlColouring.h"
#include "RichTextBox.h"
#include "SourceEditor.h"

#include <QClipboard>
#include <QDropEvent>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype megabyte = 1'000'000;

/// One line of a megabyte.
QString longLine()
{
    const QString piece = u"<p class=\"a\" id=7>text &amp; <b>más</b><!-- x=1 --></p> "_s;
    return piece.repeated(megabyte / piece.size());
}

/// A place where the line goes on in a further row.
qsizetype partingOf(const RichTextBox &box)
{
    const int row = box.rows().count() / 2;
    return box.rows().continues(row) ? box.rows().start(row) : -1;
}

QByteArray colours(const RichTextBox &box)
{
    QByteArray mixed(box.buffer().size(), 0);
    for (qsizetype i = 0; i < mixed.size(); ++i)
        mixed[i] = char(box.buffer().colourAt(i) >> 8 ^ box.buffer().colourAt(i));
    return mixed;
}

}

/// A line too long to be laid out at once goes on in further rows, of which nothing is in the text.
class tst_longlines : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void textIsTheSame_data();
    void textIsTheSame();
    void rightToLeftIsSeen();
    void partingsAreNoPlaces();
    void wordsGoAcross();
    void typingAtAParting();
    void deletingAtAParting();
    void copyHasNoBreaks();
    void undoIsOneStep();
    void coloursGoAcross();
    void fileIsByteExact();
    void randomEditsAreExact();
    void droppedTextIsSelected();
    void verticalMovesComeBack();
    void pagesAndEndsAreReached();
    void lineEndsOnScreen();
    void unwrappedRowsAreReached();
    void scrollBarGoesByLines();
    void whatIsFirstStaysFirst();
    void mouseFindsThePlaceShown();
    void tripleClickTakesTheLine();
    void inputMethodComposes();

private:
    void show(const QString &text)
    {
        m_editor->setText(text);
        m_editor->finish();
        m_editor->setSelStart(0);
        QVERIFY(QTest::qWaitForWindowExposed(m_editor.get()));
    }
    RichTextBox &box() { return m_editor->box(); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&box(), key, modifiers);
    }

    std::unique_ptr<SourceEditor> m_editor;
};

void tst_longlines::init()
{
    m_editor = std::make_unique<SourceEditor>();
    m_editor->resize(500, 300);
    m_editor->show();
}

void tst_longlines::cleanup()
{
    m_editor.reset();
}

void tst_longlines::textIsTheSame_data()
{
    QTest::addColumn<QString>("text");
    // The fonts of few machines have every character, and say so when they are asked to draw it.
    QTest::addColumn<bool>("drawn");
    QTest::newRow("tags") << longLine() << true;
    QTest::newRow("one word") << QString(megabyte, u'x') << true;
    QTest::newRow("pairs") << u"😀"_s.repeated(megabyte / 2) << true;
    QTest::newRow("halves of pairs") << QString(megabyte, QChar(0xdc00)) << true;
    QTest::newRow("marks") << u"e\u0301"_s.repeated(megabyte / 2) << true;
    QTest::newRow("right to left") << u"أخبار العالم "_s.repeated(megabyte / 13) << true;
    QTest::newRow("separators") << u"a\u2028b\u2029\ufdd0"_s.repeated(megabyte / 5) << true;
    QTest::newRow("with lines") << u"a\r\n"_s + longLine() + u"\r\n\r\nb"_s << true;
    QString every(0x10000 - 2, Qt::Uninitialized);
    qsizetype at = 0;
    for (int c = 0; c < 0x10000; ++c) {
        if (c != '\r' && c != '\n')
            every[at++] = QChar(char16_t(c));
    }
    QTest::newRow("every character") << every << false;
}

void tst_longlines::textIsTheSame()
{
    QFETCH(QString, text);
    QFETCH(bool, drawn);
    m_editor->setVisible(drawn);
    m_editor->setText(text);
    m_editor->finish();
    QVERIFY(m_editor->text() == text);
    QCOMPARE(box().rows().lineCount(), text.count(u'\n') + 1);
    QVERIFY(box().rows().count() > box().rows().lineCount());
    const QByteArray once = colours(box());
    m_editor->highlightAll();
    m_editor->finish();
    QVERIFY(colours(box()) == once);
    m_editor->removeHighlight();
    QVERIFY(m_editor->text() == text);
    QCOMPARE(colours(box()).count('\0'), box().buffer().size());
    m_editor->selectAll();
    QVERIFY(m_editor->selText() == text);
    if (!drawn)
        return;
    // Seen at both ends, wrapped and not.
    for (const bool wrapped : {true, false}) {
        box().setWrapping(wrapped);
        key(Qt::Key_End, Qt::ControlModifier);
        QVERIFY(!box().grab().isNull());
        key(Qt::Key_Home, Qt::ControlModifier);
        QVERIFY(!box().grab().isNull());
    }
    QVERIFY(m_editor->text() == text);
}

void tst_longlines::rightToLeftIsSeen()
{
    show(u"أخبار العالم "_s.repeated(4000));
    box().setWrapping(false);
    for (const Qt::Key end : {Qt::Key_End, Qt::Key_Home}) {
        key(end, Qt::ControlModifier);
        const QImage seen =
            box().viewport()->grab().toImage().convertToFormat(QImage::Format_Grayscale8);
        int dark = 0;
        for (int y = 0; y < seen.height(); ++y)
            dark += int(std::count_if(seen.constScanLine(y), seen.constScanLine(y) + seen.width(),
                                      [](uchar grey) { return grey < 128; }));
        QVERIFY2(dark > 500, qPrintable(QString::number(dark)));
    }
}

void tst_longlines::partingsAreNoPlaces()
{
    show(longLine());
    const qsizetype parting = partingOf(box());
    QVERIFY(parting > 0);
    m_editor->setSelStart(int(parting) - 2);
    for (int i = 1; i <= 4; ++i) {
        key(Qt::Key_Right);
        QCOMPARE(m_editor->selStart(), int(parting) - 2 + i);
    }
    for (int i = 1; i <= 4; ++i) {
        key(Qt::Key_Left);
        QCOMPARE(m_editor->selStart(), int(parting) + 2 - i);
    }
    for (int i = 1; i <= 4; ++i) {
        key(Qt::Key_Right, Qt::ShiftModifier);
        QCOMPARE(m_editor->selLength(), i);
    }
}

void tst_longlines::wordsGoAcross()
{
    show(QString(5000, u'x') + u" y"_s);
    QCOMPARE(box().rows().count(), 3);
    key(Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(m_editor->selStart(), 5001);
    key(Qt::Key_Left, Qt::ControlModifier);
    QCOMPARE(m_editor->selStart(), 0);
}

void tst_longlines::typingAtAParting()
{
    QString text = longLine();
    show(text);
    const qsizetype parting = partingOf(box());
    m_editor->setSelStart(int(parting));
    QTest::keyClicks(&box(), u"<i>"_s);
    text.insert(parting, u"<i>"_s);
    QVERIFY(m_editor->text() == text);
    QCOMPARE(m_editor->selStart(), int(parting) + 3);
    key(Qt::Key_Return);
    text.insert(parting + 3, u"\r\n"_s);
    QVERIFY(m_editor->text() == text);
    QCOMPARE(m_editor->selStart(), int(parting) + 5);
    QCOMPARE(box().rows().lineCount(), 2);
}

void tst_longlines::deletingAtAParting()
{
    QString text = longLine();
    show(text);
    const qsizetype parting = partingOf(box());
    m_editor->setSelStart(int(parting));
    key(Qt::Key_Backspace);
    text.remove(parting - 1, 1);
    QVERIFY(m_editor->text() == text);
    key(Qt::Key_Delete);
    text.remove(parting - 1, 1);
    QVERIFY(m_editor->text() == text);
    // Deleted but for a little, the line is a row again.
    m_editor->setSelStart(10);
    m_editor->setSelLength(int(text.size()) - 20);
    m_editor->deleteSelection();
    QCOMPARE(box().rows().count(), 1);
    QCOMPARE(m_editor->text(), text.left(10) + text.right(10));
}

void tst_longlines::copyHasNoBreaks()
{
    const QString text = longLine();
    show(text);
    const qsizetype parting = partingOf(box());
    m_editor->setSelStart(int(parting) - 3000);
    m_editor->setSelLength(6000);
    key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), text.mid(parting - 3000, 6000));
}

void tst_longlines::undoIsOneStep()
{
    const QString text = longLine();
    show(text);
    const QByteArray before = colours(box());
    const qsizetype parting = partingOf(box());
    m_editor->setSelStart(int(parting) - 5000);
    m_editor->setSelLength(10'000);
    m_editor->deleteSelection();
    QVERIFY(m_editor->text().size() < text.size());
    key(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(m_editor->text() == text);
    QVERIFY(colours(box()) == before);
    QCOMPARE(m_editor->selLength(), 10'000);
    QVERIFY(!m_editor->canUndo());
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(m_editor->text().size(), text.size() - 10'000);
}

void tst_longlines::coloursGoAcross()
{
    const QString text = u"<!-- "_s + QString(10'000, u'x') + u" --><b>"_s;
    show(text);
    for (qsizetype i = 0; i < text.size() - 3; ++i)
        QCOMPARE(box().buffer().colourAt(i), HtmlColouring::defaultColours[HtmlColouring::Comment]);
    QCOMPARE(box().buffer().colourAt(text.size() - 1),
             HtmlColouring::defaultColours[HtmlColouring::Tag]);
}

void tst_longlines::fileIsByteExact()
{
    QTemporaryDir dir;
    const QString name = dir.filePath(u"long.html"_s);
    const QByteArray bytes = longLine().toLatin1() + "\n" + longLine().toLatin1();
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    QVERIFY(m_editor->openFile(name));
    m_editor->finish();
    const qsizetype parting = partingOf(box());
    m_editor->setSelStart(int(parting));
    QTest::keyClicks(&box(), u"!"_s);
    QVERIFY(m_editor->saveFile(name));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll() == QByteArray(bytes).insert(box().caret() - 1, '!'));
}

void tst_longlines::randomEditsAreExact()
{
    QRandomGenerator random(23);
    QString text = longLine().left(20'000);
    show(text);
    const QString at0 = text;
    int steps = 0;
    for (int i = 0; i < 300; ++i) {
        const int start = random.bounded(int(text.size()) + 1);
        const int length =
            random.bounded(4) == 0 ? random.bounded(qMin(5000, int(text.size()) - start) + 1) : 0;
        const QString inserted = random.bounded(5) == 0 ? QString(random.bounded(4000), u'y')
                                                        : u"<i>"_s.left(random.bounded(4));
        box().replace(start, length, inserted);
        text.replace(start, length, inserted);
        steps += length > 0 || !inserted.isEmpty() ? 1 : 0;
        if (random.bounded(4) == 0) {
            box().undo();
            box().redo();
        }
        QVERIFY(m_editor->text() == text);
        QCOMPARE(box().buffer().colours().size(), text.size());
        box().viewport()->repaint();
    }
    for (; steps > 0; --steps)
        box().undo();
    QVERIFY(!box().canUndo());
    QVERIFY(m_editor->text() == at0);
}

void tst_longlines::droppedTextIsSelected()
{
    const QString text = u"one two three"_s;
    show(text);
    const QByteArray before = colours(box());
    box().select(0, 4);
    QMimeData data;
    data.setText(u"one "_s);
    const QPoint there = box().caretArea(8).center();
    QDragEnterEvent enter(there, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(box().viewport(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(there, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(box().viewport(), &drop);
    QCOMPARE(m_editor->text(), u"one two one three"_s);
    QCOMPARE(m_editor->selText(), u"one "_s);
    box().undo();
    QCOMPARE(m_editor->text(), text);
    QCOMPARE(colours(box()), before);
}

void tst_longlines::verticalMovesComeBack()
{
    show(u"abcdefgh\r\n\r\nabcdefgh\r\n"_s + longLine());
    m_editor->setSelStart(5);
    key(Qt::Key_Down);
    QCOMPARE(m_editor->selStart(), 10);
    key(Qt::Key_Down);
    QCOMPARE(m_editor->selStart(), 17);
    for (int i = 0; i < 150; ++i)
        key(Qt::Key_Down);
    QVERIFY(m_editor->selStart() > 3000);
    for (int i = 0; i < 152; ++i)
        key(Qt::Key_Up);
    QCOMPARE(m_editor->selStart(), 5);
    key(Qt::Key_Up);
    QCOMPARE(m_editor->selStart(), 0);
}

void tst_longlines::pagesAndEndsAreReached()
{
    show(longLine());
    key(Qt::Key_PageDown);
    const int page = m_editor->selStart();
    QVERIFY(page > 100);
    QVERIFY(box().visibleRows().constFirst().top <= 0);
    key(Qt::Key_PageUp);
    QCOMPARE(m_editor->selStart(), 0);
    key(Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(m_editor->selStart(), box().textLength());
    QVERIFY(box().viewport()->rect().contains(box().caretArea(box().caret())));
    QCOMPARE(box().visibleRows().constLast().row, box().rows().count() - 1);
    key(Qt::Key_Home, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(m_editor->selLength(), box().textLength());
}

void tst_longlines::lineEndsOnScreen()
{
    show(longLine());
    key(Qt::Key_End);
    const int end = m_editor->selStart();
    QVERIFY(end > 10 && end < 200);
    QCOMPARE(box().caretArea(end).top(), box().caretArea(0).top());
    key(Qt::Key_Home);
    QCOMPARE(m_editor->selStart(), 0);
}

void tst_longlines::unwrappedRowsAreReached()
{
    show(longLine());
    QCOMPARE(box().horizontalScrollBar()->maximum(), 0);
    box().setWrapping(false);
    QTRY_VERIFY(box().horizontalScrollBar()->maximum() > 1000);
    key(Qt::Key_End);
    QVERIFY(m_editor->selStart() > 1000);
    QVERIFY(box().horizontalScrollBar()->value() > 1000);
    QVERIFY(box().viewport()->rect().contains(box().caretArea(box().caret())));
    key(Qt::Key_Home);
    QCOMPARE(box().horizontalScrollBar()->value(), 0);
    box().setWrapping(true);
    QCOMPARE(box().horizontalScrollBar()->maximum(), 0);
}

void tst_longlines::scrollBarGoesByLines()
{
    show(longLine());
    QScrollBar &bar = *box().verticalScrollBar();
    // One row is many lines here.
    const int height = box().lineHeight();
    bar.triggerAction(QAbstractSlider::SliderSingleStepAdd);
    QCOMPARE(box().visibleRows().constFirst().top, -height);
    bar.triggerAction(QAbstractSlider::SliderSingleStepSub);
    QCOMPARE(box().visibleRows().constFirst().top, 0);
    QCOMPARE(bar.value(), 0);
    bar.setValue(bar.maximum() / 2);
    const int middle = box().visibleRows().constFirst().row;
    QVERIFY(qAbs(middle - box().rows().count() / 2) < 5);
    bar.setValue(bar.maximum());
    QCOMPARE(box().visibleRows().constLast().row, box().rows().count() - 1);
    bar.setValue(0);
    QCOMPARE(box().visibleRows().constFirst().row, 0);
    QCOMPARE(box().visibleRows().constFirst().top, 0);
}

void tst_longlines::whatIsFirstStaysFirst()
{
    show(longLine());
    m_editor->setSelStart(int(partingOf(box())) + 900);
    const auto first = [&] { return box().positionAt(QPoint(0, box().lineHeight() / 2)); };
    const qsizetype before = first();
    m_editor->resize(350, 300);
    QVERIFY2(qAbs(first() - before) < 100, qPrintable(QString::number(first() - before)));
    box().zoom(3);
    QVERIFY(qAbs(first() - before) < 100);
    // The row at the top becomes shorter than what was scrolled away of it.
    const int row = box().visibleRows().constFirst().row;
    box().replace(box().rows().start(row) + 5, box().rows().end(row) - box().rows().start(row) - 5,
                  u"\n"_s);
    QVERIFY(!box().grab().isNull());
    QVERIFY(!box().visibleRows().isEmpty());
}

void tst_longlines::mouseFindsThePlaceShown()
{
    show(longLine());
    const qsizetype parting = partingOf(box());
    m_editor->setSelStart(int(parting));
    for (const qsizetype at : {parting, parting + 5, parting - 5}) {
        const QRect area = box().caretArea(at);
        QCOMPARE(box().positionAt(area.center()), at);
        QTest::mouseClick(box().viewport(), Qt::LeftButton, {}, area.center());
        QCOMPARE(box().caret(), at);
    }
    QTest::mousePress(box().viewport(), Qt::LeftButton, {}, box().caretArea(parting - 5).center());
    QMouseEvent move(QEvent::MouseMove, box().caretArea(parting + 5).center(),
                     box().viewport()->mapToGlobal(box().caretArea(parting + 5).center()),
                     Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(box().viewport(), &move);
    QTest::mouseRelease(box().viewport(), Qt::LeftButton);
    QCOMPARE(m_editor->selText(), box().text().mid(parting - 5, 10));
}

void tst_longlines::tripleClickTakesTheLine()
{
    const QString line = QString(5000, u'x') + u" word "_s + QString(5000, u'y');
    show(u"a\r\n"_s + line + u"\r\nb"_s);
    m_editor->setSelStart(3 + 5003);
    const QPoint point = box().caretArea(box().caret()).center();
    QTest::mouseDClick(box().viewport(), Qt::LeftButton, {}, point);
    QCOMPARE(m_editor->selText(), u"word"_s);
    QTest::mousePress(box().viewport(), Qt::LeftButton, {}, point);
    QCOMPARE(m_editor->selText(), line + u"\r\n"_s);
}

void tst_longlines::inputMethodComposes()
{
    const QString text = longLine();
    show(text);
    const qsizetype parting = partingOf(box());
    m_editor->setSelStart(int(parting));
    QInputMethodEvent composing(u"にほ"_s, {});
    QCoreApplication::sendEvent(&box(), &composing);
    QVERIFY(m_editor->text() == text);
    QVERIFY(!box().grab().isNull());
    QInputMethodEvent done;
    done.setCommitString(u"日本"_s);
    QCoreApplication::sendEvent(&box(), &done);
    QVERIFY(m_editor->text() == QString(text).insert(parting, u"日本"_s));
    box().undo();
    QVERIFY(m_editor->text() == text);
    QInputMethodQueryEvent around(Qt::ImSurroundingText);
    QCoreApplication::sendEvent(&box(), &around);
    QVERIFY(around.value(Qt::ImSurroundingText).toString().size() <= TextRows::longest);
}

QTEST_MAIN(tst_longlines)
#include "tst_longlines.moc"
