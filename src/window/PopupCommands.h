#pragma once

class Frame;

/// Popup control in the Tools menu: the engine refuses popups while they are killed, and the list
/// of blocked addresses is shown. The check marks are the run-time state; browser windows read them
/// at the moment of each event.
void registerPopupCommands(Frame &frame);
