#pragma once

class QString;
class QUrl;

/// What a user typed as an address, completed as a browser does: without a scheme it is an
/// existing local path or a web address. Empty when the text is no address, and for those that
/// would run as script instead of opening a page.
QUrl completeAddress(const QString &text);

/// The engine has a page for addresses of this kind; others are another program's, if anyone's.
bool isOpenedHere(const QUrl &address);
