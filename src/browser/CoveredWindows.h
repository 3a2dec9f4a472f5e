#pragma once

class QMdiArea;

/// A browser window wholly covered by a maximized one costs nothing: its page is told that it is
/// hidden.
namespace CoveredWindows {
/// Tells every browser window of `area` (may be null) anew whether it can be seen; done once the
/// pending changes of the windows are over.
void refresh(QMdiArea *area);
}
