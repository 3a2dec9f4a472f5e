#pragma once

#include <Qt>

class QKeyEvent;

/// Classic virtual key codes, which hosts of a field are told and may change.
namespace KeyCodes {
inline constexpr int Backspace = 8;
inline constexpr int Enter = 13;
inline constexpr int Escape = 27;
inline constexpr int Delete = 46;

/// The code of a key; 231 (a key known by its character only) where the table has none, so that
/// a key is never 0.
int codeOf(const QKeyEvent &event);
/// The key of a code, Key_unknown for the codes without one.
Qt::Key keyOf(int code);
/// 1 shift, 2 control, 4 alt.
int shiftOf(Qt::KeyboardModifiers modifiers);
}
