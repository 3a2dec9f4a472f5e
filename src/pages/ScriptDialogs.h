#pragma once

class QString;
class QUrl;
class WebPage;

/// What a page's script, or a frame's of it, asks and waits for. Each names the site that speaks,
/// in plain text. Without somebody to ask, or in a window that is not the one in front, the
/// answers are those that change nothing.
namespace ScriptDialogs {
void alert(WebPage &page, const QUrl &origin, const QString &message);
/// Also whether the page may be left with what was entered there.
bool confirm(WebPage &page, const QUrl &origin, const QString &message);
bool prompt(WebPage &page, const QUrl &origin, const QString &message, const QString &defaultValue,
            QString *result);
}
