#pragma once

#include <QStringView>

class QTextCursor;
class QTextDocument;

/// Text of a QTextDocument exactly as it is. A document keeps three characters for itself (U+2029,
/// U+FDD0 and U+FDD1 are block and frame marks); text that holds them has a U+FFFD in their place,
/// whose format says what it stands for. A line break is a line feed here.
namespace RawDocument {
/// Replaces the cursor's selection.
void insert(QTextCursor &cursor, QStringView text);
QString read(const QTextDocument *document, int from, int length);
}
