#pragma once

class QString;
class QUrl;
class QWebEnginePage;

/// The dialogs of a page's script. The engine waits for the answer, so these are the only ones
/// that run inside an engine callback. Titled with the site that speaks, in plain text.
namespace ScriptDialogs {
void alert(QWebEnginePage *page, const QUrl &origin, const QString &message);
bool confirm(QWebEnginePage *page, const QUrl &origin, const QString &message);
bool prompt(QWebEnginePage *page, const QUrl &origin, const QString &message,
            const QString &defaultValue, QString *result);
}
