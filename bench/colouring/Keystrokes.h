#pragma once

class Report;

/// Typing in documents of 5 MB: what a key takes until its letter is painted, the first key as well
/// as later ones.
namespace Keystrokes {
void measure(Report &report);
}
