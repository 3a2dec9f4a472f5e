#pragma once

class QVariant;
class WebPage;
enum class OleCmd;

/// The commands of `WebBrowser::execCommand` on a page.
namespace PageCommands {
bool run(WebPage *page, OleCmd command, const QVariant *in, QVariant *out);
/// `OleCmdStatus` bits.
int status(const WebPage *page, OleCmd command);
}
