#pragma once

class Frame;

/// Document HTML, and the source as it came, of the page in front.
void registerSourceCommands(Frame &frame);
