#pragma once

class Frame;

/// Tools > What Windows Cost.
void registerCostCommands(Frame &frame);
