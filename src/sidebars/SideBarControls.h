#pragma once

class QToolButton;
class QWidget;

/// The close button of a side bar, named "cmdExit": a flat button with the close picture, and
/// "Close" as its tool tip and name.
QToolButton *makeCloseButton(QWidget *parent);
