#pragma once

#include <QByteArray>
#include <QString>

/// Internet shortcut files: INI files whose section "InternetShortcut" holds the address as "URL".
namespace InternetShortcut {
/// The address in the file, cut to 999 characters like every value of an INI file; empty where
/// the file, the section or the key is missing, or the file is too large to be a shortcut. Known to
/// be a plain file, of `size` bytes when it was looked at: thousands of files are read, and each
/// further look at one costs as much as opening it.
QString urlOfPlainFile(const QString &file, qint64 size);

/// The name a shortcut is shown by: its file name without the last four characters.
QString caption(const QString &fileName);

/// The bytes of a shortcut to `url`. `title` is for those whose file name cannot be their title.
QByteArray bytes(const QString &url, const QString &title = {});

struct Contents {
    /// In full length.
    QString url;
    /// Empty for most: they are called what their file is called.
    QString title;
    /// When the file was last changed, seconds since 1970.
    qint64 date = 0;
};

/// All that is in the file; without an address where it is no shortcut.
Contents contents(const QString &file);
}
