#pragma once

class CertificateExceptions;
class QUrl;
class QWidget;

/// What is to be known of the connection to a page's server.
namespace PageConnection {
/// Asks the server of `url` for its certificates and shows them in a dialog beside `owner`, with
/// which it goes; nothing for a page that came over no encrypted connection. `exceptions` are those
/// of the page.
void open(const QUrl &url, const CertificateExceptions &exceptions, QWidget *owner);
}
