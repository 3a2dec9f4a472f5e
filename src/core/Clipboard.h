#pragma once

#include <QString>

/// What the clipboard holds, as far as it matters here. Another program that owns it is asked once,
/// not at each look: one that does not answer holds this program up for seconds each time.
struct ClipboardKinds {
    bool text = false;
    bool html = false;
    bool image = false;
};

/// Makes the looks below follow changes of the clipboard; before anything else that follows them.
void watchClipboard();

/// Text that another program offers is not fetched to see if it is empty: it may be huge.
ClipboardKinds clipboardKinds();
bool clipboardHasText();
/// The same without asking another program: true when that was not asked since it took the
/// clipboard.
bool clipboardMayHaveText();
/// Empty without text; the owner is not asked then.
QString clipboardText();
/// Where nothing but text with a named encoding is offered, which the page engine does not know for
/// text, the clipboard comes to hold the same as plain text.
void makeClipboardTextPlain();
