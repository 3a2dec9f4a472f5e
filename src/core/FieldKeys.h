#pragma once

class QKeyEvent;

/// Whether a key is for the field of text that has the keyboard before it is an accelerator of the
/// menus. Keys of the field come first only where they edit text: those with control are the
/// menus' but for the usual few, so is Shift+Delete.
bool isFieldKey(const QKeyEvent &event);
