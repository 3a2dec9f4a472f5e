#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QDropEvent;
class QLineEdit;
class QMimeData;
class QUrl;

/// The first file that is dragged; empty when none is.
QString firstDraggedFile(const QMimeData &data);

/// True for a file name that ends in ".orp", in any letter case.
bool isProfileName(const QString &file);

/// The first that is dragged is a profile file, which is the frame's wherever it is dropped.
bool isProfileDragged(const QMimeData &data);

/// The first that is dragged is a folder, which nothing opens.
bool isFolderDragged(const QMimeData &data);

/// The first address that is dragged is a folder, a device, a pipe, a script, a mail address or
/// another thing that no window opens.
bool isUnopenableDragged(const QMimeData &data);

/// What of it a page may have: nothing in this machine but files, as it would read all of a folder,
/// unasked, and wait for what nobody writes into a pipe.
QList<QUrl> givableUrls(const QMimeData &data);

/// Files and web addresses that are dragged, in encoded form, for windows to open. Folders, devices
/// and pipes are left out; nothing at all where the first one is a profile file, or is left out
/// itself.
QStringList draggedAddresses(const QMimeData &data);

/// The same of what comes from a page of this program: of the web alone. The engine makes a file of
/// a picture that is dragged, in which the page would write under an address of the user's own; the
/// picture's address is taken instead.
QStringList pageAddressesDragged(const QMimeData &data);

/// Those of an event, wherever it comes from.
QStringList draggedAddresses(const QDropEvent &event);

/// What the page that the first of them is dragged from calls it, in one line; empty where it says
/// nothing.
QString draggedTitle(const QMimeData &data);

/// Accepts a drag or a drop as a copy, or a link where the source allows no copy: what is dragged
/// stays where it is.
void acceptAsCopy(QDropEvent &event);

/// Has a field leave dragged files to the widgets around it, where it would put their names into
/// its text.
void leaveFilesToTheFrame(QLineEdit &field);
