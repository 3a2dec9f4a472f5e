#pragma once

#include "WriteResult.h"

#include <QStringList>

/// The list of blocked popup addresses as it is in force: what the file AppData/PopupURLs.txt held
/// when it was last loaded, one pattern of the Like operator per line. Patterns are compared with
/// whole addresses, letter case counts, and blanks are part of a pattern.

/// The file itself.
QString popupURLsFile();

/// Reads the file anew. Lines end with CR LF or LF. A file that is missing or cannot be read gives
/// one empty element, and a file that ends with a line end gives an empty last one.
void loadBlockedList();

/// The lines as loaded, in order, empty ones included. No elements before the first load.
const QStringList &blockedList();

/// Whether any address could match.
bool hasPopupPatterns();

/// False, and `cancel` set, when `url` matches a pattern; empty elements match nothing, nor do
/// patterns with an error.
bool isPopupAllowed(const QString &url, bool &cancel);

/// Replaces the file by the entries that are not empty, each ended by CR LF, in the file's own
/// encoding where that holds them. Where it cannot be written the file is as it was. The list in
/// force changes with the next load.
WriteResult saveBlockedList(const QStringList &entries);
