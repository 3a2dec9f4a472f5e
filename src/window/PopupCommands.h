#pragma once

class Frame;

/// Popup control in the Tools menu: its switches, the maximize catcher's, and the list of blocked
/// addresses. The check marks are the run-time state;
/// browser windows read them at the moment of each event.
void registerPopupCommands(Frame &frame);
