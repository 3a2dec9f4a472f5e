#pragma once

class QLabel;
class QWidget;

/// What the pages of the internet options have in common.
namespace OptionControls {
/// `label` names `control`: its access key leads there, and its text is the accessible name.
void name(QLabel &label, QWidget &control);
/// A note to stand beside a control whose option the engine takes only as it starts.
QLabel *nextStartNote(QWidget &control);
}
