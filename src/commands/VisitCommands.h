#pragma once

class Frame;

/// Tools > Visited Pages.
void registerVisitCommands(Frame &frame);
