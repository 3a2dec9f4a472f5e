#pragma once

class QAuthenticator;
class QUrl;
class QWebEnginePage;

/// User name and password for a server that asks for them. The engine wants its answer at once,
/// so the first time it is told "none", the user is asked afterwards, and the page is loaded again
/// with what was entered. Kept for the life of the program only.
namespace PageLogin {
/// The answer to the engine; asks the user later where nothing is known.
void answer(QWebEnginePage *page, const QUrl &url, QAuthenticator *login);
}
