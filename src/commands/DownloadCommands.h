#pragma once

class Frame;

/// Tools > Downloads.
void registerDownloadCommands(Frame &frame);
