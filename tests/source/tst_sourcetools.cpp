#include "FindBar.h"
#include "LineNumbers.h"
#include "RichTextBox.h"
#include "SourceEditor.h"
#include "SourceWindow.h"
#include "TempAppFolder.h"

#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QTest>

using namespace Qt::StringLiterals;

/// What the source window has beyond its menus, as keys and eyes find it.
class tst_sourcetools : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void findKeys();
    void findTakesTheSelection();
    void foundTextIsInView();
    void goToLineKey();
    void wrapKey();
    void zoomKeepsTheNumbersBesideTheirLines();
    void lineNumbersGrowWithTheLines();
    void longLineHasOneNumber();
    void progressIsShownWhileColouring();

private:
    SourceEditor &editor() const { return m_window->editor(); }
    RichTextBox &box() const { return editor().box(); }
    LineNumbers &numbers() const { return *m_window->findChild<LineNumbers *>(); }
    void key(int code, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(code), modifiers);
    }
    bool hasInk(int row) const;

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<SourceWindow> m_window;
};

void tst_sourcetools::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    m_window = std::make_unique<SourceWindow>();
    m_window->setAttribute(Qt::WA_DeleteOnClose, false);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QTRY_VERIFY(box().hasFocus());
}

void tst_sourcetools::cleanup()
{
    m_window.reset();
    m_folder.reset();
}

/// Whether anything stands beside a row of the text.
bool tst_sourcetools::hasInk(int row) const
{
    for (const TextView::VisibleRow &shown : box().visibleRows()) {
        if (shown.row != row)
            continue;
        const QRect area(0, shown.top, numbers().width(), box().lineHeight());
        const QImage image = numbers().grab(area).toImage();
        const QColor paper = image.pixelColor(0, 0);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) != paper)
                    return true;
            }
        }
    }
    return false;
}

void tst_sourcetools::findKeys()
{
    editor().setText(u"one two\r\nTwo"_s);
    editor().setSelStart(0);
    key(Qt::Key_F, Qt::ControlModifier);
    auto *text = m_window->findChild<QLineEdit *>(u"txtFind"_s);
    QTRY_VERIFY(text->hasFocus());
    QTest::keyClicks(text, u"two"_s);
    QCOMPARE(m_window->findChild<QLabel *>(u"lblCount"_s)->text(), u"2 found"_s);
    key(Qt::Key_F3);
    QCOMPARE(editor().selText(), u"Two"_s);
    key(Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(editor().selText(), u"two"_s);
    key(Qt::Key_Return, Qt::ShiftModifier);
    QCOMPARE(editor().selText(), u"Two"_s);
    key(Qt::Key_Escape);
    QTRY_VERIFY(box().hasFocus());
    // The text looked for last is found without the bar.
    key(Qt::Key_F3);
    QCOMPARE(editor().selText(), u"two"_s);
}

void tst_sourcetools::findTakesTheSelection()
{
    editor().setText(u"a <b> <b>"_s);
    editor().setSelStart(2);
    editor().setSelLength(3);
    key(Qt::Key_F, Qt::ControlModifier);
    QCOMPARE(m_window->findChild<QLineEdit *>(u"txtFind"_s)->text(), u"<b>"_s);
    key(Qt::Key_Return);
    QCOMPARE(editor().selStart(), 6);
}

void tst_sourcetools::foundTextIsInView()
{
    editor().setText(u"line\r\n"_s.repeated(500) + u"needle\r\n"_s + u"line\r\n"_s.repeated(500));
    editor().setSelStart(0);
    key(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(m_window->findChild<QLineEdit *>(u"txtFind"_s), u"needle"_s);
    QCOMPARE(editor().selText(), u"needle"_s);
    QVERIFY(box().viewport()->rect().contains(box().caretArea(box().caret())));
}

void tst_sourcetools::goToLineKey()
{
    editor().setText(u"line\r\n"_s.repeated(300));
    key(Qt::Key_G, Qt::ControlModifier);
    auto *dialog = m_window->findChild<QInputDialog *>();
    QVERIFY(dialog);
    QTRY_VERIFY(dialog->isVisible());
    QCOMPARE(dialog->intMaximum(), 301);
    dialog->setIntValue(250);
    dialog->accept();
    QCOMPARE(editor().selStart(), 249 * 6);
    QVERIFY(box().viewport()->rect().contains(box().caretArea(box().caret())));
}

void tst_sourcetools::wrapKey()
{
    QVERIFY(box().isWrapping());
    key(Qt::Key_Z, Qt::AltModifier);
    QVERIFY(!box().isWrapping());
    key(Qt::Key_Z, Qt::AltModifier);
    QVERIFY(box().isWrapping());
}

void tst_sourcetools::zoomKeepsTheNumbersBesideTheirLines()
{
    editor().setText(u"a\r\nb\r\nc"_s);
    const int before = numbers().width();
    box().zoom(10);
    QVERIFY(numbers().width() > before);
    QCOMPARE(numbers().geometry().right() + 1, box().viewport()->geometry().left());
    QVERIFY(hasInk(2));
}

void tst_sourcetools::lineNumbersGrowWithTheLines()
{
    editor().setText(u"x"_s);
    const int few = numbers().width();
    QVERIFY(hasInk(0));
    editor().setText(u"x\r\n"_s.repeated(12'345));
    QVERIFY(numbers().width() > few);
    QCOMPARE(numbers().geometry().right() + 1, box().viewport()->geometry().left());
    editor().setText(u"x"_s);
    QCOMPARE(numbers().width(), few);
}

void tst_sourcetools::longLineHasOneNumber()
{
    editor().setText(u"a\r\n"_s + QString(5000, u'x') + u"\r\nb"_s);
    editor().setSelStart(0);
    key(Qt::Key_Z, Qt::AltModifier);
    const TextRows &rows = box().rows();
    QCOMPARE(rows.count(), 5);
    QCOMPARE(rows.lineCount(), 3);
    // A row that goes on has a mark of its own.
    const auto beside = [this](int row) {
        for (const TextView::VisibleRow &shown : box().visibleRows()) {
            if (shown.row == row)
                return numbers()
                    .grab(QRect(0, shown.top, numbers().width(), box().lineHeight()))
                    .toImage();
        }
        return QImage();
    };
    QVERIFY(hasInk(2));
    QCOMPARE(beside(2), beside(3));
    QVERIFY(beside(1) != beside(2));
}

void tst_sourcetools::progressIsShownWhileColouring()
{
    auto *progress = m_window->findChild<QProgressBar *>(u"ColouringProgress"_s);
    QVERIFY(!progress->isVisible());
    editor().setText(u"<p class=\"a\">x=1 <!-- <b> --> text</p>\r\n"_s.repeated(200'000));
    QVERIFY(progress->isVisible());
    QVERIFY(progress->value() < 100);
    QTRY_VERIFY(!editor().isBusy());
    QVERIFY(!progress->isVisible());
}

QTEST_MAIN(tst_sourcetools)
#include "tst_sourcetools.moc"
