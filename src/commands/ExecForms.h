#pragma once

class WebBrowser;
enum class OleCmd;

/// The two forms in which a command goes to a page's engine. A page that refuses is no error.
namespace ExecForms {
/// Identifier and option alone.
void two(WebBrowser &page, OleCmd command);
/// With an input and an output of 0, both 16-bit integers.
void four(WebBrowser &page, OleCmd command);
}
