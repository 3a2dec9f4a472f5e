#include "AddressBox.h"
#include "AddressCombo.h"
#include "AddressEdit.h"
#include "AddressList.h"
#include "AddressListModel.h"
#include "AddressSuggestions.h"
#include "AppFolder.h"
#include "IniStore.h"
#include "KeyCodes.h"
#include "ShownAddress.h"
#include "TypedText.h"
#include "Yield.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenuBar>
#include <QPointer>
#include <QScopedValueRollback>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr auto defaultScheme = "http://"_L1;

QString settingsOr(const QString &file)
{
    return file.isEmpty() ? AppFolder::settingsPath() : file;
}

QString itemKey(int i)
{
    return u"Item"_s + QString::number(i);
}
}

AddressBox::AddressBox(QWidget *parent)
    : QWidget(parent)
    , m_list(new AddressList)
    , m_model(new AddressListModel(*m_list, this))
    , m_combo(new AddressCombo(*this))
    , m_edit(m_combo->edit())
{
    m_combo->setObjectName(u"cboAddress"_s);
    m_combo->setModel(m_model);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_combo);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFocusProxy(m_combo);
    setFieldName(u"Address"_s);
    connect(m_combo, &QComboBox::activated, this, &AddressBox::chosen);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget *, QWidget *now) { watchFocus(now); });
}

AddressBox::~AddressBox()
{
    delete m_suggestions;
    delete m_combo;
    delete m_model;
    delete m_list;
}

void AddressBox::setFieldName(const QString &name)
{
    m_combo->setAccessibleName(name);
    m_edit->setAccessibleName(name);
}

QString AddressBox::text() const
{
    return m_exactText.isEmpty() ? m_edit->text() : m_exactText;
}

void AddressBox::setText(const QString &text)
{
    m_unsent = false;
    hideSuggestions();
    const QString shown = editableAddress(text);
    if (this->text() == text && m_edit->text() == shown.left(m_edit->maxLength()))
        return;
    m_exactText = shown.size() > m_edit->maxLength() || shown != text ? text : QString();
    m_edit->setText(shown);
    m_edit->setCursorPosition(0);
}

int AddressBox::selStart() const
{
    return m_edit->hasSelectedText() ? m_edit->selectionStart() : m_edit->cursorPosition();
}

void AddressBox::setSelStart(int position)
{
    const int inside = std::clamp(position, 0, static_cast<int>(m_edit->text().size()));
    m_edit->deselect();
    m_edit->setCursorPosition(inside);
}

int AddressBox::selLength() const
{
    return m_edit->selectionLength();
}

void AddressBox::setSelLength(int length)
{
    const int start = selStart();
    const int rest = static_cast<int>(m_edit->text().size()) - start;
    m_edit->setSelection(start, std::clamp(length, 0, rest));
}

QString AddressBox::selText() const
{
    return m_edit->selectedText();
}

void AddressBox::setSelText(const QString &text)
{
    m_edit->insertAsUser(text);
}

void AddressBox::addItem(const QString &item, bool showText)
{
    m_model->putOnTop(item);
    if (!showText)
        return;
    setText(item);
    m_edit->end(false);
}

void AddressBox::clearList()
{
    m_model->clear();
}

void AddressBox::loadList(const QString &section, const QString &iniFile, int count, bool selectNew)
{
    QStringList keys;
    for (int i = 0; i < count; ++i)
        keys.append(itemKey(i));
    const QPointer<AddressBox> self(this);
    SlicedLoop loop;
    const QStringList values = readIniValues(section, keys, settingsOr(iniFile));
    for (const QString &value : values) {
        if (!value.isEmpty())
            addItem(value, selectNew);
        if (loop.yieldWhenDue() && !self)
            return;
    }
}

WriteResult AddressBox::saveListTo(const QString &section, const QString &iniFile, int count)
{
    QList<IniEntry> entries;
    for (int i = count - 1; i >= 0; --i)
        entries.append({section, itemKey(i), listItem(i)});
    return writeIniEntries(entries, settingsOr(iniFile));
}

int AddressBox::listCount() const
{
    return m_list->count();
}

QString AddressBox::listItem(int i) const
{
    return i >= 0 && i < m_list->count() ? m_list->at(i) : QString();
}

int AddressBox::rowOfText() const
{
    return m_list->find(text());
}

bool AddressBox::hasUnsentEdits() const
{
    // A drop works in a field that has the keyboard only once its window is the active one.
    const bool isWorkedIn = m_focused || isAncestorOf(window()->focusWidget());
    return isWorkedIn && (m_unsent || m_edit->composing());
}

bool AddressBox::isAllSelected() const
{
    return m_focused && m_edit->selectionLength() == m_edit->text().size();
}

void AddressBox::selectAll()
{
    m_edit->selectAll();
}

// Tells the host of a key; false when the host cancelled it. `code` is what the host left.
bool AddressBox::offerKey(QKeyEvent *event, int &code)
{
    int shift = KeyCodes::shiftOf(event->modifiers());
    emit keyDown(code, shift);
    return code != 0;
}

void AddressBox::keyPressed(QKeyEvent *event)
{
    event->accept();
    const int code = KeyCodes::codeOf(*event);
    if ((code == KeyCodes::Enter && event->isAutoRepeat()) || suggestionKey(*event))
        return;
    m_pressed.insert(event->key());
    m_deleting = code == KeyCodes::Delete || code == KeyCodes::Backspace;
    if (code == KeyCodes::Enter || code == KeyCodes::Escape)
        m_unsent = false;
    int left = code;
    if (!offerKey(event, left))
        return;
    const QString text = event->text();
    QKeyEvent changed(event->type(), left == code ? event->key() : KeyCodes::keyOf(left),
                      event->modifiers(), left == code ? text : QString());
    pressedCharacter(left == code ? *event : changed);
}

void AddressBox::pressedCharacter(QKeyEvent &event)
{
    const bool alt =
        event.modifiers() & Qt::AltModifier && !(event.modifiers() & Qt::ControlModifier);
    const QList<uint> characters = event.text().toUcs4();
    if (characters.size() != 1 || alt || event.key() == Qt::Key_Delete) {
        applyKey(event);
        return;
    }
    const int ascii = static_cast<int>(characters.first());
    int left = ascii;
    emit keyPress(left);
    if (left == 0)
        return;
    if (left == ascii) {
        applyKey(event);
        return;
    }
    const char32_t replaced = static_cast<char32_t>(left);
    QKeyEvent other(event.type(), left < ' ' ? KeyCodes::keyOf(left) : Qt::Key_unknown,
                    Qt::NoModifier, QString::fromUcs4(&replaced, 1));
    applyKey(other);
}

// What the field itself does with a key: Enter and Escape are the host's alone.
void AddressBox::applyKey(QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return;
    case Qt::Key_Up:
    case Qt::Key_Down:
        m_combo->showPopup();
        return;
    default:
        m_edit->applyKey(&event);
    }
}

// A release is told of only where the press was: not that of the key that chose from the dropped
// list, or of one that was down already when the field got the focus.
void AddressBox::keyReleased(QKeyEvent *event)
{
    event->accept();
    if (event->isAutoRepeat() || !m_pressed.remove(event->key()))
        return;
    int code = KeyCodes::codeOf(*event);
    m_keyIsReleased = true;
    offerKey(event, code);
    m_keyIsReleased = false;
}

void AddressBox::edited(bool inserted)
{
    m_exactText.clear();
    if (m_completing)
        return;
    m_unsent = true;
    if (inserted)
        clean();
    const QString typed = m_edit->text();
    if (inserted)
        complete();
    suggest(typed);
}

// Text put in has no line breaks (an address broken over lines joins, blanks at the breaks
// included) and no control characters.
void AddressBox::clean()
{
    const QString text = m_edit->text();
    const int caret = m_edit->cursorPosition();
    const QString before = TypedText::clean(text.left(caret), m_lineBreakText);
    const QString after = TypedText::clean(text.mid(caret), m_lineBreakText);
    if (before.size() + after.size() == text.size() && before + after == text)
        return;
    const QScopedValueRollback guard(m_completing, true);
    replaceText(before + after);
    m_edit->setCursorPosition(static_cast<int>(before.size()));
}

void AddressBox::complete()
{
    if (m_deleting || m_completing)
        return;
    const QScopedValueRollback guard(m_completing, true);
    int caret = selStart();
    const QString typed = m_edit->text();
    if (typed.isEmpty())
        return;
    QString entry = m_list->completion(typed);
    if (entry.isEmpty()) {
        entry = m_list->completion(typed, defaultScheme);
        caret += static_cast<int>(defaultScheme.size());
    }
    // One that is shown otherwise than it is would be taken for another.
    if (entry.isEmpty() || entry.size() > m_edit->maxLength() || editableAddress(entry) != entry)
        return;
    replaceText(entry);
    // From the end back to the caret, so that what was typed stays in view.
    const int length = static_cast<int>(m_edit->text().size());
    m_edit->setSelection(length, std::min(caret, length) - length);
}

// As an edit, so that it can be undone.
void AddressBox::replaceText(const QString &text)
{
    if (m_edit->text() == text)
        return;
    m_edit->selectAll();
    m_edit->insert(text);
}

void AddressBox::chosen(int row)
{
    setText(listItem(row));
    emit clicked();
}

void AddressBox::focusEntered()
{
    if (m_focused)
        return;
    m_focused = true;
    emit gotFocus();
}

void AddressBox::focusLeft()
{
    m_pressed.clear();
    if (!m_focused)
        return;
    m_focused = false;
    hideSuggestions();
    m_edit->end(false);
    emit lostFocus();
}

// The focus can leave while a menu or another window has it: it then comes to another control of
// this window without having been here in between.
void AddressBox::watchFocus(QWidget *now)
{
    if (!m_focused || !now || now->window() != window() || now == m_combo || isAncestorOf(now)
        || qobject_cast<QMenuBar *>(now))
        return;
    focusLeft();
}
