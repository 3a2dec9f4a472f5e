#pragma once

class WebBrowser;
enum class OleCmd;

/// The two forms in which a command goes to a page's engine; false: the page refuses it.
namespace ExecForms {
/// Identifier and option alone.
bool two(WebBrowser &page, OleCmd command);
/// With an input and an output of 0, both 16-bit integers.
bool four(WebBrowser &page, OleCmd command);
}
