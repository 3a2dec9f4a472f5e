#include "KeyCodes.h"

#include <QKeyEvent>

namespace {
constexpr int byCharacterOnly = 231;

struct Pair {
    Qt::Key key;
    int code;
};

// Where two keys share a code the first is the one that stands for it.
constexpr Pair pairs[] = {
    {Qt::Key_Backspace, KeyCodes::Backspace},
    {Qt::Key_Tab, 9},
    {Qt::Key_Backtab, 9},
    {Qt::Key_Return, KeyCodes::Enter},
    {Qt::Key_Enter, KeyCodes::Enter},
    {Qt::Key_Shift, 16},
    {Qt::Key_Control, 17},
    {Qt::Key_Alt, 18},
    {Qt::Key_Pause, 19},
    {Qt::Key_CapsLock, 20},
    {Qt::Key_Escape, KeyCodes::Escape},
    {Qt::Key_Space, 32},
    {Qt::Key_PageUp, 33},
    {Qt::Key_PageDown, 34},
    {Qt::Key_End, 35},
    {Qt::Key_Home, 36},
    {Qt::Key_Left, 37},
    {Qt::Key_Up, 38},
    {Qt::Key_Right, 39},
    {Qt::Key_Down, 40},
    {Qt::Key_Print, 44},
    {Qt::Key_Insert, 45},
    {Qt::Key_Delete, KeyCodes::Delete},
    {Qt::Key_Meta, 91},
    {Qt::Key_Menu, 93},
    {Qt::Key_NumLock, 144},
    {Qt::Key_ScrollLock, 145},
    {Qt::Key_Semicolon, 186},
    {Qt::Key_Colon, 186},
    {Qt::Key_Equal, 187},
    {Qt::Key_Plus, 187},
    {Qt::Key_Comma, 188},
    {Qt::Key_Less, 188},
    {Qt::Key_Minus, 189},
    {Qt::Key_Underscore, 189},
    {Qt::Key_Period, 190},
    {Qt::Key_Greater, 190},
    {Qt::Key_Slash, 191},
    {Qt::Key_Question, 191},
    {Qt::Key_QuoteLeft, 192},
    {Qt::Key_AsciiTilde, 192},
    {Qt::Key_BracketLeft, 219},
    {Qt::Key_BraceLeft, 219},
    {Qt::Key_Backslash, 220},
    {Qt::Key_Bar, 220},
    {Qt::Key_BracketRight, 221},
    {Qt::Key_BraceRight, 221},
    {Qt::Key_Apostrophe, 222},
    {Qt::Key_QuoteDbl, 222},
    {Qt::Key_ParenRight, '0'},
    {Qt::Key_Exclam, '1'},
    {Qt::Key_At, '2'},
    {Qt::Key_NumberSign, '3'},
    {Qt::Key_Dollar, '4'},
    {Qt::Key_Percent, '5'},
    {Qt::Key_AsciiCircum, '6'},
    {Qt::Key_Ampersand, '7'},
    {Qt::Key_Asterisk, '8'},
    {Qt::Key_ParenLeft, '9'},
};

// Codes of the number pad's own keys; its arrows and Enter have the codes of the others.
int keypadCode(int key)
{
    if (key >= Qt::Key_0 && key <= Qt::Key_9)
        return 96 + key - Qt::Key_0;
    switch (key) {
    case Qt::Key_Asterisk:
        return 106;
    case Qt::Key_Plus:
        return 107;
    case Qt::Key_Minus:
        return 109;
    case Qt::Key_Period:
    case Qt::Key_Comma:
        return 110;
    case Qt::Key_Slash:
        return 111;
    default:
        return 0;
    }
}
}

int KeyCodes::codeOf(const QKeyEvent &event)
{
    const int key = event.key();
    if (event.modifiers() & Qt::KeypadModifier) {
        if (const int code = keypadCode(key))
            return code;
    }
    if ((key >= Qt::Key_0 && key <= Qt::Key_9) || (key >= Qt::Key_A && key <= Qt::Key_Z))
        return key;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return 112 + key - Qt::Key_F1;
    for (const Pair &pair : pairs) {
        if (pair.key == key)
            return pair.code;
    }
    return byCharacterOnly;
}

Qt::Key KeyCodes::keyOf(int code)
{
    if ((code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z'))
        return Qt::Key(code);
    if (code >= 112 && code <= 135)
        return Qt::Key(Qt::Key_F1 + code - 112);
    for (const Pair &pair : pairs) {
        if (pair.code == code)
            return pair.key;
    }
    return Qt::Key_unknown;
}

int KeyCodes::shiftOf(Qt::KeyboardModifiers modifiers)
{
    return (modifiers & Qt::ShiftModifier ? 1 : 0) | (modifiers & Qt::ControlModifier ? 2 : 0)
        | (modifiers & Qt::AltModifier ? 4 : 0);
}
