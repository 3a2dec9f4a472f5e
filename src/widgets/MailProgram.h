#pragma once

class QString;

/// Hands a mail address ("mailto:") that the user typed to the desktop's mail program. False when
/// `text` is none, and when the desktop has no such program. Never for what a page or a file asks.
bool openInMailProgram(const QString &text);
