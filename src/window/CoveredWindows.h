#pragma once

class QMdiArea;
class QMdiSubWindow;

/// A browser window whose page is wholly covered by other windows costs nothing: its page is told
/// that it is hidden.
namespace CoveredWindows {
/// Tells every browser window of `area` (may be null) anew whether it can be seen; done once the
/// pending changes of the windows are over.
void refresh(QMdiArea *area);
/// Does so from now on whenever `window`, which may show anything, comes, goes or moves.
void follow(QMdiSubWindow &window);
}
