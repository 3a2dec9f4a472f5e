#pragma once

class MainWindow;
class QPushButton;
class QWidget;

/// The wish to open the desktop's web addresses with this program.
namespace DefaultBrowserChoice {
/// Asks the user, once and never again: at the second start, where the desktop knows the program
/// and opens them with another one.
void askOnce(MainWindow &frame);

/// A button for it, without a place yet. It can be pressed where there is something to do, and says
/// so where it is done.
QPushButton *makeButton();
}
