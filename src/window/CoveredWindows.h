#pragma once

class QMdiArea;

/// A browser window whose page is wholly covered by other windows costs nothing: its page is told
/// that it is hidden.
namespace CoveredWindows {
/// Tells every browser window of `area` (may be null) anew whether it can be seen; done once the
/// pending changes of the windows are over.
void refresh(QMdiArea *area);
}
