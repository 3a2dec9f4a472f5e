#include "AddressBox.h"
#include "AppFolder.h"
#include "IniStore.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <memory>

using namespace Qt::StringLiterals;

// The field as part of a window with another control and a menu bar, with real keys sent to the
// window.
class tst_brwURL : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // Completion
    void hostPartCompletesOverTheScheme();
    void upperCaseCompletesToStoredCase();
    void backspaceDoesNotComplete();
    void deleteDoesNotComplete();
    void nextKeyReplacesTheProposal();
    void topmostEntryIsProposed();
    void fastTypingNeverLosesKeys();
    void programTextIsNotCompleted();
    void cutAndUndoAreNotCompleted();
    void pasteIsCompleted();
    void pasteBySelTextIsCompleted();
    void inputMethodCommitIsCompleted();
    void compositionIsNotDisturbed();
    void caretStandsAtTheTypedEnd();
    void arrowsLeaveTheProposal();

    // The list
    void addItemMovesEqualToTop();
    void caseMakesTwoEntries();
    void addItemShowsWithCaretAtEnd();
    void addItemUnshownLeavesTheField();
    void firstItemDoesNotShow();
    void removingTheChosenEntryLeavesTheField();
    void clearListLeavesTheText();
    void saveListWritesEmptyRest();
    void loadListReverses();
    void loadListShowsWhenAsked();
    void loadOfMissingFileIsEmpty();
    void listsDefaultToTheSettingsFile();
    void saveWithoutFolderFails();

    // Properties
    void selectionProperties();
    void selectionPropertiesOutOfRange();

    // Keys and events
    void keyDownTwicePerKey();
    void keyCodes_data();
    void keyCodes();
    void cancelledKeysDoNothing();
    void changedKeysAreThoseKeys();
    void heldEnterIsOnePress();
    void enterIsReportedOnce();
    void escapeReachesTheHost();
    void menuAcceleratorsWin();
    void wheelDoesNotChoose();

    // The drop-down
    void altDownDropsAndEnterChoosesOnce();
    void mouseChoosesOnce();
    void escapeClosesTheListFirst();
    void typingInTheDroppedListTypes();
    void completedTextIsNotChosen();
    void emptyListDoesNotDrop();
    void listGrowsWhileDropped();

    // Focus
    void lostFocusPutsCaretAtEnd();
    void openingAMenuIsNoLoss();
    void menuBarIsNoLoss();
    void focusMovedByAMenuIsALoss();
    void firstClickSelectsAll();
    void unsentEdits();

    // Bad input
    void pastedLineBreaksJoin();
    void lineBreaksOfAQueryAreBlanks();
    void controlCharactersGo();
    void millionCharacters();
    void rightToLeftText();
    void hundredThousandEntries();

    void names();

private:
    QLineEdit *edit() const { return m_field->findChild<QLineEdit *>(); }
    QComboBox *combo() const { return m_field->findChild<QComboBox *>(u"cboAddress"_s); }
    void type(const QString &text) const;
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const;
    QStringList items() const;

    std::unique_ptr<QWidget> m_window;
    AddressBox *m_field = nullptr;
    QPushButton *m_other = nullptr;
    QMenuBar *m_menuBar = nullptr;
};

void tst_brwURL::init()
{
    m_window = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(m_window.get());
    m_menuBar = new QMenuBar;
    m_field = new AddressBox;
    m_other = new QPushButton(u"Other"_s);
    layout->setMenuBar(m_menuBar);
    layout->addWidget(m_field);
    layout->addWidget(m_other);
    m_window->resize(500, 120);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_field->setFocus();
    QTRY_COMPARE(QApplication::focusWidget(), combo());
}

void tst_brwURL::cleanup()
{
    m_window.reset();
}

void tst_brwURL::type(const QString &text) const
{
    for (const QChar c : text)
        QTest::keyClick(m_window->windowHandle(), c.toLatin1());
}

void tst_brwURL::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    QTest::keyClick(m_window->windowHandle(), key, modifiers);
}

QStringList tst_brwURL::items() const
{
    QStringList result;
    for (int i = 0; i < m_field->listCount(); ++i)
        result.append(m_field->listItem(i));
    return result;
}

void tst_brwURL::hostPartCompletesOverTheScheme()
{
    m_field->addItem(u"http://example.org/page"_s, false);
    type(u"exa"_s);
    QCOMPARE(m_field->text(), u"http://example.org/page"_s);
    QCOMPARE(m_field->selStart(), 10);
    QCOMPARE(m_field->selText(), u"mple.org/page"_s);
}

void tst_brwURL::upperCaseCompletesToStoredCase()
{
    m_field->addItem(u"http://example.org/Page"_s, false);
    type(u"HTTP://EXA"_s);
    QCOMPARE(m_field->text(), u"http://example.org/Page"_s);
    QCOMPARE(m_field->selStart(), 10);
}

void tst_brwURL::backspaceDoesNotComplete()
{
    m_field->addItem(u"http://example.org/"_s, false);
    type(u"exa"_s);
    press(Qt::Key_Backspace);
    QCOMPARE(m_field->text(), u"http://exa"_s);
    QCOMPARE(m_field->selLength(), 0);
    press(Qt::Key_Backspace);
    QCOMPARE(m_field->text(), u"http://ex"_s);
    type(u"a"_s);
    QCOMPARE(m_field->text(), u"http://example.org/"_s);
    QCOMPARE(m_field->selText(), u"mple.org/"_s);
}

void tst_brwURL::deleteDoesNotComplete()
{
    m_field->addItem(u"http://example.org/"_s, false);
    type(u"http://e"_s);
    press(Qt::Key_Delete);
    QCOMPARE(m_field->text(), u"http://e"_s);
    QCOMPARE(m_field->selStart(), 8);
}

void tst_brwURL::nextKeyReplacesTheProposal()
{
    m_field->addItem(u"http://example.org/"_s, false);
    type(u"exact"_s);
    QCOMPARE(m_field->text(), u"http://exact"_s);
    QCOMPARE(m_field->selLength(), 0);
}

void tst_brwURL::topmostEntryIsProposed()
{
    m_field->addItem(u"http://example.org/old"_s, false);
    m_field->addItem(u"http://example.org/new"_s, false);
    m_field->addItem(u"example of a name"_s, false);
    type(u"ex"_s);
    QCOMPARE(m_field->text(), u"example of a name"_s);
    m_field->setText({});
    type(u"http"_s);
    QCOMPARE(m_field->text(), u"http://example.org/new"_s);
}

void tst_brwURL::fastTypingNeverLosesKeys()
{
    for (int i = 0; i < 200; ++i)
        m_field->addItem(u"http://www.site%1.example/path/%2"_s.arg(i).arg(i * 7), false);
    const QString typed = u"http://www.site42.example/another/place/42.html"_s;
    for (int i = 0; i < typed.size(); ++i) {
        type(typed.mid(i, 1));
        m_field->addItem(u"http://www.loaded%1.example/"_s.arg(i), false);
    }
    QCOMPARE(m_field->text(), typed);
}

void tst_brwURL::programTextIsNotCompleted()
{
    m_field->addItem(u"http://example.org/"_s, false);
    m_field->setText(u"exa"_s);
    QCOMPARE(m_field->text(), u"exa"_s);
    m_field->addItem(u"http"_s, true);
    QCOMPARE(m_field->text(), u"http"_s);
}

void tst_brwURL::cutAndUndoAreNotCompleted()
{
    m_field->addItem(u"http://example.org/"_s, false);
    m_field->setText(u"http://exaXY"_s);
    m_field->setSelStart(10);
    m_field->setSelLength(2);
    press(Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"XY"_s);
    QCOMPARE(m_field->text(), u"http://exa"_s);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_field->text(), u"http://exaXY"_s);
    m_field->setText(u"http://exaXY"_s);
    m_field->setSelStart(10);
    m_field->setSelLength(2);
    m_field->setSelText({});
    QCOMPARE(m_field->text(), u"http://exa"_s);
}

void tst_brwURL::pasteIsCompleted()
{
    m_field->addItem(u"http://example.org/"_s, false);
    QGuiApplication::clipboard()->setText(u"exam"_s);
    press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(m_field->text(), u"http://example.org/"_s);
    QCOMPARE(m_field->selStart(), 11);
}

void tst_brwURL::pasteBySelTextIsCompleted()
{
    m_field->addItem(u"http://example.org/"_s, false);
    m_field->setSelText(u"exam"_s);
    QCOMPARE(m_field->text(), u"http://example.org/"_s);
    QVERIFY(m_field->hasUnsentEdits());
}

void tst_brwURL::inputMethodCommitIsCompleted()
{
    m_field->addItem(u"http://日本.example/"_s, false);
    QInputMethodEvent commit;
    commit.setCommitString(u"日"_s);
    QApplication::sendEvent(combo(), &commit);
    QCOMPARE(m_field->text(), u"http://日本.example/"_s);
    QCOMPARE(m_field->selStart(), 8);
}

void tst_brwURL::compositionIsNotDisturbed()
{
    m_field->addItem(u"http://日本.example/"_s, false);
    QInputMethodEvent composing(u"に"_s, {});
    QApplication::sendEvent(combo(), &composing);
    QCOMPARE(m_field->text(), QString());
    QVERIFY(m_field->hasUnsentEdits());
    QInputMethodEvent commitAndGoOn(u"ほ"_s, {});
    commitAndGoOn.setCommitString(u"日"_s);
    QApplication::sendEvent(combo(), &commitAndGoOn);
    QCOMPARE(m_field->text(), u"日"_s);
    QInputMethodEvent commit;
    commit.setCommitString(u"本"_s);
    QApplication::sendEvent(combo(), &commit);
    QCOMPARE(m_field->text(), u"http://日本.example/"_s);
    QCOMPARE(m_field->selText(), u".example/"_s);
}

void tst_brwURL::caretStandsAtTheTypedEnd()
{
    m_field->addItem(u"http://example.org/"_s, false);
    type(u"exa"_s);
    QCOMPARE(edit()->cursorPosition(), 10);
    QCOMPARE(m_field->selStart() + m_field->selLength(), 19);
}

void tst_brwURL::arrowsLeaveTheProposal()
{
    m_field->addItem(u"http://example.org/"_s, false);
    type(u"exa"_s);
    press(Qt::Key_Right);
    QCOMPARE(m_field->selStart(), 19);
    QCOMPARE(m_field->selLength(), 0);
    m_field->setText({});
    type(u"exa"_s);
    press(Qt::Key_Left);
    QCOMPARE(m_field->selStart(), 10);
    QCOMPARE(m_field->selLength(), 0);
    m_field->setText({});
    type(u"exa"_s);
    press(Qt::Key_End);
    QCOMPARE(m_field->selStart(), 19);
    QCOMPARE(m_field->selLength(), 0);
}

void tst_brwURL::addItemMovesEqualToTop()
{
    for (const QString &item : {u"a"_s, u"b"_s, u"c"_s, u"a"_s})
        m_field->addItem(item, false);
    QCOMPARE(items(), (QStringList{u"a"_s, u"c"_s, u"b"_s}));
    QCOMPARE(combo()->count(), 3);
    QCOMPARE(combo()->itemText(1), u"c"_s);
}

void tst_brwURL::caseMakesTwoEntries()
{
    m_field->addItem(u"http://a/X"_s, false);
    m_field->addItem(u"http://a/x"_s, false);
    QCOMPARE(items(), (QStringList{u"http://a/x"_s, u"http://a/X"_s}));
}

void tst_brwURL::addItemShowsWithCaretAtEnd()
{
    m_field->addItem(u"http://example.org/"_s, true);
    QCOMPARE(m_field->text(), u"http://example.org/"_s);
    QCOMPARE(m_field->selStart(), 19);
    QCOMPARE(m_field->selLength(), 0);
    m_field->setSelStart(3);
    m_field->addItem(u"http://example.org/"_s, true);
    QCOMPARE(m_field->selStart(), 19);
}

void tst_brwURL::addItemUnshownLeavesTheField()
{
    type(u"mine"_s);
    m_field->setSelStart(1);
    m_field->setSelLength(2);
    m_field->addItem(u"http://example.org/"_s, false);
    m_field->addItem(u"http://example.net/"_s, false);
    m_field->addItem(u"http://example.org/"_s, false);
    QCOMPARE(m_field->text(), u"mine"_s);
    QCOMPARE(m_field->selText(), u"in"_s);
    QVERIFY(m_field->hasUnsentEdits());
}

void tst_brwURL::firstItemDoesNotShow()
{
    m_field->addItem(u"http://example.org/"_s, false);
    QCOMPARE(m_field->text(), QString());
}

void tst_brwURL::removingTheChosenEntryLeavesTheField()
{
    m_field->addItem(u"a"_s, false);
    m_field->addItem(u"b"_s, false);
    combo()->setCurrentIndex(1);
    QCOMPARE(m_field->text(), u"a"_s);
    m_field->setText(u"text"_s);
    m_field->addItem(u"a"_s, false);
    QCOMPARE(m_field->text(), u"text"_s);
    QCOMPARE(combo()->currentIndex(), 0);
    m_field->addItem(u"c"_s, false);
    QCOMPARE(combo()->currentIndex(), 1);
    m_field->clearList();
    QCOMPARE(m_field->text(), u"text"_s);
    QCOMPARE(combo()->currentIndex(), -1);
}

void tst_brwURL::clearListLeavesTheText()
{
    m_field->addItem(u"a"_s, true);
    m_field->clearList();
    QCOMPARE(m_field->listCount(), 0);
    QCOMPARE(combo()->count(), 0);
    QCOMPARE(m_field->text(), u"a"_s);
    QCOMPARE(m_field->listItem(0), QString());
    QCOMPARE(m_field->listItem(-1), QString());
}

void tst_brwURL::saveListWritesEmptyRest()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"list.ini"_s);
    QVERIFY(writeIni(u"Recent"_s, u"Item2"_s, u"old"_s, file));
    m_field->addItem(u"one"_s, false);
    QVERIFY(m_field->saveListTo(u"Recent"_s, file, 3));
    QCOMPARE(readIni(u"Recent"_s, u"Item0"_s, u"none"_s, file), u"one"_s);
    QCOMPARE(readIni(u"Recent"_s, u"Item1"_s, u"none"_s, file), QString());
    QCOMPARE(readIni(u"Recent"_s, u"Item2"_s, u"none"_s, file), QString());
    QCOMPARE(readIni(u"Recent"_s, u"Item3"_s, u"none"_s, file), u"none"_s);
    for (int i = 0; i < 5; ++i)
        m_field->addItem(QString::number(i), false);
    QVERIFY(m_field->saveListTo(u"Recent"_s, file, 3));
    QCOMPARE(readIni(u"Recent"_s, u"Item2"_s, u"none"_s, file), u"2"_s);
    QCOMPARE(readIni(u"Recent"_s, u"Item3"_s, u"none"_s, file), u"none"_s);
}

void tst_brwURL::loadListReverses()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"list.ini"_s);
    const QStringList stored{u"a"_s, QString(), u"b"_s, u"a"_s, u"c"_s};
    for (int i = 0; i < stored.size(); ++i)
        QVERIFY(writeIni(u"Recent"_s, u"Item%1"_s.arg(i), stored.at(i), file));
    m_field->loadList(u"recent"_s, file, 4, false);
    QCOMPARE(items(), (QStringList{u"a"_s, u"b"_s}));
    QCOMPARE(m_field->text(), QString());
}

void tst_brwURL::loadListShowsWhenAsked()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"list.ini"_s);
    QVERIFY(writeIni(u"Recent"_s, u"Item0"_s, u"a"_s, file));
    QVERIFY(writeIni(u"Recent"_s, u"Item1"_s, u"b"_s, file));
    m_field->loadList(u"Recent"_s, file, 10, true);
    QCOMPARE(m_field->text(), u"b"_s);
}

void tst_brwURL::loadOfMissingFileIsEmpty()
{
    m_field->loadList(u"Recent"_s, u"/nowhere/at/all.ini"_s, 10, true);
    QCOMPARE(m_field->listCount(), 0);
}

void tst_brwURL::listsDefaultToTheSettingsFile()
{
    const QTemporaryDir folder;
    const QString before = AppFolder::settingsPath();
    AppFolder::setSettingsPath(folder.filePath(u"Settings.ini"_s));
    m_field->addItem(u"one"_s, false);
    QVERIFY(m_field->saveListTo(u"Recent"_s, {}, 1));
    m_field->clearList();
    m_field->loadList(u"Recent"_s, {}, 1, false);
    AppFolder::setSettingsPath(before);
    QCOMPARE(items(), QStringList{u"one"_s});
    QVERIFY(QFile::exists(folder.filePath(u"Settings.ini"_s)));
}

void tst_brwURL::saveWithoutFolderFails()
{
    const QTemporaryDir folder;
    m_field->addItem(u"one"_s, false);
    QVERIFY(!m_field->saveListTo(u"Recent"_s, folder.filePath(u"missing/list.ini"_s), 3));
    QVERIFY(!QFile::exists(folder.filePath(u"missing"_s)));
}

void tst_brwURL::selectionProperties()
{
    m_field->setText(u"abcdef"_s);
    m_field->setSelStart(2);
    QCOMPARE(m_field->selStart(), 2);
    QCOMPARE(m_field->selLength(), 0);
    m_field->setSelLength(3);
    QCOMPARE(m_field->selStart(), 2);
    QCOMPARE(m_field->selText(), u"cde"_s);
    m_field->setSelText(u"-"_s);
    QCOMPARE(m_field->text(), u"ab-f"_s);
    QCOMPARE(m_field->selStart(), 3);
    QCOMPARE(m_field->selLength(), 0);
}

void tst_brwURL::selectionPropertiesOutOfRange()
{
    m_field->setText(u"abc"_s);
    m_field->setSelStart(99);
    QCOMPARE(m_field->selStart(), 3);
    m_field->setSelStart(-4);
    QCOMPARE(m_field->selStart(), 0);
    m_field->setSelLength(99);
    QCOMPARE(m_field->selText(), u"abc"_s);
    m_field->setSelLength(-1);
    QCOMPARE(m_field->selLength(), 0);
}

void tst_brwURL::keyDownTwicePerKey()
{
    QStringList seen;
    connect(m_field, &AddressBox::keyDown, this, [&](int &code, int &shift) {
        const QString kind = m_field->keyIsReleased() ? u"up"_s : u"down"_s;
        seen.append(u"%1 %2 %3 '%4'"_s.arg(kind).arg(code).arg(shift).arg(m_field->text()));
    });
    connect(m_field, &AddressBox::keyPress, this,
            [&](int &ascii) { seen.append(u"press %1"_s.arg(ascii)); });
    press(Qt::Key_A);
    QCOMPARE(seen, (QStringList{u"down 65 0 ''"_s, u"press 97"_s, u"up 65 0 'a'"_s}));
}

void tst_brwURL::keyCodes_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("shift");
    const auto row = [](const char *name, int key, Qt::KeyboardModifiers modifiers, int code,
                        int shift) {
        QTest::newRow(name) << key << int(modifiers) << code << shift;
    };
    row("Enter", Qt::Key_Return, {}, 13, 0);
    row("keypad Enter", Qt::Key_Enter, Qt::KeypadModifier, 13, 0);
    row("Escape", Qt::Key_Escape, {}, 27, 0);
    row("Backspace", Qt::Key_Backspace, {}, 8, 0);
    row("Delete", Qt::Key_Delete, {}, 46, 0);
    row("Left", Qt::Key_Left, {}, 37, 0);
    row("Up", Qt::Key_Up, {}, 38, 0);
    row("Right with shift", Qt::Key_Right, Qt::ShiftModifier, 39, 1);
    row("Down", Qt::Key_Down, {}, 40, 0);
    row("F1", Qt::Key_F1, {}, 112, 0);
    row("F12", Qt::Key_F12, Qt::ControlModifier, 123, 2);
    row("Q with all", Qt::Key_Q, Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier, 81, 7);
    row("digit", Qt::Key_5, {}, 53, 0);
    row("keypad digit", Qt::Key_5, Qt::KeypadModifier, 101, 0);
    row("slash", Qt::Key_Slash, {}, 191, 0);
    row("colon", Qt::Key_Colon, Qt::ShiftModifier, 186, 1);
    row("a letter without code", 0x0416, {}, 231, 0);
}

void tst_brwURL::keyCodes()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(int, code);
    QFETCH(int, shift);
    QList<std::pair<int, int>> seen;
    connect(m_field, &AddressBox::keyDown, this, [&](int &KeyCode, int &Shift) {
        seen.append({KeyCode, Shift});
    });
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::KeyboardModifiers(modifiers));
        QApplication::sendEvent(combo(), &event);
    }
    QCOMPARE(seen, (QList<std::pair<int, int>>{{code, shift}, {code, shift}}));
}

void tst_brwURL::cancelledKeysDoNothing()
{
    connect(m_field, &AddressBox::keyDown, this, [](int &code, int &) {
        if (code == 'B')
            code = 0;
    });
    connect(m_field, &AddressBox::keyPress, this, [](int &ascii) {
        if (ascii == 'c')
            ascii = 0;
    });
    type(u"abcd"_s);
    QCOMPARE(m_field->text(), u"ad"_s);
}

void tst_brwURL::changedKeysAreThoseKeys()
{
    connect(m_field, &AddressBox::keyDown, this, [this](int &code, int &) {
        if (code == 112 && !m_field->keyIsReleased())
            code = 8;
    });
    connect(m_field, &AddressBox::keyPress, this, [](int &ascii) {
        if (ascii == ' ')
            ascii = '+';
    });
    type(u"a b c"_s);
    QCOMPARE(m_field->text(), u"a+b+c"_s);
    press(Qt::Key_F1);
    QCOMPARE(m_field->text(), u"a+b+"_s);
}

void tst_brwURL::heldEnterIsOnePress()
{
    int presses = 0;
    connect(m_field, &AddressBox::keyDown, this, [&](int &code, int &) {
        if (code == 13 && !m_field->keyIsReleased())
            ++presses;
    });
    int characters = 0;
    connect(m_field, &AddressBox::keyPress, this, [&](int &) { ++characters; });
    for (int i = 0; i < 5; ++i) {
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Return, {}, u"\r"_s, i > 0);
        QApplication::sendEvent(combo(), &down);
        QKeyEvent up(QEvent::KeyRelease, Qt::Key_Return, {}, u"\r"_s, i < 4);
        QApplication::sendEvent(combo(), &up);
    }
    QCOMPARE(presses, 1);
    QCOMPARE(characters, 1);
}

void tst_brwURL::enterIsReportedOnce()
{
    QSignalSpy click(m_field, &AddressBox::clicked);
    int characters = 0;
    connect(m_field, &AddressBox::keyPress, this, [&](int &) { ++characters; });
    m_field->addItem(u"http://example.org/"_s, false);
    type(u"exa"_s);
    characters = 0;
    press(Qt::Key_Return);
    press(Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(characters, 2);
    QCOMPARE(click.count(), 0);
    QCOMPARE(m_field->text(), u"http://example.org/"_s);
    QCOMPARE(m_field->listCount(), 1);
    m_field->setText(u"new text"_s);
    press(Qt::Key_Return);
    QCOMPARE(m_field->listCount(), 1);
}

void tst_brwURL::escapeReachesTheHost()
{
    connect(m_field, &AddressBox::keyDown, this, [this](int &code, int &) {
        if (code == 27 && !m_field->keyIsReleased())
            m_field->setText(u"http://page/"_s);
    });
    type(u"mine"_s);
    QVERIFY(m_field->hasUnsentEdits());
    press(Qt::Key_Escape);
    QCOMPARE(m_field->text(), u"http://page/"_s);
    QVERIFY(!m_field->hasUnsentEdits());
}

void tst_brwURL::menuAcceleratorsWin()
{
    auto *menu = m_menuBar->addMenu(u"&File"_s);
    QStringList ran;
    for (const QString &keys : {u"Ctrl+Ins"_s, u"Shift+Del"_s, u"F4"_s, u"Ctrl+K"_s}) {
        QAction *action = menu->addAction(keys, this, [&ran, keys] { ran.append(keys); });
        action->setShortcut(QKeySequence(keys));
    }
    m_field->setText(u"text"_s);
    m_field->setSelStart(0);
    m_field->setSelLength(2);
    QGuiApplication::clipboard()->setText(u"before"_s);
    press(Qt::Key_Insert, Qt::ControlModifier);
    press(Qt::Key_Delete, Qt::ShiftModifier);
    press(Qt::Key_F4);
    press(Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(ran, (QStringList{u"Ctrl+Ins"_s, u"Shift+Del"_s, u"F4"_s, u"Ctrl+K"_s}));
    QCOMPARE(m_field->text(), u"text"_s);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"before"_s);
    QVERIFY(!combo()->view()->isVisible());
}

void tst_brwURL::wheelDoesNotChoose()
{
    m_field->addItem(u"a"_s, false);
    m_field->addItem(u"b"_s, false);
    QSignalSpy click(m_field, &AddressBox::clicked);
    const QPointF at = edit()->rect().center();
    QWheelEvent wheel(at, edit()->mapToGlobal(at), {}, {0, -120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(edit(), &wheel);
    QCOMPARE(click.count(), 0);
    QCOMPARE(m_field->text(), QString());
}

void tst_brwURL::altDownDropsAndEnterChoosesOnce()
{
    m_field->addItem(u"http://one/"_s, false);
    m_field->addItem(u"http://two/"_s, false);
    QSignalSpy click(m_field, &AddressBox::clicked);
    QSignalSpy lost(m_field, &AddressBox::lostFocus);
    QList<int> codes;
    press(Qt::Key_Down, Qt::AltModifier);
    QTRY_VERIFY(combo()->view()->isVisible());
    connect(m_field, &AddressBox::keyDown, this, [&](int &code, int &) { codes.append(code); });
    QWindow *list = combo()->view()->window()->windowHandle();
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyPress(list, Qt::Key_Return);
    QTRY_VERIFY(!combo()->view()->isVisible());
    QTest::keyRelease(m_window->windowHandle(), Qt::Key_Return);
    QCOMPARE(click.count(), 1);
    QCOMPARE(m_field->text(), u"http://one/"_s);
    QVERIFY(!codes.contains(13));
    QVERIFY(!m_field->hasUnsentEdits());
    QTRY_COMPARE(QApplication::focusWidget(), combo());
    QCOMPARE(lost.count(), 0);
}

void tst_brwURL::mouseChoosesOnce()
{
    m_field->addItem(u"http://one/"_s, false);
    m_field->addItem(u"http://two/"_s, false);
    QSignalSpy click(m_field, &AddressBox::clicked);
    for (int times = 1; times <= 2; ++times) {
        press(Qt::Key_Down, Qt::AltModifier);
        QTRY_VERIFY(combo()->view()->isVisible());
        QAbstractItemView *view = combo()->view();
        const QPoint at = view->visualRect(view->model()->index(1, 0)).center();
        // The list does not take the release of the click that dropped it for a choice.
        QTest::mouseMove(view->viewport(), at);
        QTRY_VERIFY([&] {
            QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at);
            return !view->isVisible();
        }());
        QCOMPARE(click.count(), times);
        QCOMPARE(m_field->text(), u"http://one/"_s);
    }
}

void tst_brwURL::escapeClosesTheListFirst()
{
    m_field->addItem(u"http://one/"_s, false);
    type(u"mine"_s);
    press(Qt::Key_Down, Qt::AltModifier);
    QTRY_VERIFY(combo()->view()->isVisible());
    QList<int> codes;
    connect(m_field, &AddressBox::keyDown, this, [&](int &code, int &) { codes.append(code); });
    QTest::keyClick(combo()->view()->window()->windowHandle(), Qt::Key_Escape);
    QTRY_VERIFY(!combo()->view()->isVisible());
    QVERIFY(!codes.contains(27));
    QCOMPARE(m_field->text(), u"mine"_s);
    press(Qt::Key_Escape);
    QVERIFY(codes.contains(27));
}

void tst_brwURL::typingInTheDroppedListTypes()
{
    m_field->addItem(u"http://one/"_s, false);
    type(u"o"_s);
    press(Qt::Key_Down, Qt::AltModifier);
    QTRY_VERIFY(combo()->view()->isVisible());
    QCOMPARE(m_field->selText(), u"ne/"_s);
    QTest::keyClick(combo()->view()->window()->windowHandle(), 'n');
    QTRY_VERIFY(!combo()->view()->isVisible());
    QCOMPARE(m_field->text(), u"http://one/"_s);
    QCOMPARE(m_field->selText(), u"e/"_s);
}

void tst_brwURL::completedTextIsNotChosen()
{
    m_field->addItem(u"http://one/"_s, false);
    m_field->addItem(u"http://two/"_s, false);
    QSignalSpy click(m_field, &AddressBox::clicked);
    type(u"o"_s);
    QCOMPARE(m_field->text(), u"http://one/"_s);
    press(Qt::Key_Down, Qt::AltModifier);
    QTRY_VERIFY(combo()->view()->isVisible());
    QCOMPARE(m_field->selText(), u"ne/"_s);
    QTest::keyClick(combo()->view()->window()->windowHandle(), Qt::Key_Escape);
    QTRY_VERIFY(!combo()->view()->isVisible());
    press(Qt::Key_Delete);
    type(u"ne/"_s);
    m_other->setFocus();
    QTRY_COMPARE(QApplication::focusWidget(), m_other);
    QCOMPARE(click.count(), 0);
}

void tst_brwURL::emptyListDoesNotDrop()
{
    press(Qt::Key_Down, Qt::AltModifier);
    QVERIFY(!combo()->view()->isVisible());
}

void tst_brwURL::listGrowsWhileDropped()
{
    for (const QString &item : {u"a"_s, u"b"_s, u"c"_s})
        m_field->addItem(item, false);
    press(Qt::Key_Down, Qt::AltModifier);
    QAbstractItemView *view = combo()->view();
    QTRY_VERIFY(view->isVisible());
    view->setCurrentIndex(view->model()->index(1, 0));
    m_field->addItem(u"d"_s, false);
    m_field->addItem(u"a"_s, false);
    QCOMPARE(view->currentIndex().data().toString(), u"b"_s);
    QSignalSpy click(m_field, &AddressBox::clicked);
    QTest::keyClick(view->window()->windowHandle(), Qt::Key_Return);
    QTRY_COMPARE(click.count(), 1);
    QCOMPARE(m_field->text(), u"b"_s);
}

void tst_brwURL::lostFocusPutsCaretAtEnd()
{
    m_field->addItem(u"http://example.org/"_s, false);
    QSignalSpy lost(m_field, &AddressBox::lostFocus);
    QSignalSpy got(m_field, &AddressBox::gotFocus);
    type(u"exa"_s);
    QVERIFY(m_field->selLength() > 0);
    m_other->setFocus();
    QCOMPARE(m_field->selLength(), 0);
    QCOMPARE(m_field->selStart(), 19);
    QCOMPARE(lost.count(), 1);
    m_field->setFocus();
    QCOMPARE(got.count(), 1);
}

void tst_brwURL::openingAMenuIsNoLoss()
{
    QSignalSpy lost(m_field, &AddressBox::lostFocus);
    QSignalSpy got(m_field, &AddressBox::gotFocus);
    m_field->setText(u"some text"_s);
    m_field->setSelStart(2);
    m_field->setSelLength(3);
    QMenu menu;
    menu.addAction(u"Copy"_s);
    menu.popup(m_window->mapToGlobal(QPoint(10, 10)));
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    QCOMPARE(m_field->selText(), u"me "_s);
    menu.close();
    QTRY_COMPARE(QApplication::focusWidget(), combo());
    QCOMPARE(m_field->selText(), u"me "_s);
    QCOMPARE(lost.count(), 0);
    QCOMPARE(got.count(), 0);
}

void tst_brwURL::menuBarIsNoLoss()
{
    m_menuBar->addMenu(u"&File"_s)->addAction(u"New"_s);
    QSignalSpy lost(m_field, &AddressBox::lostFocus);
    m_field->setText(u"some text"_s);
    m_field->setSelStart(2);
    m_field->setSelLength(3);
    m_menuBar->setFocus(Qt::MenuBarFocusReason);
    QCOMPARE(m_field->selText(), u"me "_s);
    m_field->setFocus(Qt::MenuBarFocusReason);
    QCOMPARE(m_field->selText(), u"me "_s);
    QCOMPARE(lost.count(), 0);
}

void tst_brwURL::focusMovedByAMenuIsALoss()
{
    QSignalSpy lost(m_field, &AddressBox::lostFocus);
    m_field->setText(u"some text"_s);
    m_field->setSelStart(2);
    m_menuBar->setFocus(Qt::MenuBarFocusReason);
    QCOMPARE(lost.count(), 0);
    m_other->setFocus();
    QCOMPARE(lost.count(), 1);
    QCOMPARE(m_field->selStart(), 9);
}

void tst_brwURL::firstClickSelectsAll()
{
    m_field->setText(u"http://example.org/"_s);
    m_other->setFocus();
    QTest::mouseClick(edit(), Qt::LeftButton, {}, QPoint(20, edit()->height() / 2));
    QCOMPARE(QApplication::focusWidget(), combo());
    QCOMPARE(m_field->selText(), u"http://example.org/"_s);
    QTest::mouseClick(edit(), Qt::LeftButton, {}, QPoint(40, edit()->height() / 2));
    QCOMPARE(m_field->selLength(), 0);
}

void tst_brwURL::unsentEdits()
{
    QVERIFY(!m_field->hasUnsentEdits());
    type(u"a"_s);
    QVERIFY(m_field->hasUnsentEdits());
    m_field->addItem(u"b"_s, false);
    QVERIFY(m_field->hasUnsentEdits());
    press(Qt::Key_Return);
    QVERIFY(!m_field->hasUnsentEdits());
    press(Qt::Key_Backspace);
    QVERIFY(m_field->hasUnsentEdits());
    m_other->setFocus();
    QVERIFY(!m_field->hasUnsentEdits());
    m_field->setFocus();
    QVERIFY(m_field->hasUnsentEdits());
    m_field->setText(u"x"_s);
    QVERIFY(!m_field->hasUnsentEdits());
}

void tst_brwURL::pastedLineBreaksJoin()
{
    QGuiApplication::clipboard()->setText(u"http://example.org/a \r\n  /b\n/c\u2028/d"_s);
    press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(m_field->text(), u"http://example.org/a/b/c/d"_s);
    QCOMPARE(m_field->selStart(), 26);
    m_field->setText(u"ab"_s);
    m_field->setSelStart(1);
    QGuiApplication::clipboard()->setText(u"\n1\n2\n"_s);
    press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(m_field->text(), u"a12b"_s);
    QCOMPARE(m_field->selStart(), 3);
}

void tst_brwURL::lineBreaksOfAQueryAreBlanks()
{
    m_field->setLineBreakText(u" "_s);
    QGuiApplication::clipboard()->setText(u"two \n words"_s);
    press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(m_field->text(), u"two words"_s);
}

void tst_brwURL::controlCharactersGo()
{
    m_field->setSelText(u"a"_s + QChar(u'\0') + u"b\tc\x1b\x7f"_s);
    QCOMPARE(m_field->text(), u"ab c"_s);
}

void tst_brwURL::millionCharacters()
{
    m_field->addItem(u"http://example.org/"_s, false);
    const QString text(1'000'000, u'x');
    QGuiApplication::clipboard()->setText(text);
    press(Qt::Key_V, Qt::ControlModifier);
    QVERIFY(!m_field->text().isEmpty());
    QVERIFY(text.startsWith(m_field->text()));
    m_field->setText(u"http://example.org/"_s + text);
    QCOMPARE(m_field->text().size(), 1'000'019);
    m_field->addItem(text, true);
    QCOMPARE(m_field->text(), text);
    press(Qt::Key_End);
    press(Qt::Key_Backspace);
    QVERIFY(m_field->text().size() < text.size());
}

void tst_brwURL::rightToLeftText()
{
    m_field->addItem(u"אבגד"_s, false);
    m_field->setSelText(u"אב"_s);
    QCOMPARE(m_field->text(), u"אבגד"_s);
    QCOMPARE(m_field->selStart(), 2);
    QCOMPARE(m_field->selText(), u"גד"_s);
    m_window->grab();
    m_other->setFocus();
    m_window->grab();
    QCOMPARE(m_field->selStart(), 4);
}

void tst_brwURL::hundredThousandEntries()
{
    constexpr int many = 100'000;
    for (int i = 0; i < many; ++i)
        m_field->addItem(u"http://host%1.example/"_s.arg(i), false);
    QCOMPARE(m_field->listCount(), many);
    type(u"host4711."_s);
    QCOMPARE(m_field->text(), u"http://host4711.example/"_s);
    press(Qt::Key_Down, Qt::AltModifier);
    QTRY_VERIFY(combo()->view()->isVisible());
    QCOMPARE(combo()->view()->currentIndex().row(), many - 1 - 4711);
    combo()->hidePopup();
    m_field->addItem(u"http://host0.example/"_s, false);
    QCOMPARE(m_field->listCount(), many);
    QCOMPARE(m_field->listItem(0), u"http://host0.example/"_s);
}

void tst_brwURL::names()
{
    QCOMPARE(edit()->accessibleName(), u"Address"_s);
    QVERIFY(combo());
    QCOMPARE(combo()->insertPolicy(), QComboBox::NoInsert);
    QVERIFY(!combo()->completer());
    m_field->setFieldName(u"Search Query:"_s);
    QCOMPARE(edit()->accessibleName(), u"Search Query:"_s);
}

QTEST_MAIN(tst_brwURL)
#include "tst_addressbox.moc"
