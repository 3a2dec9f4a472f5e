#pragma once

class QString;
class QUrl;

/// Puts `text`, quoted from the page at `page`, as markup where the caret of the source window is
/// that was opened last, or into a new one.
void quoteInSource(const QString &text, const QUrl &page, bool isPrivate);
