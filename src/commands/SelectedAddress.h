#pragma once

class QString;
class QUrl;

/// The address of the web that a selected text is, as a whole; empty where it is none. What stands
/// around an address in a sentence is no part of it.
QUrl selectedAddress(const QString &text);
