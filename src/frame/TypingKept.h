#pragma once

#include <QPointer>

class QLineEdit;
class QWidget;

/// While it lives, windows may come to the front or go, which gives them the keyboard. Where the
/// user types in a field around the windows, the field has it again in the end, with the caret and
/// the selection where they were.
class TypingKept {
public:
    /// `windows` is what holds the windows; fields inside are theirs.
    explicit TypingKept(const QWidget &windows);
    ~TypingKept();
    Q_DISABLE_COPY_MOVE(TypingKept)

private:
    QPointer<QWidget> m_focus;
    QPointer<QLineEdit> m_field;
    int m_anchor = 0;
    int m_caret = 0;
};
