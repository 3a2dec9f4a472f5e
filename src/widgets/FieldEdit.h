#pragma once

class QLineEdit;
class QWidget;

/// Commands of an Edit menu in a line of text that has the focus in the menu's window.
namespace FieldEdit {
/// The line that is the window's focus widget, or within a control that has the focus in its
/// place; null for anything else. An open menu leaves it as it is.
QLineEdit *focused(const QWidget &window);
/// Both do nothing in a line that cannot be written in.
void cut(QLineEdit &field);
void paste(QLineEdit &field);
}
