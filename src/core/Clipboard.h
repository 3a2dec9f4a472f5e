#pragma once

/// Whether the clipboard holds text. Text that another program offers is not fetched to see if it
/// is empty: it may be huge, and its owner slow.
bool clipboardHasText();
