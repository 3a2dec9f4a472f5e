#pragma once

class MainWindow;

/// The lines of a page's menu for links.
void registerLinkCommands(MainWindow &frame);
