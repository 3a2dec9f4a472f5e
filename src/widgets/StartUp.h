#pragma once

/// What the start-up routine asks of the frame.
class StartUpFrame {
public:
    virtual ~StartUpFrame() = default;
    /// Loads the frame; does nothing when it is loaded already.
    virtual void load() = 0;
    /// Puts the frame's menus, tool tips, address band and search bar into the current language.
    virtual void translate() = 0;
};

/// Fixes the settings path and reads the language.
void useStoredLanguage();

/// The start-up routine: fixes the settings path, reads the language, loads the frame, then
/// translates it. The splash and the first page appear before the texts are translated. Run again
/// later it renews the language and the translations only.
void startUp(StartUpFrame &frame);
