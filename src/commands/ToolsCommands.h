#pragma once

class Frame;
class StartUpFrame;

/// The Tools menu's own items: script errors and the options of program and engine. `program` is
/// what the start-up routine loads and translates; the options run that routine again.
void registerToolsCommands(Frame &frame, StartUpFrame &program);
