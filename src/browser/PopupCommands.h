#pragma once

class Frame;

/// The switches of popup control in the Tools menu. Their check marks are the run-time state;
/// browser windows read them at the moment of each event.
void registerPopupCommands(Frame &frame);
