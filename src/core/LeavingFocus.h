#pragma once

class QWidget;

/// Takes the keyboard from `leaving`, or what is in it, before it gets another parent: newer Qt
/// leaves it with the old ones as their child with the keyboard, which they ask after its end.
void giveUpFocus(const QWidget &leaving);
