#pragma once

class QWidget;

/// Puts `second`, and what Qt holds to be a part of it, right behind `first` in their window's Tab
/// order, whether or not the two take the Tab key at present.
void putInTabOrder(QWidget *first, QWidget *second);
