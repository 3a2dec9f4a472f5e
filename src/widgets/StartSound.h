#pragma once

/// Plays AppData/Drums.wav soon and returns at once. Without the file, a sound device or the
/// player program nothing is heard, nothing is shown and nothing waits.
void playStartSound();
