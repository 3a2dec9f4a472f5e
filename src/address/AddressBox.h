#pragma once

#include "WriteResult.h"

#include <QList>
#include <QPointer>
#include <QSet>
#include <QWidget>
#include <functional>

class AddressCombo;
class AddressEdit;
class AddressList;
class AddressListModel;
class AddressSuggestions;
class QKeyEvent;
struct AddressSuggestion;

/// An editable field with a drop-down list of earlier entries, completed while the user types:
/// the address bar of the frame and the query box of the search bar. It edits, completes and
/// keeps its list; what an entry means is its host's business.
class AddressBox : public QWidget {
    Q_OBJECT

public:
    explicit AddressBox(QWidget *parent = nullptr);
    ~AddressBox() override;

    /// What the field shows, a proposed completion included.
    QString text() const;
    /// Replaces the text; it counts as the program's, is never completed, and ends the user's
    /// edits. The caret goes to the start.
    void setText(const QString &text);
    /// The start of the selection, or the caret where nothing is selected; UTF-16 units.
    int selStart() const;
    /// Places the caret, selecting nothing. Values outside the text are brought inside.
    void setSelStart(int position);
    int selLength() const;
    /// Selects from `selStart` on.
    void setSelLength(int length);
    QString selText() const;
    /// Replaces the selection (or inserts at the caret) as the user's own paste would.
    void setSelText(const QString &text);

    /// Puts `item` at the top of the list, where an equal older entry is removed (case counts);
    /// shows it with the caret at its end when `showText`.
    void addItem(const QString &item, bool showText);
    /// Empties the list; the text stays.
    void clearList();
    /// Adds the values of Item0 to item(count - 1), each at the top: the list comes out in
    /// reverse. An empty `iniFile` is the settings file.
    void loadList(const QString &section, const QString &iniFile, int count, bool selectNew);
    /// Writes the first `count` entries, empty where the list is shorter, in one replacement of
    /// the file.
    WriteResult saveListTo(const QString &section, const QString &iniFile, int count);
    int listCount() const;
    /// Entry `i`, 0 the most recent; empty outside the list.
    QString listItem(int i) const;

    /// True while the user works in the field and its text holds edits of the user that were
    /// neither sent (Enter, a choice from the list) nor given up (Escape, a new text), also while
    /// an input method is composing. A page that finishes then must not replace the text.
    bool hasUnsentEdits() const;
    /// True while the user works in the field and the next key would replace all of its text, if
    /// there is any.
    bool isAllSelected() const;
    void selectAll();
    /// True in a `KeyDown` that tells of a release: act on presses only.
    bool keyIsReleased() const { return m_keyIsReleased; }

    /// What is proposed below the field for what the user typed into it, besides its own list; none
    /// without. Chosen by the arrow keys, which put the address into the field, or by a click.
    using Suggester = std::function<QList<AddressSuggestion>(const QString &typed)>;
    void setSuggester(const Suggester &suggester) { m_suggester = suggester; }

    /// The field's accessible name; "Address" until set.
    void setFieldName(const QString &name);
    /// What replaces line breaks in text put in: nothing (an address broken over lines joins), or
    /// a blank where the text is words.
    void setLineBreakText(const QString &text) { m_lineBreakText = text; }

signals:
    /// An entry was chosen from the dropped list, or a page that was proposed; the text is its
    /// address.
    void clicked();
    /// A key went down, and again when it comes up. Classic virtual key codes; shift holds 1 for
    /// shift, 2 for control, 4 for alt. 0 in keyCode cancels the key. A held Enter is one press.
    void keyDown(int &keyCode, int &shift);
    /// A key that stands for a character; 0 cancels it, another value replaces it.
    void keyPress(int &keyAscii);
    /// The field is what the user works in from now on; opening a menu, a drop-down or another
    /// window does not end that.
    void gotFocus();
    void lostFocus();

private:
    friend class AddressEdit;
    friend class AddressCombo;

    void keyPressed(QKeyEvent *event);
    void keyReleased(QKeyEvent *event);
    void edited(bool inserted);
    void chosen(int row);
    void focusEntered();
    void focusLeft();
    void watchFocus(QWidget *now);
    bool offerKey(QKeyEvent *event, int &code);
    void pressedCharacter(QKeyEvent &event);
    void applyKey(QKeyEvent &event);
    int rowOfText() const;
    void complete();
    void clean();
    void replaceText(const QString &text);
    void suggest(const QString &typed);
    void hideSuggestions();
    bool suggestionKey(const QKeyEvent &event);
    void showSuggested(const QString &address);

    AddressList *m_list;
    AddressListModel *m_model;
    AddressCombo *m_combo;
    AddressEdit *m_edit;
    Suggester m_suggester;
    /// Made with the first of them; its window's.
    QPointer<AddressSuggestions> m_suggestions;
    /// What the user typed, which the proposals are for.
    QString m_typed;
    QSet<int> m_pressed;
    QString m_lineBreakText;
    // A text of the program's that is too long for the field, which shows its beginning.
    QString m_exactText;
    bool m_deleting = false;
    bool m_completing = false;
    bool m_keyIsReleased = false;
    bool m_unsent = false;
    bool m_focused = false;
};
