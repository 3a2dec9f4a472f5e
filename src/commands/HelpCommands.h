#pragma once

class Frame;

/// The Help menu: about box, donation page, the updater, the maker's page, the guide.
void registerHelpCommands(Frame &frame);
