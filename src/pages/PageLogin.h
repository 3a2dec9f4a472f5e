#pragma once

class QAuthenticator;
class QString;
class QUrl;
class WebPage;

/// User name and password for a server or a proxy that asks for them. The engine wants its answer
/// at once, so the first time it is told "none", the user is asked afterwards, and the page is
/// loaded again with what was entered. Asked for is the page on its way alone; its parts, and what
/// its scripts load, get what is known for their realm, or nothing. Kept for the life of the
/// page's profile, which is the program's but for private pages; beyond it, where the user wants
/// that, in the desktop's keyring (`KeptLogins`).
namespace PageLogin {
/// The answer to the engine; asks the user later where nothing is known.
void answer(WebPage &page, const QUrl &url, QAuthenticator *login);
/// The same for the proxy of that host name on the way to `url`.
void answerProxy(WebPage &page, const QUrl &url, const QString &proxy, QAuthenticator *login);
/// That was entered last, and has not turned out to be wrong.
bool isKnown(const WebPage &page, const QString &key, const QString &user, const QString &password);
/// What was entered last was sent.
bool hasGoneOut(const WebPage &page, const QString &key);
}
