#pragma once

#include <QList>

class QWidget;

/// The application's loaded forms, in the order in which they were loaded, or their user has put
/// them: the frame, browser and source windows, dialogs. A form's name is its objectName
/// ("BrowserWindow").
namespace Forms {
/// Called by a form as it loads; it leaves the collection by itself when it is destroyed.
void add(QWidget *form);
/// Takes a form out that is unloaded but not destroyed yet.
void remove(QWidget *form);
/// A copy: safe to walk while forms close.
QList<QWidget *> all();
/// The forms of one name, in that order.
QList<QWidget *> named(const char *name);
/// Puts those of `forms` that are loaded in that order; all others stay where they are.
void arrange(const QList<QWidget *> &forms);
}
