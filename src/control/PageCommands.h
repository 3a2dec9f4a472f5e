#pragma once

class WebPage;
enum class OleCmd;
enum class PageAct;

/// The commands of `WebBrowser::execCommand` and `act` on a page, but for the size that it is
/// shown in.
namespace PageCommands {
bool run(WebPage *page, OleCmd command);
void act(WebPage &page, PageAct act);
/// `OleCmdStatus` bits.
int status(const WebPage *page, OleCmd command);
}
