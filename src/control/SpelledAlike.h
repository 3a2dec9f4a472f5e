#pragma once

class QUrl;

/// Whether two addresses are the same but for how they are spelled: the engine gives a path to
/// those that have none, takes steps back, and escapes other signs than the programs that links and
/// files come from.
bool areSpelledAlike(const QUrl &one, const QUrl &other);
