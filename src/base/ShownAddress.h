#pragma once

#include <QString>

class QUrl;

/// What a user reads of an address. None of it is to be loaded, compared or stored: that stays the
/// address itself.

/// All of `url`, so that its host cannot be taken for another: the host as `shownHost` has it, no
/// user name or password before it, and beyond it only letters and digits that run to the right
/// decoded.
QString shownAddress(const QUrl &url);
/// The same for the text of an address; one that is none comes back with what is not seen escaped.
QString shownAddress(const QString &text);

/// What stands for `text` in a field where it can be edited: `text` itself, without the user name
/// and password of an address, its look-alike host in ASCII and what is not seen escaped.
QString editableAddress(const QString &text);

/// Who asks: scheme, host and a port that is not the scheme's own. A very long host loses labels
/// on its left, never the last three. Pages without a host are named by their scheme, those made
/// by another page ("blob:") by that page's site.
QString shownSite(const QUrl &url);

/// A site as `shownSite` writes it, that goes on in the next line wherever it has to: the end of a
/// host says whose it is, and a part of it that fits no line would push that out of sight.
QString breakableSite(const QString &site);
