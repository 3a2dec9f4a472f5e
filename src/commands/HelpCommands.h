#pragma once

class Frame;

/// The Help menu: about box, donation page, the updater, the maker's page.
void registerHelpCommands(Frame &frame);
