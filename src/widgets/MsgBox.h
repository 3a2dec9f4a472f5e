#pragma once

#include <QString>
#include <functional>

class QWidget;

/// Plain message boxes with the program's title unless another is given. They are answered by
/// `done` later, never by a nested event loop, so they may be asked for from anywhere.
namespace MsgBox {
enum class Answer { No, Yes };

/// Yes/No with the question icon. `owner` going away counts as No.
void ask(QWidget *owner, const QString &text, const QString &title,
         const std::function<void(Answer)> &done);

/// The same where the user may be at something else when it comes: what he goes on typing does not
/// answer it.
void askLate(QWidget *owner, const QString &text, const std::function<void(Answer)> &done);

/// The same, waiting: for the few places where the caller must know before it returns (the exit
/// question). Never called inside an engine callback.
Answer askAndWait(QWidget *owner, const QString &text, const QString &title = {});

/// Information icon, OK.
void inform(QWidget *owner, const QString &text);

/// No icon, OK. `more` stands below the text.
void tell(QWidget *owner, const QString &text, const QString &more = {});
}
