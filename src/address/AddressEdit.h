#pragma once

#include <QLineEdit>

class AddressBox;

/// The line of text in an address bar. It tells its owner of keys and edits, and why the text was
/// edited; deciding is the owner's.
class AddressEdit : public QLineEdit {
    Q_OBJECT

public:
    AddressEdit(AddressBox &owner, QWidget *parent);

    /// Does with a key what a line of text does with it.
    void applyKey(QKeyEvent *event);
    /// Replaces the selection as a paste of the user's.
    void insertAsUser(const QString &text);
    /// True while an input method is composing.
    bool composing() const { return m_composing; }
    /// Lets the coming release of the mouse select everything: it gave the field the focus.
    void selectAllOnRelease(bool on) { m_selectAllOnRelease = on; }

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool isInsertion(const QKeyEvent &event) const;
    bool showsStart() const;

    AddressBox &m_owner;
    bool m_inserting = false;
    bool m_composing = false;
    bool m_selectAllOnRelease = false;
};
